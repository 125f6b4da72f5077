// Players, and the worker that drives them, after an operation that ran out of memory.

#include "tests/memory/WorldUnderTest.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace velmoran::scene;

namespace
{
/// Has no memory in its first turns.
class HungryController : public ISceneController
{
public:
    explicit HungryController(int hungryTurns) : m_hungryTurns(hungryTurns) {}

    void attach(boost::shared_ptr<SceneManager>) override {}
    bool isReadOnly() override { return true; }

    bool update(boost::posix_time::time_duration) override
    {
        const int turn = turns++;
        if (turn < m_hungryTurns)
        {
            throw std::bad_alloc();
        }
        return true;
    }

    std::atomic<int> turns{0};

private:
    const int m_hungryTurns;
};

/// With two nodes that have no keys so far.
struct WorldWithNewNodes : WorldUnderTest
{
    WorldWithNewNodes()
    {
        claw->addTransformation(makeTranslation(2.0F));
        addNode("hand", "thumb");
    }

    const NodePtr claw = addNode("hand", "claw");
};
} // namespace

TEST(PlaybackMemory, AnimationIsAsBeforeWhenKeyingRunsOut)
{
    expectAllOrNothing([](WorldUnderTest& w) { w.player->insertKeyframe(0.5F); });
    expectAllOrNothing([](WorldUnderTest& w) { w.player->removeKeyFrame(w.animation, 1.0F); });
    using World = WorldWithNewNodes;
    expectAllOrNothing<World>([](World& w) { w.player->insertKeyframe(0.5F); });
    expectAllOrNothing<World>([](World& w) { w.player->addAnimationCamera(); });
    expectAllOrNothing<World>([](World& w) { w.animation->insertKeyFrame(w.claw, 0.5F); });
}

TEST(PlaybackMemory, PlayerIsAsBeforeWhenAnAnimationRunsOut)
{
    expectAllOrNothing([](WorldUnderTest& w) { w.player->setAnimation(w.animation); });
    expectAllOrNothing([](WorldUnderTest& w)
                       { w.player->setAnimation(boost::make_shared<Animation>("another", "")); });
}

TEST(PlaybackMemory, PoseIsAsBeforeWhenATurnRunsOut)
{
    expectAllOrNothing([](WorldUnderTest& w)
                       { w.player->update(boost::posix_time::milliseconds(250)); });
}

TEST(WorkerMemory, GoesOnWhenAControllerRunsOut)
{
    const SceneManagerPtr scene =
        boost::make_shared<SceneManager>(velmoran::core::event::EventManagerPtr());
    const auto hungry = boost::make_shared<HungryController>(2);
    const auto behind = boost::make_shared<HungryController>(0);
    scene->addSceneController(hungry);
    scene->addSceneController(behind);
    while (hungry->turns < 4 || behind->turns < 4)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    SUCCEED();
}
