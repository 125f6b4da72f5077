#pragma once

#include "examples/collada/Meshes.h"

#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// The controllers of a document.
///
/// A controller that deforms another controller gets the geometry at the end of the
/// chain. Skins are read whole; of morphs the scene keeps the base shape only. A
/// controller whose geometry was left out is left out as well.
class Controllers
{
public:
    Controllers(Document& document, Sources& sources, const Meshes& meshes);

    const std::vector<scene::ControllerPtr>& getControllers() const;

    /// The controller of a `<controller>`; empty when it was left out.
    scene::ControllerPtr getController(const pugi::xml_node& controller) const;

    /// The mesh that a `<controller>` deforms; empty when it was left out.
    scene::MeshPtr getMesh(const pugi::xml_node& controller) const;

private:
    void readController(Sources& sources, const Meshes& meshes, const pugi::xml_node& controller);
    scene::MeshPtr findMesh(const Meshes& meshes, const pugi::xml_node& controller);

    Document& m_document;
    std::vector<scene::ControllerPtr> m_controllers;
    std::unordered_map<const void*, scene::ControllerPtr> m_byElement;
    std::unordered_map<const void*, scene::MeshPtr> m_meshes; ///< by `<controller>`
};
} // namespace velmoran::examples::collada
