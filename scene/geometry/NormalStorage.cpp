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

/// New normals of a mesh; nothing of it changes before `publish`.
class NewNormals
{
public:
    explicit NewNormals(Mesh& mesh)
        : m_mesh(mesh), m_streams(mesh.getStreams()), m_vertices(mesh.getVertices())
    {
    }

    /// In the slots that primitives have for them: in a new stream for each of those that
    /// there are.
    void storeInSlots(const std::vector<OwnNormals>& groups, const std::vector<float>& normals);

    /// With the vertices: in the stream that the vertices list has for them, else in a new one.
    void storeWithVertices(const OtherStreams& others, std::vector<float> normals);

    /// Needs no memory.
    void publish();

private:
    StreamPtr addStream(const std::string& id);

    struct NewInputs
    {
        TriangleMeshPrimitive* primitive;
        std::vector<StreamMapping> inputs;
    };

    Mesh& m_mesh;
    std::vector<StreamPtr> m_streams;
    std::vector<StreamMapping> m_vertices;
    std::vector<NormalSlots> m_slots;
    std::vector<NewInputs> m_inputs;
    StreamPtr m_shared; ///< with the vertices
    std::vector<float> m_sharedNormals;
};

StreamPtr NewNormals::addStream(const std::string& id)
{
    StreamPtr stream = boost::make_shared<Stream>(id, 3, false);
    m_streams.push_back(stream);
    return stream;
}

void NewNormals::storeInSlots(const std::vector<OwnNormals>& groups,
                              const std::vector<float>& normals)
{
    m_slots.reserve(groups.size());
    for (const OwnNormals& group : groups)
    {
        const auto before = std::find(m_streams.begin(), m_streams.end(), group.stream);
        if (before != m_streams.end())
        {
            m_streams.erase(before);
        }
        const StreamPtr stream = addStream(group.stream ? group.stream->getID() : "NORMAL_stream");
        m_slots.emplace_back(normals, group.primitives, *stream);
        for (TriangleMeshPrimitive* const primitive : group.primitives)
        {
            std::vector<StreamMapping> inputs = primitive->getStreamMapping();
            inputs[static_cast<std::size_t>(findOwnNormals(*primitive) -
                                            primitive->getStreamMapping().data())]
                .setStream(stream);
            m_inputs.push_back({primitive, std::move(inputs)});
        }
    }
}

void NewNormals::storeWithVertices(const OtherStreams& others, std::vector<float> normals)
{
    const StreamMapping* const present = findStreamMapping(m_vertices, NORMAL);
    m_shared = present != nullptr ? others.leaveOut(present->getStream()) : StreamPtr();
    m_sharedNormals = std::move(normals);
    if (m_shared)
    {
        return;
    }
    m_shared = addStream("VM_Calculated_Normals");
    if (present == nullptr)
    {
        m_vertices.emplace_back(NORMAL, m_shared, 0);
    }
    else
    {
        m_vertices[static_cast<std::size_t>(present - m_vertices.data())].setStream(m_shared);
    }
}

void NewNormals::publish()
{
    for (NormalSlots& slots : m_slots)
    {
        slots.publish();
    }
    for (NewInputs& entry : m_inputs)
    {
        entry.primitive->setStreamMapping(std::move(entry.inputs));
    }
    if (m_shared)
    {
        if (m_shared->getStride() != 3)
        {
            m_shared->setStride(3);
        }
        m_shared->setData(std::move(m_sharedNormals));
    }
    m_mesh.takeStreams(std::move(m_streams), std::move(m_vertices));
}
} // namespace

void storeNormals(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
                  std::vector<float> normals)
{
    const OtherStreams others(mesh);
    NewNormals newNormals(mesh);
    const bool hasShared = findStreamMapping(mesh.getVertices(), NORMAL) != nullptr;
    const bool lacksOwn = std::any_of(primitives.begin(), primitives.end(),
                                      [](const TriangleMeshPrimitive* primitive)
                                      { return findOwnNormals(*primitive) == nullptr; });
    if (!hasShared)
    {
        newNormals.storeInSlots(groupByStream(primitives, others), normals);
    }
    if (hasShared || lacksOwn)
    {
        newNormals.storeWithVertices(others, std::move(normals));
    }
    newNormals.publish();
}
} // namespace velmoran::scene
