#pragma once

#include "scene/manager/IdentifierRegister.h"
#include "scene/manager/SceneManager.h"

#include <utility>
#include <vector>

namespace velmoran::scene
{
/// What an operation adds to a scene, taken back when an exception, such as
/// `std::bad_alloc`, ends it before `keep`.
///
/// Covers what operations append to images, effects, materials, cameras, their instances
///     and lights, recorded and generated identifiers, layers, a root where there was none,
///     and the nodes that it is told of.
/// Cost: constant, and linear in what is taken back. Nothing of it needs memory unless
///     somebody listens.
class SceneAttempt
{
public:
    explicit SceneAttempt(SceneManager& scene);
    ~SceneAttempt();

    SceneAttempt(const SceneAttempt&) = delete;
    SceneAttempt& operator=(const SceneAttempt&) = delete;

    /// `node`, which is new, is about to become a child of `parent`.
    void expectChild(const NodePtr& parent, const NodePtr& node);

    /// What was done stays.
    void keep() { m_isKept = true; }

private:
    struct Sizes
    {
        std::size_t images;
        std::size_t effects;
        std::size_t materials;
        std::size_t cameras;
        std::size_t cameraInstances;
        std::size_t lights;
    };

    void removeChildren();

    SceneManager& m_scene;
    const Sizes m_before;
    const IdentifierRegister::Mark m_identifiers;
    const int m_layerCount;
    const bool m_hadRoot;
    std::vector<std::pair<NodePtr, NodePtr>> m_children; ///< parent and child
    bool m_isKept = false;
};
} // namespace velmoran::scene
