#include "scene/geometry/NormalStorage.h"

#include "scene/geometry/Mesh.h"
#include "scene/geometry/NormalSlots.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace velmoran::scene
{
namespace
{
const StreamMapping* findOwnNormals(const TriangleMeshPrimitive& primitive)
{
    return findStreamMapping(primitive.getStreamMapping(), NORMAL);
}

/// What a mesh reads something else than normals out of.
class OtherStreams
{
public:
    explicit OtherStreams(const Mesh& mesh)
    {
        add(mesh.getVertices());
        for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
        {
            add(primitive->getStreamMapping());
        }
    }

    /// `stream`, or nothing if it is needed for something else.
    StreamPtr leaveOut(const StreamPtr& stream) const
    {
        return m_streams.count(stream) != 0 ? StreamPtr() : stream;
    }

private:
    void add(const std::vector<StreamMapping>& mappings)
    {
        for (const StreamMapping& mapping : mappings)
        {
            // A `VERTEX` input stands for the vertices list and reads no stream.
            if (mapping.getSemantic() != NORMAL && mapping.getSemantic() != VERTEX)
            {
                m_streams.insert(mapping.getStream());
            }
        }
    }

    std::set<StreamPtr> m_streams;
};

StreamPtr addStream(Mesh& mesh, const std::string& id)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, 3, false);
    mesh.addStream(stream);
    return stream;
}

/// Stores normals with the vertices: in the stream that the vertices list has for them, else
/// in a new one.
void storeWithVertices(Mesh& mesh, const OtherStreams& others, std::vector<float> normals)
{
    const StreamMapping* const present = findStreamMapping(mesh.getVertices(), NORMAL);
    StreamPtr stream = present != nullptr ? others.leaveOut(present->getStream()) : StreamPtr();
    if (!stream)
    {
        stream = addStream(mesh, "VM_Calculated_Normals");
        std::vector<StreamMapping> vertices = mesh.getVertices();
        if (present == nullptr)
        {
            vertices.emplace_back(NORMAL, stream, 0);
        }
        else
        {
            vertices[static_cast<std::size_t>(present - mesh.getVertices().data())].setStream(
                stream);
        }
        mesh.setVertices(vertices);
    }
    if (stream->getStride() != 3)
    {
        stream->setStride(3);
    }
    stream->setData(std::move(normals));
}

/// Primitives whose own normals stand in the same stream, which is empty if there is none or
/// if it must be left out.
struct OwnNormals
{
    StreamPtr stream;
    std::vector<TriangleMeshPrimitive*> primitives;
};

std::vector<OwnNormals> groupByStream(const std::vector<TriangleMeshPrimitive*>& primitives,
                                      const OtherStreams& others)
{
    std::vector<OwnNormals> groups;
    std::map<StreamPtr, std::size_t> groupOf;
    for (TriangleMeshPrimitive* const primitive : primitives)
    {
        const StreamMapping* const input = findOwnNormals(*primitive);
        if (input != nullptr)
        {
            const StreamPtr stream = others.leaveOut(input->getStream());
            const auto [place, isNew] = groupOf.try_emplace(stream, groups.size());
            if (isNew)
            {
                groups.push_back({stream, {}});
            }
            groups[place->second].primitives.push_back(primitive);
        }
    }
    return groups;
}

/// Stores normals in the slots that primitives have for them: in a new stream for each of
/// those that there are.
void storeInSlots(Mesh& mesh, const std::vector<OwnNormals>& groups,
                  const std::vector<float>& normals)
{
    const NormalSlots slots(normals);
    for (const OwnNormals& group : groups)
    {
        mesh.removeStream(group.stream);
        const StreamPtr stream =
            addStream(mesh, group.stream ? group.stream->getID() : "NORMAL_stream");
        slots.write(group.primitives, *stream);
        for (TriangleMeshPrimitive* const primitive : group.primitives)
        {
            std::vector<StreamMapping> inputs = primitive->getStreamMapping();
            inputs[static_cast<std::size_t>(findOwnNormals(*primitive) -
                                            primitive->getStreamMapping().data())]
                .setStream(stream);
            primitive->setStreamMapping(std::move(inputs));
        }
    }
}
} // namespace

void storeNormals(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
                  std::vector<float> normals)
{
    const OtherStreams others(mesh);
    const bool hasShared = findStreamMapping(mesh.getVertices(), NORMAL) != nullptr;
    const bool lacksOwn = std::any_of(primitives.begin(), primitives.end(),
                                      [](const TriangleMeshPrimitive* primitive)
                                      { return findOwnNormals(*primitive) == nullptr; });
    if (!hasShared)
    {
        storeInSlots(mesh, groupByStream(primitives, others), normals);
    }
    if (hasShared || lacksOwn)
    {
        storeWithVertices(mesh, others, std::move(normals));
    }
}
} // namespace velmoran::scene
