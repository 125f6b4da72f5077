// Playing an animation: poses are keyed, and the scene's worker plays them.

#include "core/event/EventManager.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <condition_variable>
#include <iostream>
#include <mutex>

using namespace velmoran;
using namespace velmoran::scene;

namespace
{
//! [wait]
/// Lets a thread wait until the worker has changed the scene some times.
class Turns
{
public:
    void count()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_turns;
        m_changed.notify_all();
    }

    void waitFor(int turns)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this, turns] { return m_turns >= turns; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_turns = 0;
};
//! [wait]
} // namespace

int main()
{
    const auto events = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    const auto lift = boost::make_shared<Node>(scene);
    lift->setID("lift");
    scene->getRoot()->addNode(lift);

    //! [key]
    const auto animation = boost::make_shared<Animation>("ride", "");
    {
        const SceneLock lock(scene);
        scene->setAnimationsLibrary({animation});
        const AnimationManagerPtr player = scene->getAnimationManager();
        player->setAnimation(animation);
        for (const float time : {0.0F, 1.0F, 2.0F}) // seconds
        {
            lift->setTranslation(Eigen::Translation3f(0.0F, 0.0F, 3.0F * time));
            player->insertKeyframe(time);
        }
        player->setAnimation(animation); // with the targets and the length that it has now
        std::cout << "keyed " << player->getFrameTimes().size() << " poses, "
                  << player->getLoopDuration().total_milliseconds() << " ms" << std::endl;
    }
    //! [key]

    //! [play]
    Turns turns;
    core::event::EventBase listener(events);
    listener.registerHandler("SyncScene", [&turns](const core::event::Event&) { turns.count(); });
    //! [lock]
    {
        const SceneLock lock(scene);
        scene->getAnimationManager()->setTime(boost::posix_time::milliseconds(500));
        scene->getAnimationManager()->resume();
    }
    //! [lock]
    turns.waitFor(10); // about a tenth of a second
    listener.unregister("SyncScene");
    //! [play]

    const SceneLock lock(scene);
    const float height = lift->getTransformations()(2, 3);
    std::cout << (height > 1.5F ? "the lift went up" : "the lift stood still") << std::endl;
}
