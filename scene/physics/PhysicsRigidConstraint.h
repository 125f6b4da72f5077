#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <string>

namespace velmoran::scene
{
/// Ties two bodies together: their attachments and how far one may move and turn
/// against the other.
///
/// Ownership: shares the attachments, which may be empty.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsRigidConstraint
{
public:
    /// One limit for each axis.
    using Vec3 = Eigen::Matrix<float, 3, 1>;

    /// A constraint without attachments, its limits all zero. `interpenetrate` tells
    /// whether the two bodies may overlap.
    PhysicsRigidConstraint(std::string sid, std::string name, bool enabled, bool interpenetrate);
    virtual ~PhysicsRigidConstraint();

    const std::string& getSid() const { return m_sid; }
    const std::string& getName() const { return m_name; }
    bool isEnabled() const { return m_enabled; }

    /// Whether the two bodies may overlap.
    bool allowInterpenetrate() const { return m_interpenetrate; }

    const PhysicsAttachmentPtr& getAttachment() const { return m_attachment; }
    void setAttachment(const PhysicsAttachmentPtr& attachment) { m_attachment = attachment; }

    /// The attachment that limits are measured against.
    const PhysicsAttachmentPtr& getRefAttachment() const { return m_refAttachment; }
    void setRefAttachment(const PhysicsAttachmentPtr& attachment) { m_refAttachment = attachment; }

    /// Replaces all four limits, one component for each axis of the frame:
    /// distances in scene units, then angles in degrees. A minimum above its maximum is kept as
    /// given.
    void setLinearlimits(Vec3 translationMin, Vec3 translationMax, Vec3 rotationMin,
                         Vec3 rotationMax);
    const Vec3& getLinearTranslationMin() const { return m_linearTranslationMin; }
    const Vec3& getLinearTranslationMax() const { return m_linearTranslationMax; }
    const Vec3& getLinearRotationMin() const { return m_linearRotationMin; }
    const Vec3& getLinearRotationMax() const { return m_linearRotationMax; }

private:
    std::string m_sid;
    std::string m_name;
    PhysicsAttachmentPtr m_attachment;
    PhysicsAttachmentPtr m_refAttachment;
    bool m_enabled;
    bool m_interpenetrate;
    Vec3 m_linearTranslationMin;
    Vec3 m_linearTranslationMax;
    Vec3 m_linearRotationMin;
    Vec3 m_linearRotationMax;
};
} // namespace velmoran::scene
