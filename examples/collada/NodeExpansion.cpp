#include "examples/collada/NodeExpansion.h"

#include "scene/graph/ITransformation.h"

#include <algorithm>
#include <cstdint>

namespace velmoran::examples::collada
{
namespace
{
constexpr std::uint64_t MAX_COPIED_NODES = 1000000;
constexpr std::uint64_t MAX_COPIED_PARTS = 4000000;
constexpr std::size_t TEXT_PER_PART = 64; ///< long texts count as several parts

/// What a subtree comes to.
struct Size
{
    std::uint64_t nodes = 0;
    std::uint64_t parts = 0;

    /// Stops far above the limits instead of wrapping.
    void add(const Size& other)
    {
        constexpr std::uint64_t FULL = std::uint64_t(1) << 40;
        nodes = std::min(nodes + other.nodes, FULL);
        parts = std::min(parts + other.parts, FULL);
    }
};

std::uint64_t countPart(const std::string& text)
{
    return 1 + text.size() / TEXT_PER_PART;
}

/// Parts of an instance as the document writes it.
std::uint64_t countWritten(const GeometryDraft& geometry)
{
    std::uint64_t parts = 1;
    for (const SkeletonDraft& skeleton : geometry.skeletons)
    {
        parts += countPart(skeleton.id);
    }
    for (const auto& binding : geometry.bindings)
    {
        parts += countPart(binding.first);
    }
    return parts;
}

/// Symbols that an instance without bindings binds by default.
std::uint64_t countImplied(const GeometryDraft& geometry, const Meshes& meshes)
{
    std::uint64_t parts = 0;
    if (!geometry.hasBindings)
    {
        for (const std::string& symbol : meshes.getSymbols(geometry.mesh))
        {
            parts += countPart(symbol);
        }
    }
    return parts;
}

/// One node as the document writes it, without those below it.
Size measureWritten(const NodeDraft& draft)
{
    Size size;
    size.nodes = 1;
    size.parts = countPart(draft.name) + countPart(draft.sid) + countPart(draft.type) +
                 draft.layers.size() + draft.cameras.size() + draft.lights.size();
    for (const scene::ITransformationPtr& transformation : draft.transformations)
    {
        size.parts += countPart(transformation->getSid());
    }
    for (const GeometryDraft& geometry : draft.geometries)
    {
        size.parts += countWritten(geometry);
    }
    return size;
}

/// Walks all drafts, each once, and measures what each comes to with all copies.
class ExpansionCheck
{
public:
    ExpansionCheck(const Document& document, const NodeDrafts& nodes, const Meshes& meshes)
        : m_document(document),
          m_drafts(nodes.getDrafts()),
          m_meshes(meshes),
          m_states(m_drafts.size(), NEW),
          m_sizes(m_drafts.size())
    {
    }

    void run(const NodeDraft* root)
    {
        for (std::size_t place = 0; place < m_drafts.size(); ++place)
        {
            if (m_states[place] == NEW)
            {
                visit(place);
            }
        }
        if (root)
        {
            checkLimits(*root);
        }
    }

private:
    enum State : char
    {
        NEW,
        OPEN, ///< above the draft that is looked at
        DONE
    };

    struct Frame
    {
        std::size_t place;
        std::size_t next; ///< the child to go to
    };

    void visit(std::size_t start)
    {
        enter(start);
        while (!m_path.empty())
        {
            Frame& frame = m_path.back();
            const NodeDraft& draft = m_drafts[frame.place];
            if (frame.next == draft.children.size())
            {
                m_states[frame.place] = DONE;
                m_path.pop_back();
                continue;
            }
            const NodeDraft::Child& child = draft.children[frame.next];
            if (m_states[child.draft] == OPEN)
            {
                m_document.fail(child.element, "the instanced nodes lead back to this one");
            }
            if (m_states[child.draft] == NEW)
            {
                enter(child.draft);
                continue; // comes back to this child when it is done
            }
            m_sizes[frame.place].add(m_sizes[child.draft]);
            ++frame.next;
        }
    }

    void enter(std::size_t place)
    {
        Size size = measureWritten(m_drafts[place]);
        for (const GeometryDraft& geometry : m_drafts[place].geometries)
        {
            size.add({0, countImplied(geometry, m_meshes)});
        }
        m_states[place] = OPEN;
        m_sizes[place] = size;
        m_path.push_back({place, 0});
    }

    /// What the document itself writes is not limited.
    void checkLimits(const NodeDraft& root) const
    {
        Size written;
        std::vector<const NodeDraft*> pending = {&root};
        while (!pending.empty())
        {
            const NodeDraft& draft = *pending.back();
            pending.pop_back();
            written.add(measureWritten(draft));
            for (const NodeDraft::Child& child : draft.children)
            {
                if (!child.isCopy)
                {
                    pending.push_back(&m_drafts[child.draft]);
                }
            }
        }
        const Size& all = m_sizes[static_cast<std::size_t>(&root - m_drafts.data())];
        if (all.nodes - written.nodes > MAX_COPIED_NODES ||
            all.parts - written.parts > MAX_COPIED_PARTS)
        {
            m_document.fail(root.element,
                            "its instances come to too many nodes: " + std::to_string(all.nodes));
        }
    }

    const Document& m_document;
    const std::vector<NodeDraft>& m_drafts;
    const Meshes& m_meshes;
    std::vector<State> m_states; ///< by draft
    std::vector<Size> m_sizes;   ///< by draft
    std::vector<Frame> m_path;
};
} // namespace

void checkExpansion(const Document& document, const NodeDrafts& nodes, const Meshes& meshes)
{
    ExpansionCheck(document, nodes, meshes).run(nodes.getRoot());
}
} // namespace velmoran::examples::collada
