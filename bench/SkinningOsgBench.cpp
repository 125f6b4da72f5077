// Posing skinned meshes: a library that blends in double, once for each set of weights.

#include "bench/Cases.h"
#include "bench/Skins.h"

#ifdef VELMORAN_BENCH_OSG
#include <osgAnimation/Bone>
#include <osgAnimation/RigGeometry>
#include <osgAnimation/RigTransformSoftware>
#include <osgAnimation/Skeleton>

namespace velmoran::bench
{
namespace
{
/// A geometry that hangs below the skeleton that carries it.
class OsgRig
{
public:
    explicit OsgRig(const FlatSkin& flat)
        : m_skeleton(new osgAnimation::Skeleton), m_rig(new osgAnimation::RigGeometry)
    {
        const auto* const points = reinterpret_cast<const osg::Vec3f*>(flat.positions.data());
        const osg::ref_ptr<osg::Geometry> source = new osg::Geometry;
        source->setVertexArray(
            new osg::Vec3Array(static_cast<unsigned int>(flat.vertexCount()), points));
        m_rig->setSourceGeometry(source);
        m_rig->copyFrom(*source);
        m_rig->setVertexArray(osg::clone(source->getVertexArray()));
        m_rig->setInfluenceMap(makeInfluences(flat));
        addBones(flat);
        m_skeleton->addChild(m_rig);
        m_rig->setSkeleton(m_skeleton);
        m_rig->setRigTransformImplementation(new osgAnimation::RigTransformSoftware);
        m_rig->computeMatrixFromRootSkeleton();
        m_rig->buildVertexInfluenceSet();
    }

    void update() { m_rig->update(); }

    std::vector<float> posed() const
    {
        const auto* const array = dynamic_cast<const osg::Vec3Array*>(m_rig->getVertexArray());
        const auto* const first = reinterpret_cast<const float*>(array->getDataPointer());
        return std::vector<float>(first, first + 3 * array->size());
    }

private:
    static osgAnimation::VertexInfluenceMap* makeInfluences(const FlatSkin& flat)
    {
        auto* const influences = new osgAnimation::VertexInfluenceMap;
        for (std::size_t i = 0; i < flat.joints.size(); ++i)
        {
            const std::string name = flat.nameOf(static_cast<std::size_t>(flat.joints[i]));
            osgAnimation::VertexInfluence& influence = (*influences)[name];
            influence.setName(name);
            influence.emplace_back(static_cast<unsigned int>(i / flat.influences), flat.weights[i]);
        }
        return influences;
    }

    void addBones(const FlatSkin& flat)
    {
        Eigen::Matrix4f world = Eigen::Matrix4f::Identity();
        osg::Group* above = m_skeleton;
        for (std::size_t i = 0; i < flat.locals.size(); ++i)
        {
            world = world * flat.locals[i];
            const osg::ref_ptr<osgAnimation::Bone> bone = new osgAnimation::Bone(flat.nameOf(i));
            bone->setMatrix(osg::Matrix(flat.locals[i].data()));
            bone->setMatrixInSkeletonSpace(osg::Matrix(world.data()));
            bone->setInvBindMatrixInSkeletonSpace(osg::Matrix(flat.boneSpace[i].data()));
            above->addChild(bone);
            above = bone;
        }
    }

    osg::ref_ptr<osgAnimation::Skeleton> m_skeleton;
    osg::ref_ptr<osgAnimation::RigGeometry> m_rig;
};

void poseOsg(benchmark::State& state)
{
    const FlatSkin flat = makeFlatSkin(state.range(0), 4, 100);
    OsgRig rig(flat);
    for (auto _ : state)
    {
        rig.update();
    }
    const std::vector<float> wanted = poseFlat(flat, posesOf(flat));
    require(state, differenceOf(rig.posed(), wanted) < 1e-3, "wrong vertices");
    countItems(state, state.range(0));
}
BENCHMARK(poseOsg)->Name("skinning/osgAnimation RigTransformSoftware")->Apply(&atNAnd4N<100000>);
} // namespace
} // namespace velmoran::bench
#endif
