#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>

#include <map>
#include <string>

namespace velmoran::examples
{
/// `name` as OBJ files can hold it: blanks and control characters become "_", and an
/// empty name "unnamed".
std::string objName(const std::string& name);

/// The diffuse colour of a material: red, green and blue, mostly from 0 to 1. Grey when it has
/// none.
Eigen::Vector3f diffuseColour(const scene::MaterialPtr& material);

/// The materials that an OBJ file uses, for the MTL file beside it.
class ObjMaterials
{
public:
    /// The name for faces with this symbol: the material's ID, or the symbol when no
    /// material is bound to it.
    std::string use(const std::string& symbol, const scene::MaterialPtr& material);

    /// The text of the MTL file.
    std::string getText() const;

private:
    std::map<std::string, std::string> m_colours; ///< by name: red, green and blue
};
} // namespace velmoran::examples
