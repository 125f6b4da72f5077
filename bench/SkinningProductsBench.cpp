// Posing skinned meshes: the products as the formula has them, nothing folded beforehand.

#include "bench/Cases.h"
#include "bench/Skins.h"

namespace velmoran::bench
{
namespace
{
/// Each influence multiplies its joint's world matrix, its inverse bind matrix and the point.
std::vector<float> poseByProducts(const FlatSkin& skin, const std::vector<Eigen::Matrix4f>& worlds)
{
    std::vector<float> posed;
    posed.reserve(skin.positions.size());
    const int* joint = skin.joints.data();
    const float* weight = skin.weights.data();
    for (std::size_t i = 0; i < skin.positions.size(); i += 3)
    {
        const float* const p = &skin.positions[i];
        const Eigen::Vector4f point(p[0], p[1], p[2], 1.0F);
        Eigen::Vector4f sum = Eigen::Vector4f::Zero();
        for (std::size_t j = 0; j < skin.influences; ++j, ++joint, ++weight)
        {
            const auto index = static_cast<std::size_t>(*joint);
            const Eigen::Matrix4f pose = worlds[index] * skin.boneSpace[index];
            sum += *weight * (pose * point);
        }
        posed.insert(posed.end(), sum.data(), sum.data() + 3);
    }
    return posed;
}

void poseProducts(benchmark::State& state)
{
    const FlatSkin flat = makeFlatSkin(state.range(0), 4, 100);
    std::vector<Eigen::Matrix4f> worlds(flat.locals);
    for (std::size_t i = 1; i < worlds.size(); ++i)
    {
        worlds[i] = worlds[i - 1] * flat.locals[i];
    }
    std::vector<float> posed;
    for (auto _ : state)
    {
        posed = poseByProducts(flat, worlds);
    }
    require(state, differenceOf(posed, poseFlat(flat, posesOf(flat))) < 1e-3, "wrong vertices");
    countItems(state, state.range(0));
}
BENCHMARK(poseProducts)->Name("skinning/a product for each influence")->Apply(skinSizes);
} // namespace
} // namespace velmoran::bench
