#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <string>
#include <vector>

namespace velmoran::scene
{
/// What deforms a geometry: a skin or a morph.
///
/// Ownership: shares its skin and morph; held by the scene's controllers library and
///     by the controller instances.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Controller
{
public:
    /// A controller without skin and morph.
    Controller(std::string id, std::string name);

    virtual ~Controller();

    const std::string& getID() const;
    const std::string& getName() const;

    /// Accepted from a reader of documents and not kept: the data arrays of a
    /// deformation belong to its skin.
    void setStreams(const std::vector<Stream>& streams);

    /// Replaces the skin; an empty handle takes it away.
    void setSkin(const SkinPtr& skin);
    SkinPtr getSkin() const;

    /// Replaces the morph; an empty handle takes it away.
    void setMorph(const MorphPtr& morph);
    MorphPtr getMorph() const;

    /// The geometry that is deformed: the skin's when there is a skin, else the
    /// morph's; empty when there is neither.
    IGeometryPtr getSourceGeometry() const;

    /// @name Bounds
    /// Those of the skin's source geometry (see `IGeometry`); (0, 0, 0) without one.
    /// @{

    Eigen::Vector3f getBVCenter() const;
    Eigen::Vector3f getBVMin() const;
    Eigen::Vector3f getBVMax() const;

    /// @}

private:
    std::string m_id;
    std::string m_name;
    SkinPtr m_skin;
    MorphPtr m_morph;
};
} // namespace velmoran::scene
