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
    InstanceController(const InstanceGeometryPtr& instanceGeometry,
                       const ControllerPtr& controller);

    virtual ~InstanceController();

    InstanceGeometryPtr getInstanceGeometry() const;
    ControllerPtr getController() const;

    /// The IDs of the skeletons' root nodes, in the document's order.
    const std::vector<std::string>& getSkeletons() const;
    void setSkeletons(std::vector<std::string> skeletons);

private:
    InstanceGeometryPtr m_instanceGeometry;
    ControllerPtr m_controller;
    std::vector<std::string> m_skeletons;
};
} // namespace velmoran::scene
