#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <map>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// The use of a geometry by a node, with materials for the symbols of its primitives.
///
/// Ownership: shares the geometry and the materials. Either may be empty; a symbol
///     that is bound to an empty handle can be bound later.
/// Threads: not locked; writers hold the scene lock.
class VELMORAN_SCENE_EXPORT InstanceGeometry
{
public:
    using MaterialMap = std::map<std::string, MaterialPtr>; ///< material symbol to material

    /// Binds `material` to the symbol "velmoran_material".
    InstanceGeometry(const IGeometryPtr& geometry, const MaterialPtr& material);

    /// Takes several bindings, as they are.
    InstanceGeometry(const IGeometryPtr& geometry, MaterialMap bindings);

    virtual ~InstanceGeometry();

    const IGeometryPtr& getGeometry() const;
    void setGeometry(const IGeometryPtr& geometry);

    /// The material bound to `symbol`; empty when there is none.
    MaterialPtr getMaterial(const std::string& symbol) const;

    /// Replaces the material of a bound symbol and assembles the list anew. A symbol
    /// that is not bound stays so. Ignored when `material` is empty.
    void setMaterial(const std::string& symbol, const MaterialPtr& material);

    const MaterialMap& getMaterialMap() const;

    /// Replaces all bindings. The materials list stays as it is until
    /// `assembleMaterialsList` is called.
    void setMaterialMap(const MaterialMap& bindings);

    /// The bound materials when the list was last assembled, one for each symbol, in
    /// ascending order of the symbols.
    const std::vector<MaterialPtr>& getMaterialList() const;

    /// Makes the materials list from the bindings.
    void assembleMaterialsList();

    /// Exchanges geometry, bindings and list with `other`. Needs no memory.
    void exchange(InstanceGeometry& other);

    /// "Instance Geometry for Geometry with ID: ", the geometry's ID and a line end.
    std::string toString() const;

private:
    IGeometryPtr m_geometry;
    MaterialMap m_materialMap;
    std::vector<MaterialPtr> m_materialList;
};
} // namespace velmoran::scene
