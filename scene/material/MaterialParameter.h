#pragma once

#include "scene/Export.h"

#include <iosfwd>
#include <string>

namespace velmoran::scene
{
/// A named value that a material passes to its effect, as text.
///
/// The type is free text. Only "texture" has a meaning in this library: the value
/// is then the identifier of an `Image`.
///
/// Plain data: setters store what they are given and raise nothing. Used by one thread at a
///     time; writers hold the scene lock when a scene holds it.
class VELMORAN_SCENE_EXPORT MaterialParameter
{
public:
    /// Takes all three as they are; empty texts, too.
    MaterialParameter(std::string name, std::string type, std::string value);
    virtual ~MaterialParameter();

    /// Copies have values of their own.
    MaterialParameter(const MaterialParameter& other);
    MaterialParameter& operator=(const MaterialParameter& other);

    const std::string& getName() const { return m_name; }
    void setName(std::string name);

    const std::string& getType() const { return m_type; }

    const std::string& getValue() const { return m_value; }
    void setValue(std::string value);

private:
    std::string m_name;
    std::string m_type;
    std::string m_value;
};

/// Writes "  Parameter Name: ", the name, ", Value: ", the value and a line end.
VELMORAN_SCENE_EXPORT std::ostream& operator<<(std::ostream& out,
                                               const MaterialParameter& parameter);
} // namespace velmoran::scene
