#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// How a surface looks: an effect, one of its techniques, and parameters for it.
///
/// Ownership: shares its parameters with every copy and clone; a change to one is
///     seen by all of them.
/// Threads: whoever changes a material of a running scene holds the scene lock.
class VELMORAN_SCENE_EXPORT Material
{
public:
    /// A material without technique and parameters. `effectID` is the identifier of
    /// an `Effect` in the scene's effect library.
    Material(std::string materialID, std::string effectID);
    virtual ~Material();

    /// Copies everything, the technique included.
    Material(const Material& other);
    Material& operator=(const Material& other);

    /// A copy without the technique, which starts empty again.
    Material clone() const;

    const std::string& getMaterialID() const { return m_materialID; }
    void setMaterialID(std::string materialID);

    const std::string& getEffectID() const { return m_effectID; }
    void setEffectID(std::string effectID);

    /// Name of a technique of the effect; its meaning is the renderer's.
    const std::string& getTechnique() const { return m_technique; }
    void setTechnique(std::string technique);

    /// @name Parameters
    /// The list is kept as it is filled: names may repeat, and an empty handle keeps its place in
    /// it.
    /// @{

    const std::vector<MaterialParameterPtr>& getMaterialParameters() const { return m_parameters; }
    void setMaterialParameters(std::vector<MaterialParameterPtr> parameters);

    /// Appends, also an empty handle.
    void addMaterialParameter(const MaterialParameterPtr& parameter);

    /// Length of the list, empty handles included.
    unsigned int getParametersCount() const;

    /// The parameter at `index`; empty when there is none.
    MaterialParameterPtr getParameterAt(unsigned int index) const;

    /// The first parameter with exactly this name; empty when there is none.
    /// Costs time in proportion to the number of parameters.
    MaterialParameterPtr getParameterByName(const std::string& name) const;

    /// @}

    /// Identifiers on one line, then a line for each parameter that is not empty: its
    /// position in the list, name, type and value. Every line ends with a line feed.
    std::string toString() const;

private:
    std::string m_materialID;
    std::string m_effectID;
    std::string m_technique;
    std::vector<MaterialParameterPtr> m_parameters; ///< entries may be empty
};

/// Writes the identifiers and the bare addresses of the parameters, to tell shared
/// parameters from equal ones. `Material::toString` is the readable form.
VELMORAN_SCENE_EXPORT std::ostream& operator<<(std::ostream& out, const Material& material);
} // namespace velmoran::scene
