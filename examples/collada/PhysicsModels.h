#pragma once

#include "examples/collada/Meshes.h"
#include "examples/collada/PhysicsMaterials.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// A physics model, and its parts by what instances call them.
struct PhysicsModelEntry
{
    scene::PhysicsModelPtr model;

    // By SID: the first of each

    std::unordered_map<std::string, scene::PhysicsRigidBodyPtr> bodies;
    std::unordered_map<std::string, scene::PhysicsRigidConstraintPtr> constraints;
};

/// The physics models of a document.
///
/// Attachments name a body by its SID in the model or as "#" and its ID. Those that name
/// none, or a node, have no body: they hold to the world; with a warning, unless the
/// name is empty. Limits and the two switches that are missing are as in a document: zeros,
/// enabled, not overlapping. Left out with a warning: springs, and models in a model.
class PhysicsModels
{
public:
    /// Reads those of the libraries. Fails at references to what is not there.
    PhysicsModels(Document& document, const Meshes& meshes, PhysicsMaterials& materials);

    std::vector<scene::PhysicsModelPtr> getModels() const;

    /// What became of a `<physics_model>`; null when it stands in no library.
    const PhysicsModelEntry* getEntry(const pugi::xml_node& model) const;

private:
    void readBodies(const Meshes& meshes, PhysicsMaterials& materials, const pugi::xml_node& model);
    void readConstraints(PhysicsModelEntry& entry, const pugi::xml_node& model);
    scene::PhysicsRigidConstraintPtr readConstraint(const PhysicsModelEntry& entry,
                                                    const pugi::xml_node& constraint);
    scene::PhysicsAttachmentPtr readAttachment(const PhysicsModelEntry& entry,
                                               const pugi::xml_node& attachment);
    scene::PhysicsRigidBodyPtr findBody(const PhysicsModelEntry& entry,
                                        const pugi::xml_node& attachment);

    Document& m_document;
    std::vector<PhysicsModelEntry> m_entries;
    std::unordered_map<const void*, std::size_t> m_places; ///< in the list of entries, by element
    std::unordered_map<const void*, scene::PhysicsRigidBodyPtr> m_bodies; ///< by element
};

/// The last SID of a path, e.g. "body" of "model/body" or "./body".
std::string getLastSid(const std::string& path);
} // namespace velmoran::examples::collada
