#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <string>
#include <vector>

namespace velmoran::scene
{
/// A controller placed in the scene: which geometry instance it deforms and where
/// its skeletons begin.
///
/// Ownership: shares geometry instance and controller; nodes hold it.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT InstanceController
{
public:
    /// Shares both; either may be empty, which is nothing to draw and nothing to deform.
    InstanceController(const InstanceGeometryPtr& instanceGeometry,
                       const ControllerPtr& controller);

    virtual ~InstanceController();

    /// The deformed geometry with its materials; empty when none was given.
    InstanceGeometryPtr getInstanceGeometry() const;

    /// What deforms it; empty when none was given.
    ControllerPtr getController() const;

    /// The IDs of the skeletons' root nodes, in the document's order. Texts only: they
    /// follow no renaming and need not name nodes.
    const std::vector<std::string>& getSkeletons() const;
    void setSkeletons(std::vector<std::string> skeletons);

private:
    InstanceGeometryPtr m_instanceGeometry;
    ControllerPtr m_controller;
    std::vector<std::string> m_skeletons;
};
} // namespace velmoran::scene
