#pragma once

#include "scene/Export.h"

#include <string>

namespace velmoran::scene
{
/// A picture: its file, under an identifier by which the "texture" parameters of
/// materials refer to it. Nothing opens the file here.
///
/// Plain data: setters store what they are given and raise nothing. Used by one thread at a
///     time; writers hold the scene lock when a scene holds it.
///     A new ID is not recorded with the scene, and no material follows it.
class VELMORAN_SCENE_EXPORT Image
{
public:
    /// Mind the order: the file name comes before the name.
    Image(std::string id, std::string fileName, std::string name);

    const std::string& getID() const { return m_id; }
    void setID(const std::string& id) { m_id = id; }

    const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

    /// File that holds the picture.
    const std::string& getFilename() const { return m_fileName; }
    void setFileName(const std::string& fileName) { m_fileName = fileName; }

private:
    std::string m_id;
    std::string m_name;
    std::string m_fileName;
};
} // namespace velmoran::scene
