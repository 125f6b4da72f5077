#pragma once

#include "examples/collada/ColladaReader.h"
#include "examples/collada/Sources.h"

#include <string>
#include <vector>

namespace velmoran::examples::collada
{
/// The geometry library of a document.
///
/// Meshes and their primitives hold each other; the geometry manager that they are
/// put into from the start lets go of them, whether reading succeeds or not.
/// Convex meshes are linked to the geometry whose hull they are; the hull of a hull to
/// that one's.
class Meshes
{
public:
    /// Reads all `<geometry>`. What is neither a `<mesh>` nor a `<convex_mesh>` is left out
    /// with a warning. Fails at hulls of what is not there or of themselves.
    Meshes(Document& document, Sources& sources, const ReadOptions& options);

    const scene::GeometryManagerPtr& getManager() const;

    /// The mesh of a `<geometry>`; empty when it was left out.
    scene::MeshPtr getMesh(const pugi::xml_node& geometry) const;

    /// The material symbols of the primitives of one of these meshes, each once.
    const std::vector<std::string>& getSymbols(const scene::MeshPtr& mesh) const;

private:
    void readGeometry(const pugi::xml_node& geometry, const pugi::xml_node& body);
    void linkHull(const pugi::xml_node& geometry);
    pugi::xml_node findEnclosed(const pugi::xml_node& hull);

    Document& m_document;
    Sources& m_sources;
    const ReadOptions m_options;
    scene::GeometryManagerPtr m_manager;                      ///< goes after the meshes
    std::unordered_map<const void*, scene::MeshPtr> m_meshes; ///< by element
    std::unordered_map<const scene::Mesh*, std::vector<std::string>> m_symbols;
    std::unordered_map<const void*, pugi::xml_node> m_enclosed; ///< by `<geometry>` of a hull
};
} // namespace velmoran::examples::collada
