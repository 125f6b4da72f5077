// Some threads and the worker use one scene for a given time: they play and key, merge and
// edit, refine, edit materials, pick, look up side by side, listen, and replace what may be
// replaced at any time. Meant for the sanitizers.

#include "core/event/EventManager.h"
#include "core/logger/Logger.h"
#include "core/system/MillisecClock.h"
#include "scene/EventTypes.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/manager/ISceneController.h"
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
constexpr unsigned int MOST_FACES = 30;

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

/// A controller that may come and go: it must not be updated once it was taken out.
class Visitor : public ISceneController
{
public:
    explicit Visitor(bool isReadOnly) : m_isReadOnly(isReadOnly) {}

    bool isReadOnly() override { return m_isReadOnly; }
    void attach(boost::shared_ptr<SceneManager> scene) override { m_scene = scene; }

    bool update(boost::posix_time::time_duration) override
    {
        if (m_isGone)
        {
            std::cerr << "a controller was updated after it had been removed" << std::endl;
            std::abort();
        }
        return true;
    }

    void leave() { m_isGone = true; }

private:
    const bool m_isReadOnly;
    boost::weak_ptr<SceneManager> m_scene;
    std::atomic<bool> m_isGone{false};
};

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

    /// Whether everything that must happen has happened.
    bool run()
    {
        std::vector<std::thread> threads;
        for (const auto work : {&Soak::play, &Soak::merge, &Soak::refine, &Soak::editMaterials,
                                &Soak::pick, &Soak::read, &Soak::listen, &Soak::replace})
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
        std::cout << m_turns << " operations, " << m_heard << " events heard, " << m_synced
                  << " times SyncScene, " << m_hits << " hits" << std::endl;
        return m_heard > 0 && m_synced > 0 && m_hits > 0;
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

    /// The mesh that many nodes use becomes finer some times and then starts anew.
    void refine(std::mt19937& random)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 50));
        const SceneLock lock(m_scene);
        const GeometryManagerPtr geometries = m_scene->getGeometryManager();
        const auto mesh = boost::dynamic_pointer_cast<Mesh>(geometries->getGeometry("mesh"));
        if (mesh->getPrimitive(0)->getCount() < MOST_FACES)
        {
            geometries->subDivideGeometry("mesh", ControllerPtr());
            return;
        }
        m_scene->replaceGeometry("mesh", makeMesh("mesh"));
        mesh->clearPrimitives(); // an octree may hold it for a while
    }

    /// As other parts of an application do, by events under the lock.
    void editMaterials(std::mt19937& random)
    {
        const SceneLock lock(m_scene);
        const EventManagerPtr events = m_scene->getEventManager();
        const std::string id = "m" + std::to_string(random() % 10);
        if (!m_scene->getMaterialWithID(id))
        {
            events->triggerEvent("L_NewEffect", "soak,e" + id + ",file");
            events->triggerEvent("L_NewMaterial", "soak," + id + ",e" + id);
        }
        const std::string file = "picture" + std::to_string(random() % 10);
        events->triggerEvent("L_MaterialParameterUpdated",
                             "soak," + id + ",map," + file + ",texture");
        events->triggerEvent("L_MaterialTechniqueChanged", "soak," + id + ",glossy");
        const NodePtr node = choose(random);
        if (node)
        {
            node->setMaterial(m_scene->getMaterialWithID(id), 0, 0);
        }
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

    /// Readers side by side, while the lock keeps writers out.
    void read(std::mt19937& random)
    {
        const SceneLock lock(m_scene);
        std::vector<std::thread> readers;
        for (int i = 0; i < 2; ++i)
        {
            readers.emplace_back(
                [this, seed = static_cast<unsigned int>(random())]
                {
                    std::mt19937 own(seed);
                    const NodePtr node = choose(own);
                    if (node)
                    {
                        m_scene->getNodeByID(node->getID());
                        node->getCombinedTransformations();
                    }
                    m_scene->getMaterialWithID("defaultMaterial");
                });
        }
        for (std::thread& reader : readers)
        {
            reader.join();
        }
    }

    /// What any thread may do at any time, without the lock.
    void replace(std::mt19937& random)
    {
        const auto visitor = boost::make_shared<Visitor>(random() % 2 == 0);
        m_scene->addSceneController(visitor);
        m_scene->setEventManager(random() % 2 == 0 ? m_events : m_otherEvents);
        m_scene->setClock(boost::make_shared<core::system::MillisecClock>(random() % 2 == 0));
        m_scene->getClock()->getTime();
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
        m_scene->removeSceneController(visitor);
        visitor->leave();
    }

    void listen(std::mt19937& random)
    {
        EventBase listener(m_events);
        const auto note = [this](const Event&) { ++m_heard; };
        listener.registerHandler(events::nodeTransformationUpdate(), note);
        listener.registerHandler(events::syncScene(), [this](const Event&) { ++m_synced; });
        listener.registerHandler(events::sceneTopologyUpdate(), note);
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
        listener.unregister(events::syncScene());
    }

    const std::chrono::steady_clock::time_point m_end;
    const EventManagerPtr m_events = boost::make_shared<EventManager>();
    const EventManagerPtr m_otherEvents = boost::make_shared<EventManager>(); ///< nobody listens
    const SceneManagerPtr m_scene = makeScene(m_events);
    const AnimationPtr m_animation = boost::make_shared<Animation>("all", "");
    std::atomic<long> m_turns{0};
    std::atomic<long> m_heard{0}; ///< other events than SyncScene
    std::atomic<long> m_synced{0};
    std::atomic<long> m_hits{0};
};
} // namespace

int main(int argc, char** argv)
{
    core::logger::Logger::active = false;
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 2;
    const bool hasHappened = Soak(std::chrono::seconds(seconds)).run();
    return hasHappened || seconds < 2 ? 0 : 1;
}
