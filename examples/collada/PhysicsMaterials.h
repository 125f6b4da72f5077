#pragma once

#include "examples/collada/Document.h"
#include "scene/Forward.h"

#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// The physics materials of a document. Coefficients that are missing are 0.
class PhysicsMaterials
{
public:
    /// Reads those of the libraries.
    explicit PhysicsMaterials(Document& document);

    const std::vector<scene::PhysicsMaterialPtr>& getMaterials() const;

    /// The material that a body or shape refers to or holds itself; empty when it has
    /// none. Fails when it refers to what is not there.
    scene::PhysicsMaterialPtr getMaterialOf(const pugi::xml_node& user);

private:
    scene::PhysicsMaterialPtr readMaterial(const pugi::xml_node& material);

    Document& m_document;
    std::vector<scene::PhysicsMaterialPtr> m_materials;                     ///< of the libraries
    std::unordered_map<const void*, scene::PhysicsMaterialPtr> m_byElement; ///< all
};
} // namespace velmoran::examples::collada
