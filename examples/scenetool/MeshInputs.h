#pragma once

#include "examples/scenetool/MeshFaces.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <cstddef>
#include <vector>

namespace velmoran::examples
{
/// An input as faces use it: the tuples of a stream, picked by a slot of the records.
struct MeshInput
{
    const scene::Stream* stream = nullptr; ///< null: there is none
    std::size_t slot = 0;

    std::size_t stride() const;

    /// Whole tuples.
    std::size_t count() const;

    /// The first three floats of a tuple, zeros for those that it lacks and for what is no
    /// number.
    Eigen::Vector3d tuple(std::size_t index) const;
};

/// What a primitive's corners consist of. `position` has tuples in every usable one.
struct MeshInputs
{
    MeshInput position;
    MeshInput texture; ///< the first set that has tuples
    MeshInput normal;
};

/// Finds the inputs of a primitive of `mesh`. They live as long as its streams.
MeshInputs findMeshInputs(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive);

/// A number for each corner of a face.
using FaceTuples = std::vector<std::size_t>;

/// Puts the tuples that the corners of a face have of an input into `tuples`; leaves it empty and
/// answers false when one of them is not there.
bool pickTuples(const MeshInput& input, const MeshFace& face, FaceTuples& tuples);
} // namespace velmoran::examples
