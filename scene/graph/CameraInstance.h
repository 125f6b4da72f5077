#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <boost/weak_ptr.hpp>

#include <string>

namespace velmoran::scene
{
/// The record of one placement of a camera at a node.
///
/// Ownership: node and camera are remembered weakly, so that a record in the scene's
///     list keeps nothing alive that was taken out of the scene. The camera is held
///     by the scene's camera library and by the node (`Node::addInstanceCamera`); the
///     node by its parent.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT CameraInstance
{
public:
    /// A record of `camera` at `parent`; either may be empty, and is not changed: the camera is
    /// placed by `Node::addInstanceCamera`. The SID is kept as it is.
    CameraInstance(const NodePtr& parent, const CameraPtr& camera, std::string sid);

    virtual ~CameraInstance();

    /// The node that the camera hangs at; empty when it is gone.
    NodePtr getParentNode() const;

    /// The camera; empty when it is gone.
    CameraPtr getCamera() const;

    const std::string& getSID() const;

    /// Renames the record; the scene records no identifier for it.
    void setSID(std::string sid);

private:
    boost::weak_ptr<Node> m_parent;
    boost::weak_ptr<Camera> m_camera;
    std::string m_sid;
};
} // namespace velmoran::scene
