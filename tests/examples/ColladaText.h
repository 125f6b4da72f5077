#pragma once

#include "core/event/EventManager.h"
#include "examples/collada/ColladaReader.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

// Pieces of documents, and a scene to read them into.
namespace velmoran::examples::test
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;

inline std::string document(const std::string& body)
{
    return "<COLLADA version=\"1.4.1\">\n" + body + "\n</COLLADA>";
}

inline std::string repeat(int count, const std::string& text)
{
    std::string result;
    for (int i = 0; i < count; ++i)
    {
        result += text;
    }
    return result;
}

inline std::string visualScene(const std::string& nodes)
{
    return "<library_visual_scenes><visual_scene id=\"vs\" name=\"stage\">" + nodes +
           "</visual_scene></library_visual_scenes>"
           "<scene><instance_visual_scene url=\"#vs\"/></scene>";
}

/// A source of `count` tuples of `stride` floats, which may be named.
inline std::string source(const std::string& id, int count, int stride, const std::string& values,
                          const std::vector<std::string>& names = {})
{
    const std::string total = std::to_string(count * stride);
    std::string params;
    for (const std::string& name : names)
    {
        params += "<param name=\"" + name + "\" type=\"float\"/>";
    }
    return "<source id=\"" + id + "\"><float_array id=\"" + id + "-a\" count=\"" + total + "\">" +
           values + "</float_array><technique_common><accessor source=\"#" + id + "-a\" count=\"" +
           std::to_string(count) + "\" stride=\"" + std::to_string(stride) + "\">" + params +
           "</accessor></technique_common></source>";
}

/// A geometry library with "quad": four positions, two texture coordinates in "uv" and
/// `primitives`.
inline std::string quad(const std::string& primitives)
{
    return "<library_geometries><geometry id=\"quad\" name=\"Quad\"><mesh>" +
           source("pos", 4, 3, "0 0 0 1 0 0 1 1 0 0 1 0") + source("uv", 2, 2, "0 0 1 1") +
           "<vertices id=\"v\"><input semantic=\"POSITION\" source=\"#pos\"/></vertices>" +
           primitives + "</mesh></geometry></library_geometries>";
}

/// The input that the primitives of `quad` need.
inline const std::string VERTEX_INPUT = "<input semantic=\"VERTEX\" source=\"#v\" offset=\"0\"/>";

/// A list of triangles of `quad`.
inline std::string triangleList(const std::string& indices)
{
    return "<triangles>" + VERTEX_INPUT + "<p>" + indices + "</p></triangles>";
}

class ColladaTest : public ::testing::Test
{
protected:
    ReadResult read(const std::string& body)
    {
        return ColladaReader().readText(document(body), "doc.dae", m_scene);
    }

    /// Reads a document that has to be fine.
    ReadResult readFine(const std::string& body)
    {
        const ReadResult result = read(body);
        EXPECT_TRUE(result.ok) << result.error;
        EXPECT_EQ(result.error, "");
        return result;
    }

    scene::MeshPtr getMesh(const std::string& id)
    {
        return boost::dynamic_pointer_cast<scene::Mesh>(
            m_scene->getGeometryManager()->getGeometry(id));
    }

    scene::SceneManagerPtr m_scene =
        boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
};
} // namespace velmoran::examples::test
