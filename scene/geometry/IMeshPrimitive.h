#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/StreamMapping.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// A part of a mesh whose faces are all of one kind and use one material symbol.
///
/// Threads: not locked. Reading from several threads at once is safe while nobody
///     writes; writers hold the scene lock.
class VELMORAN_SCENE_EXPORT IMeshPrimitive
{
public:
    /// How faces stand in the index records.
    enum Type : std::int32_t
    {
        TRIANGLES = 1,
        POLYGONS,
        LINES,
        LINE_STRIPS,
        POLY_LISTS,
        TRIANGLE_FANS,
        TRIANGLE_STRIPS,
        INVALID
    };

    /// "Triangles", "Polygons", "Lines", "Line Strips", "Poly lists", "Triangle Fans",
    /// "Triangle Strips", "Invalid"; "Invalid2" for any other value.
    static std::string typeToString(Type type);

    /// The index records of all corners in a row, each `getIndexStreamStride` wide.
    virtual const std::vector<unsigned int>& getIndexStream() const = 0;

    /// Width of an index record: the number of distinct offsets of the inputs.
    virtual unsigned int getIndexStreamStride() const = 0;

    /// The inputs.
    virtual const std::vector<StreamMapping>& getStreamMapping() const = 0;

    virtual Type getType() const = 0;

    /// Number of faces.
    virtual unsigned int getCount() const = 0;

    /// Face `index`, assembled from the streams; empty when it can't be read.
    virtual IPrimitivePtr getPrimitiveAt(unsigned int index) const = 0;

    /// All faces in order; the entries of those that can't be read are empty.
    virtual std::vector<IPrimitivePtr> getPrimitives() const = 0;

    /// Writes a description for people to standard output.
    virtual void print() = 0;

    /// @name Bounds of the positions
    /// Three floats each.
    /// @{

    virtual std::vector<float> getBVMin() const = 0;
    virtual std::vector<float> getBVMax() const = 0;
    virtual std::vector<float> getBVCenter() const = 0;

    /// @}

    /// The name that an `InstanceGeometry` binds to a material.
    virtual void setMaterialSymbol(std::string symbol) = 0;
    virtual std::string getMaterialSymbol() const = 0;

    /// Computes the normals anew from the faces and positions.
    virtual void recalculateVertexNormals() = 0;

    /// Refines the faces once. The skin of `controller`, which may be empty, gets the
    /// influences of the refined vertices.
    virtual void subDivide(const ControllerPtr& controller) = 0;

    /// A copy for `mesh`, which is not added to it. Its inputs share the streams.
    virtual IMeshPrimitivePtr clone(const MeshPtr& mesh) const = 0;

    virtual ~IMeshPrimitive();
};
} // namespace velmoran::scene
