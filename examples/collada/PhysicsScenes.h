#pragma once

#include "examples/collada/PhysicsModels.h"

#include <string>
#include <vector>

namespace velmoran::examples::collada
{
/// An instance of a physics model, before its nodes are there.
struct PhysicsInstanceDraft
{
    struct Body
    {
        pugi::xml_node element;
        scene::PhysicsRigidBodyPtr body;
        std::string targetID; ///< of a node
    };

    pugi::xml_node element;
    scene::PhysicsModelPtr model;
    std::string parentID; ///< of a node; empty when it names none
    std::vector<Body> bodies;
    std::vector<scene::PhysicsInstanceRigidConstraintPtr> constraints;
};

/// The physics scenes of a document.
///
/// Gravity and time step that are missing are those of a new `scene::PhysicsScene`. A body
/// or constraint is instanced as its model has it: values of the instance's own are left out
/// with a warning, as are force fields and instances of what the model has not.
class PhysicsScenes
{
public:
    /// Reads those of the libraries. Fails at references to what is not there.
    PhysicsScenes(Document& document, const PhysicsModels& models);

    /// Gives the scenes to `scene`, whose nodes are there: all of them, and those that
    /// `<scene>` instances. A node that is not in the scene is left empty, with a warning.
    /// Once.
    void install(Document& document, scene::SceneManager& scene) const;

private:
    struct Entry
    {
        scene::PhysicsScenePtr scene;
        std::vector<PhysicsInstanceDraft> models;
    };

    void readScene(Document& document, const PhysicsModels& models, const pugi::xml_node& element);
    void readInstanced(const Document& document);

    std::vector<Entry> m_entries;
    std::vector<scene::PhysicsScenePtr> m_instanced;
    std::unordered_map<const void*, std::size_t> m_places; ///< in the list of entries, by element
};
} // namespace velmoran::examples::collada
