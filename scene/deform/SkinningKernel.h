#pragma once

#include <Eigen/Core>

#include <array>
#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// A matrix for column vectors, in the shape that multiplies points fastest.
struct PoseMatrix
{
    /// Zeros.
    PoseMatrix();
    explicit PoseMatrix(const Eigen::Matrix4f& matrix);

    std::array<Eigen::Array4f, 4> columns;
};

/// One skin as flat arrays, which the kernel only reads; they live as long as the call.
struct SkinArrays
{
    template <typename T>
    struct Array
    {
        const T* data = nullptr;
        std::size_t size = 0;

        Array() = default;
        explicit Array(const std::vector<T>& values) : data(values.data()), size(values.size()) {}
    };

    Array<float> vertices;      ///< tuples of `stride` floats; a broken last one is not read
    std::size_t stride = 0;     ///< 0: there are no vertices
    Array<unsigned int> vcount; ///< influences of each vertex; a missing entry means none
    Array<int> v;               ///< joint index, weight index of each influence, in a row
    Array<float> weights;       ///< by weight index

    /// From bound vertices to posed ones, by joint index: world * inverse bind and whatever
    /// stands before and behind it.
    Array<PoseMatrix> palette;
};

/// Poses all vertices: the first four floats p of each become the sum of
/// weight * palette[joint] * p over its influences, as far as the stride goes.
///
/// Floats that a short tuple lacks count as 0, the fourth as 1; floats beyond the fourth
/// are copied. Weights are not normalised; a vertex without influences becomes zeros.
/// Influences that `v` has no room for, or with an index outside its list, are left out.
/// Linear blend skinning (Magnenat-Thalmann, Laperriere, Thalmann 1988; the artefacts that
/// it has are shown by Lewis, Cordner, Fong 2000). Linear in vertices and influences.
std::vector<float> skinVertices(const SkinArrays& skin);
} // namespace velmoran::scene
