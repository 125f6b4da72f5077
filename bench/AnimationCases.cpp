#include "bench/AnimationCases.h"

#include <cmath>
#include <map>
#include <random>
#include <utility>

namespace velmoran::bench
{
FlatAnimation makeFlatAnimation(std::int64_t nodes, std::size_t keys)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> spread(-1.0F, 1.0F);
    const auto vector = [&]
    { return Eigen::Vector3f(spread(random), spread(random), spread(random)); };

    FlatAnimation animation;
    animation.nodes = static_cast<std::size_t>(nodes);
    for (std::size_t i = 0; i < keys; ++i)
    {
        animation.times.push_back(static_cast<float>(i) / 30.0F);
    }
    for (std::size_t node = 0; node < animation.nodes; ++node)
    {
        Eigen::Quaternionf rotation = Eigen::Quaternionf::Identity();
        for (std::size_t i = 0; i < keys; ++i)
        {
            rotation = (rotation * Eigen::AngleAxisf(0.4F * spread(random), vector().normalized()))
                           .normalized();
            animation.rotations.push_back(rotation);
            animation.translations.push_back(vector());
            animation.scales.push_back(Eigen::Vector3f::Ones() + 0.2F * vector());
        }
    }
    return animation;
}

const FlatAnimation& animationOf(std::int64_t nodes, std::size_t keys)
{
    static std::map<std::pair<std::int64_t, std::size_t>, FlatAnimation> animations;
    const auto [entry, isNew] = animations.try_emplace({nodes, keys});
    if (isNew)
    {
        entry->second = makeFlatAnimation(nodes, keys);
    }
    return entry->second;
}

FlatPlayer::FlatPlayer(const FlatAnimation& animation)
    : m_animation(animation), m_locals(animation.nodes)
{
}

void FlatPlayer::evaluate(float time)
{
    const std::vector<float>& times = m_animation.times;
    m_cursor = m_cursor > 1 && times[m_cursor - 1] >= time ? 1 : m_cursor;
    while (times[m_cursor] < time)
    {
        ++m_cursor;
    }
    const float exact = (time - times[m_cursor - 1]) / (times[m_cursor] - times[m_cursor - 1]);
    const float u = exact > 0.99F ? 1.0F : exact;
    std::size_t b = m_cursor;
    for (Eigen::Matrix4f& local : m_locals)
    {
        const std::size_t a = b - 1;
        const Eigen::Vector3f scale =
            (1.0F - u) * m_animation.scales[a] + u * m_animation.scales[b];
        local.topLeftCorner<3, 3>() =
            m_animation.rotations[a].slerp(u, m_animation.rotations[b]).toRotationMatrix() *
            scale.asDiagonal();
        local.topRightCorner<3, 1>() =
            (1.0F - u) * m_animation.translations[a] + u * m_animation.translations[b];
        local.bottomRows<1>() << 0.0F, 0.0F, 0.0F, 1.0F;
        b += times.size();
    }
}

Playhead::Playhead(const FlatAnimation& animation)
    : m_duration(1000 * static_cast<std::int64_t>(animation.times.back() * 1000.0))
{
}

float Playhead::advance()
{
    m_time += TICK_MICROSECONDS;
    m_time -= m_time >= m_duration ? m_duration : 0;
    return static_cast<float>(static_cast<double>(m_time / 1000) / 1000.0);
}
} // namespace velmoran::bench
