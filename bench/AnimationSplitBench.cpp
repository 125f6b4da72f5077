// Playing animations: keys kept as matrices, both neighbours split at every turn.

#include "bench/AnimationCases.h"

#include <Eigen/SVD>

namespace velmoran::bench
{
namespace
{
class SplittingPlayer
{
public:
    explicit SplittingPlayer(const FlatAnimation& flat) : m_times(flat.times), m_locals(flat.nodes)
    {
        for (std::size_t i = 0; i < flat.rotations.size(); ++i)
        {
            Eigen::Affine3f key = Eigen::Affine3f::Identity();
            key.translate(flat.translations[i]).rotate(flat.rotations[i]).scale(flat.scales[i]);
            m_keys.push_back(key);
        }
    }

    void evaluate(float time)
    {
        std::size_t next = 1;
        while (m_times[next] < time)
        {
            ++next;
        }
        const float exact = (time - m_times[next - 1]) / (m_times[next] - m_times[next - 1]);
        const float u = exact > 0.99F ? 1.0F : exact;
        for (Eigen::Affine3f& local : m_locals)
        {
            local = blend(m_keys[next - 1], m_keys[next], u);
            next += m_times.size();
        }
    }

    const std::vector<Eigen::Affine3f>& locals() const { return m_locals; }

private:
    static Eigen::Affine3f blend(const Eigen::Affine3f& a, const Eigen::Affine3f& b, float u)
    {
        Eigen::Matrix3f rotations[2];
        Eigen::Matrix3f scales[2];
        a.computeRotationScaling(&rotations[0], &scales[0]); // a singular value decomposition
        b.computeRotationScaling(&rotations[1], &scales[1]);
        const Eigen::Quaternionf from(rotations[0]);
        const Eigen::Quaternionf to(rotations[1]);
        Eigen::Affine3f blended = Eigen::Affine3f::Identity();
        blended.translate((1.0F - u) * a.translation() + u * b.translation());
        blended.rotate(from.slerp(u, to));
        blended.scale((1.0F - u) * scales[0].diagonal() + u * scales[1].diagonal());
        return blended;
    }

    const std::vector<float>& m_times;
    std::vector<Eigen::Affine3f> m_keys; ///< those of the first node, then the next
    std::vector<Eigen::Affine3f> m_locals;
};

void playSplitting(benchmark::State& state)
{
    const FlatAnimation& flat = animationOf(state.range(0), 100);
    SplittingPlayer player(flat);
    FlatPlayer wanted(flat);
    Playhead playhead(flat);
    float time = 0.0F;
    for (auto _ : state)
    {
        for (int i = 0; i < TICKS; ++i)
        {
            time = playhead.advance();
            player.evaluate(time);
        }
    }
    wanted.evaluate(time);
    for (std::size_t i = 0; i < flat.nodes; ++i)
    {
        require(state, player.locals()[i].matrix().isApprox(wanted.locals()[i], 1e-4F),
                "wrong matrices");
    }
    countItems(state, TICKS * state.range(0));
}
BENCHMARK(playSplitting)->Name("play/two decompositions for each node")->Apply(&atNAnd4N<1000>);
} // namespace
} // namespace velmoran::bench
