#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <cstdint>
#include <string>

namespace velmoran::scene
{
/// A geometry of the scene's library, used by nodes through an `InstanceGeometry`.
///
/// Threads: not locked; writers hold the scene lock.
class VELMORAN_SCENE_EXPORT IGeometry
{
public:
    /// What a geometry is made of.
    enum Type : std::int32_t
    {
        CONVEX_MESH = 0,
        MESH,
        SPLINE,
        INVALID
    };

    /// "Convex Mesh", "Mesh", "Spline", "Invalid"; "Invalid2" for any other value.
    static std::string typeToString(Type type);

    virtual std::string getID() const = 0;
    virtual void setID(std::string id) = 0;

    virtual std::string getName() const = 0;
    virtual void setName(std::string name) = 0;

    virtual void setType(Type type) = 0;
    virtual Type getType() const = 0;

    /// Writes a description for people to standard output.
    virtual void print() = 0;

    /// A copy with the same ID and name; never empty.
    virtual IGeometryPtr clone() const = 0;

    /// @name Bounds
    /// In the geometry's own space, computed when they are first asked for: that counts as writing.
    /// @{

    virtual Eigen::Vector3f getBVCenter() = 0;
    virtual Eigen::Vector3f getBVMin() = 0;
    virtual Eigen::Vector3f getBVMax() = 0;

    /// @}

    /// Computes the normals anew from the faces and positions.
    virtual void recalculateVertexNormals() = 0;

    /// Refines the faces once. The skin of `controller`, which may be empty, gets the
    /// influences of the refined vertices.
    virtual void subDivide(const ControllerPtr& controller) = 0;

    virtual ~IGeometry();
};
} // namespace velmoran::scene
