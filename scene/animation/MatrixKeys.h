#pragma once

#include "scene/Export.h"
#include "scene/animation/KeyTimes.h"

#include <Eigen/Core>

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// A pose of a node: Translation * Rotation, and the scale that follows them.
struct EvaluatedPose
{
    Eigen::Matrix4f matrix; ///< T * R
    Eigen::Vector3f scale;  ///< diagonal of S

    /// False for a pose that must not be written.
    bool isFinite() const { return matrix.allFinite() && scale.allFinite(); }
};

/// Keys that are whole matrices, split once and interpolated part by part.
///
/// Rotations by spherical linear interpolation (K. Shoemake, "Animating Rotation with
/// Quaternion Curves", 1985), translations and column lengths linearly.
/// Threads: an evaluation writes nothing but the caller's cursor and pose.
class VELMORAN_SCENE_EXPORT MatrixKeys
{
public:
    MatrixKeys() = default;

    /// `values` holds a matrix row by row in the first 16 of every `stride` (16 or more)
    /// floats, for as many keys as it reaches. A key holds until the next one where `steps` is not
    /// 0; keys that it does not reach don't.
    MatrixKeys(const KeyTimes& times, const std::vector<float>& values, std::size_t stride,
               const std::vector<char>& steps);

    /// The pose at `time`; false when there is no key from there on, or none with a
    /// value. A pose may hold a NaN or infinity where the keys do.
    bool evaluate(float time, std::size_t& cursor, EvaluatedPose& pose) const;

    /// The last key, where `time` is later than all keys; false where it is not.
    bool evaluateAfterEnd(float time, EvaluatedPose& pose) const;

private:
    /// A key and the way to the next one. A cache line.
    struct Key
    {
        Eigen::Vector4f rotation; ///< unit quaternion x, y, z, w
        Eigen::Vector4f translation;
        Eigen::Vector4f scale;
        float angle = 0.0F;       ///< between this rotation and the next one
        float inverseSine = 0.0F; ///< of that angle; 0 where plain weights are taken
        float sign = 1.0F;        ///< of the next rotation, -1 on the way round the back
    };

    static Key splitKey(const Eigen::Matrix4f& matrix);
    static void connect(Key& key, const Key& next);
    void interpolate(const Key& a, const Key& b, float u, EvaluatedPose& pose) const;

    KeyTimes m_times;
    std::vector<Key> m_keys;           ///< of as many keys as have values
    std::vector<char> m_steps;         ///< not 0 for keys that hold; may be shorter
    std::vector<EvaluatedPose> m_asIs; ///< for each key its matrix; empty without steps
};
} // namespace velmoran::scene
