#pragma once

#include "core/event/EventBase.h"
#include "core/logger/Logger.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/IGeometry.h"

#include <map>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// The library of a scene's geometries, by the ID that each had when it was added.
///
/// Ownership: shares its geometries with node instances, skins and other libraries. A
///     mesh and its primitives hold each other, so whenever the library lets go of a
///     mesh (it is destroyed, replaces the mesh, or does not keep a clone), it clears
///     the mesh's primitives if nobody else but these holds it.
/// Logging: "GeometryManager.log".
/// Threads: not locked. Look-ups may run on several threads at once while nobody changes
///     the library; writers hold the scene lock.
class VELMORAN_SCENE_EXPORT GeometryManager : public core::event::EventBase
{
public:
    /// An empty library. `eventManager` may be empty and set later.
    explicit GeometryManager(const core::event::EventManagerPtr& eventManager);

    ~GeometryManager() override;

    /// Adds `geometry` under its ID. False, and nothing changes, when it is empty or the
    /// ID is taken.
    bool addGeometry(const IGeometryPtr& geometry);

    /// Drops `last` and frees its geometry, if nobody else holds that but primitives of its
    /// own, which hold it in a circle. False when somebody does.
    static bool letGo(IGeometryPtr last);

    /// Takes a geometry out of the library. Who uses it keeps it; one that nobody else
    /// holds is freed with its primitives. False, with nothing done, for an unknown ID.
    bool removeGeometry(const std::string& id);

    /// The geometry under `id`; empty when there is none.
    IGeometryPtr getGeometry(const std::string& id) const;

    /// Appends all geometries to `geometries` in ascending order of their IDs.
    void getGeometries(std::vector<IGeometryPtr>& geometries) const;

    /// All IDs in ascending order.
    std::vector<std::string> getIDs() const;
    unsigned int getCount() const;

    /// The type of the geometry under `id`; `INVALID` when there is none.
    IGeometry::Type getGeometryType(const std::string& id) const;

    /// Puts `geometry` in the place of the one under `id` and gives it that one's ID.
    /// Answers the material symbols of the new geometry's primitives in order if the old
    /// one was of type `MESH`, else nothing. Does nothing when `geometry` is empty or
    /// `id` unknown.
    std::vector<std::string> replaceGeometry(const std::string& id, const IGeometryPtr& geometry);

    /// Adds the geometries of `other`, which it then shares with this library. One whose
    /// ID is taken here is left out if `discardRepeated` is set; else a clone of it comes
    /// in, with "__renamed__" behind its ID, unless that ID is taken too. Answers the new
    /// IDs of the renamed geometries by their old ones, also of clones that were not
    /// kept. An empty handle and this library itself change nothing.
    std::map<std::string, std::string>
    mergeGeometries(const boost::shared_ptr<GeometryManager>& other, bool discardRepeated);

    /// Computes the normals of the geometry under `id` anew and raises
    /// "GeometryTopologyUpdate" with the ID. An unknown ID does nothing.
    void recalculateVertexNormals(const std::string& id);

    /// Refines the geometry under `id` once, with the skin of `controller` if there is one,
    /// and raises "GeometryTopologyUpdate" with the ID. An unknown ID does nothing.
    void subDivideGeometry(const std::string& id, const ControllerPtr& controller);

    /// Prints every geometry in ascending order of the IDs.
    void print();

private:
    using GeometryMap = std::map<std::string, IGeometryPtr>; ///< no handle is empty

    static bool letGoOf(const IGeometryPtr& last);
    void keepOneHandleOfEach();
    void announceChange(const std::string& id);
    void collectIncoming(const GeometryMap& others, bool discardRepeated,
                         std::map<std::string, std::string>& renamed, GeometryMap& incoming);

    GeometryMap m_geometries;
    core::logger::Logger m_logger;
};
} // namespace velmoran::scene
