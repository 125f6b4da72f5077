// Posing skinned meshes: another library.

#include "bench/Cases.h"
#include "bench/Skins.h"

#ifdef VELMORAN_BENCH_OGRE
#include <OgreMatrix4.h>
#include <OgreOptimisedUtil.h>

namespace velmoran::bench
{
namespace
{
void poseOgre(benchmark::State& state)
{
    constexpr std::size_t INFLUENCES = 4; // the most that it takes
    const FlatSkin flat = makeFlatSkin(state.range(0), INFLUENCES, 100);
    const std::vector<Eigen::Matrix4f> poses = posesOf(flat);
    std::vector<Ogre::Affine3> matrices;
    std::vector<const Ogre::Affine3*> handles;
    for (const Eigen::Matrix4f& m : poses)
    {
        matrices.emplace_back(m(0, 0), m(0, 1), m(0, 2), m(0, 3), m(1, 0), m(1, 1), m(1, 2),
                              m(1, 3), m(2, 0), m(2, 1), m(2, 2), m(2, 3));
    }
    for (const Ogre::Affine3& matrix : matrices)
    {
        handles.push_back(&matrix);
    }
    const std::vector<unsigned char> joints(flat.joints.begin(), flat.joints.end());
    std::vector<float> posed(flat.positions.size());
    Ogre::OptimisedUtil* const util = Ogre::OptimisedUtil::getImplementation();
    for (auto _ : state)
    {
        util->softwareVertexSkinning(flat.positions.data(), posed.data(), nullptr, nullptr,
                                     flat.weights.data(), joints.data(), handles.data(), 12, 12, 0,
                                     0, 16, 4, INFLUENCES, flat.vertexCount());
        benchmark::DoNotOptimize(posed.data());
    }
    require(state, differenceOf(posed, poseFlat(flat, poses)) < 1e-3, "wrong vertices");
    countItems(state, state.range(0));
}
BENCHMARK(poseOgre)->Name("skinning/Ogre, into a buffer that is there")->Apply(skinSizes);
} // namespace
} // namespace velmoran::bench
#endif
