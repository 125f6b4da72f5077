// Four threads and the worker use one scene for a given time: one plays and keys, one merges
// and edits, one picks, one listens. Meant for the sanitizers.

#include "core/event/EventManager.h"
#include "core/logger/Logger.h"
#include "scene/EventTypes.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/Ray.h"
#include "scene/spatial/RayHit.h"

#include <boost/make_shared.hpp>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>
#include <thread>
#include <vector>

using namespace velmoran;
using namespace velmoran::scene;
using core::event::Event;
using core::event::EventBase;
using core::event::EventManager;
using core::event::EventManagerPtr;

namespace
{
constexpr std::size_t MOST_NODES = 300;

MeshPtr makeMesh(const std::string& id)
{
    const auto positions = boost::make_shared<Stream>("positions", 3, false);
    positions->setData({-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0});
    const auto mesh = boost::make_shared<Mesh>(id, "");
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
        mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, StreamPtr(), 0)},
        std::vector<unsigned int>{0, 1, 2, 0, 2, 3}));
    return mesh;
}

/// A small scene, whose names clash with those of any other.
SceneManagerPtr makeScene(const EventManagerPtr& events)
{
    const auto scene = boost::make_shared<SceneManager>(events);
    const MeshPtr mesh = makeMesh("mesh");
    scene->getGeometryManager()->addGeometry(mesh);
    for (const char* const id : {"a", "b", "c"})
    {
        const auto node = boost::make_shared<Node>(scene);
        node->setID(id);
        node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(
            mesh, scene->getMaterialWithID("defaultMaterial")));
        scene->getRoot()->addNode(node);
    }
    return scene;
}

class Soak
{
public:
    explicit Soak(std::chrono::seconds time) : m_end(std::chrono::steady_clock::now() + time)
    {
        m_scene->setEventManager(m_events); // also for its geometries
        const SceneLock lock(m_scene);
        m_scene->setAnimationsLibrary({m_animation});
        m_scene->getAnimationManager()->setAnimation(m_animation);
    }

    void run()
    {
        std::vector<std::thread> threads;
        for (const auto work : {&Soak::play, &Soak::merge, &Soak::pick, &Soak::listen})
        {
            threads.emplace_back(
                [this, work]
                {
                    for (std::mt19937 random(static_cast<unsigned int>(m_turns)); !isOver();)
                    {
                        (this->*work)(random);
                        ++m_turns;
                    }
                });
        }
        for (std::thread& thread : threads)
        {
            thread.join();
        }
        std::cout << m_turns << " operations, " << m_heard << " events heard, " << m_hits << " hits"
                  << std::endl;
    }

private:
    bool isOver() const { return std::chrono::steady_clock::now() >= m_end; }

    /// Any node but the root; empty when there is none.
    NodePtr choose(std::mt19937& random) const
    {
        const std::vector<NodePtr> nodes = m_scene->getNodeArray();
        return nodes.size() < 2 ? NodePtr() : nodes[1 + random() % (nodes.size() - 1)];
    }

    void play(std::mt19937& random)
    {
        const SceneLock lock(m_scene);
        const AnimationManagerPtr player = m_scene->getAnimationManager();
        const float time = 0.1F * static_cast<float>(random() % 20);
        switch (random() % 8)
        {
        case 0:
            player->insertKeyframe(time);
            break;
        case 1:
            player->removeKeyFrame(m_animation, time);
            break;
        case 2:
            player->setTime(boost::posix_time::milliseconds(static_cast<int>(1000.0F * time)));
            break;
        case 3:
            player->setAnimation(m_animation);
            break;
        default:
            player->resume();
        }
    }

    void merge(std::mt19937& random)
    {
        const SceneManagerPtr loaded = makeScene(EventManagerPtr());
        const SceneLock lock(m_scene);
        const NodePtr node = choose(random);
        if (m_scene->getNodeArray().size() < MOST_NODES)
        {
            m_scene->mergeSceneManager(loaded, static_cast<int>(random() % 64),
                                       node ? node->getID() : "");
        }
        else if (node)
        {
            m_scene->removeNode(node);
        }
        const NodePtr moved = choose(random);
        if (moved)
        {
            moved->setTranslation(Eigen::Translation3f(static_cast<float>(random() % 8), 0, 0));
        }
        m_scene->getGeometryManager()->recalculateVertexNormals("mesh");
    }

    void pick(std::mt19937& random)
    {
        Octree octree;
        {
            const SceneLock lock(m_scene);
            octree.setSceneNode(m_scene->getRoot());
            octree.calculate(4, 8);
        }
        // The octree is a copy: picking needs no lock.
        for (int i = 0; i < 100; ++i)
        {
            const auto ray = boost::make_shared<Ray>(
                Eigen::Vector3f(static_cast<float>(random() % 8), 0.25F, 9.0F),
                Eigen::Vector3f(0.0F, 0.0F, -1.0F));
            m_hits += octree.pickNearest(ray) ? 1 : 0;
        }
    }

    void listen(std::mt19937& random)
    {
        EventBase listener(m_events);
        const auto note = [this](const Event&) { ++m_heard; };
        listener.registerHandler(events::nodeTransformationUpdate(), note);
        listener.registerHandler(events::syncScene(), note);
        listener.registerHandler(events::sceneTopologyUpdate(), note);
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
        listener.unregister(events::syncScene());
    }

    const std::chrono::steady_clock::time_point m_end;
    const EventManagerPtr m_events = boost::make_shared<EventManager>();
    const SceneManagerPtr m_scene = makeScene(m_events);
    const AnimationPtr m_animation = boost::make_shared<Animation>("all", "");
    std::atomic<long> m_turns{0};
    std::atomic<long> m_heard{0};
    std::atomic<long> m_hits{0};
};
} // namespace

int main(int argc, char** argv)
{
    core::logger::Logger::active = false;
    Soak(std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 2)).run();
}
