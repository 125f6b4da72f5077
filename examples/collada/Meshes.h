#pragma once

#include "examples/collada/Sources.h"

#include <string>
#include <vector>

namespace velmoran::examples::collada
{
/// The geometry library of a document.
///
/// Meshes and their primitives hold each other; the geometry manager that they are
/// put into from the start lets go of them, whether reading succeeds or not.
class Meshes
{
public:
    /// Reads all `<geometry>`. What is not a `<mesh>` is left out with a warning.
    Meshes(Document& document, Sources& sources);

    const scene::GeometryManagerPtr& getManager() const;

    /// The mesh of a `<geometry>`; empty when it was left out.
    scene::MeshPtr getMesh(const pugi::xml_node& geometry) const;

    /// The material symbols of the primitives of one of these meshes, each once.
    const std::vector<std::string>& getSymbols(const scene::MeshPtr& mesh) const;

private:
    void readGeometry(Document& document, Sources& sources, const pugi::xml_node& geometry);

    scene::GeometryManagerPtr m_manager;                      ///< first: it goes last
    std::unordered_map<const void*, scene::MeshPtr> m_meshes; ///< by element
    std::unordered_map<const scene::Mesh*, std::vector<std::string>> m_symbols;
};
} // namespace velmoran::examples::collada
