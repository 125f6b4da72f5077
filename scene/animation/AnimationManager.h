#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/manager/ISceneController.h"

#include <boost/weak_ptr.hpp>

namespace velmoran::scene
{
/// The controller that drives a scene's animations; changes nothing without a current
/// animation.
///
/// Ownership: the scene holds its animation manager, which remembers the scene weakly:
///     dropping the last handle of a scene destroys both.
class VELMORAN_SCENE_EXPORT AnimationManager : public ISceneController
{
public:
    AnimationManager();

    /// False: playing writes to the scene's nodes.
    bool isReadOnly() override;

    /// Remembers the scene in place of the one before; an empty handle forgets it.
    void attach(boost::shared_ptr<SceneManager> scene) override;

    /// Answers whether nodes were changed, which takes a current animation.
    bool update(boost::posix_time::time_duration elapsed) override;

    ~AnimationManager() override;

private:
    boost::weak_ptr<SceneManager> m_sceneManager;
};
} // namespace velmoran::scene
