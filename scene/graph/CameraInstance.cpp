#include "scene/graph/CameraInstance.h"

#include <utility>

namespace velmoran::scene
{
CameraInstance::CameraInstance(const NodePtr& parent, const CameraPtr& camera, std::string sid)
    : m_parent(parent), m_camera(camera), m_sid(std::move(sid))
{
}

CameraInstance::~CameraInstance() = default;

NodePtr CameraInstance::getParentNode() const
{
    return m_parent.lock();
}

CameraPtr CameraInstance::getCamera() const
{
    return m_camera.lock();
}

const std::string& CameraInstance::getSID() const
{
    return m_sid;
}

void CameraInstance::setSID(std::string sid)
{
    m_sid = std::move(sid);
}
} // namespace velmoran::scene
