#include "scene/spatial/OctreeNode.h"

#include "scene/spatial/CellTree.h"
#include "scene/spatial/FlatElements.h"
#include "scene/spatial/Octants.h"
#include "scene/spatial/PrefetchElement.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <numeric>
#include <utility>

namespace velmoran::scene
{
namespace
{
constexpr unsigned int CHILDREN = 8;

void append(std::vector<IPrimitivePtr> from, std::vector<IPrimitivePtr>& to)
{
    if (to.empty())
    {
        to.swap(from);
        return;
    }
    to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

/// Hands out the elements that entries stand for. The last one to get an element gets the
/// handle itself, the others copies.
class HandleDealer
{
public:
    HandleDealer(const std::vector<std::uint32_t>& entries, std::vector<IPrimitivePtr> handles)
        : m_entries(entries), m_handles(std::move(handles)), m_uses(m_handles.size(), 0)
    {
        for (const std::uint32_t entry : m_entries)
        {
            ++m_uses[entry];
        }
    }

    /// Appends the elements of entries, each of which is asked for once.
    void deal(std::size_t first, std::size_t count, std::vector<IPrimitivePtr>& to)
    {
        to.reserve(to.size() + count);
        for (std::size_t i = first; i < first + count; ++i)
        {
            // Not in a function of its own, which the compiler would take for one without effect.
            if (i + 2 * FETCH_AHEAD < m_entries.size())
            {
                __builtin_prefetch(&m_handles[m_entries[i + 2 * FETCH_AHEAD]], 1);
                prefetchCount(m_handles[m_entries[i + FETCH_AHEAD]]);
            }
            const std::uint32_t entry = m_entries[i];
            const bool isLast = --m_uses[entry] == 0;
            to.push_back(isLast ? std::move(m_handles[entry]) : m_handles[entry]);
        }
    }

private:
    const std::vector<std::uint32_t>& m_entries;
    std::vector<IPrimitivePtr> m_handles;
    std::vector<std::uint32_t> m_uses; ///< still to come
};
} // namespace

/// What a cell is given to store.
struct OctreeNode::Delivery
{
    OctreeNode* cell;
    std::vector<IPrimitivePtr> primitives;
};

OctreeNode::OctreeNode(OctreeNode* parent, const Eigen::Vector3f& min, const Eigen::Vector3f& max)
    : m_parent(parent), m_min(min), m_max(max)
{
}

OctreeNode::~OctreeNode()
{
    std::vector<OctreeNodePtr> released;
    released.swap(m_children);
    while (!released.empty())
    {
        const OctreeNodePtr cell = std::move(released.back());
        released.pop_back();
        cell->m_parent = nullptr;
        if (cell.use_count() == 1)
        {
            std::move(cell->m_children.begin(), cell->m_children.end(),
                      std::back_inserter(released));
            cell->m_children.clear();
        }
    }
}

const Eigen::Vector3f& OctreeNode::getBVMin() const
{
    return m_min;
}

const Eigen::Vector3f& OctreeNode::getBVMax() const
{
    return m_max;
}

OctreeNode* OctreeNode::getParent() const
{
    return m_parent;
}

OctreeNodePtr OctreeNode::getChildAt(unsigned int index) const
{
    return index < m_children.size() ? m_children[index] : OctreeNodePtr();
}

unsigned int OctreeNode::getChildCount() const
{
    return static_cast<unsigned int>(m_children.size());
}

const std::vector<IPrimitivePtr>& OctreeNode::getPrimitives() const
{
    return m_primitives;
}

unsigned int OctreeNode::getDepth() const
{
    unsigned int depth = 0;
    for (const OctreeNode* cell = m_parent; cell != nullptr; cell = cell->m_parent)
    {
        ++depth;
    }
    return depth;
}

void OctreeNode::subDivide()
{
    if (!m_children.empty())
    {
        return;
    }
    const Octants octants(m_min, m_max);
    m_children.reserve(CHILDREN);
    for (unsigned int i = 0; i < CHILDREN; ++i)
    {
        m_children.push_back(boost::make_shared<OctreeNode>(this, octants.min(i), octants.max(i)));
    }
}

void OctreeNode::calculate(int maxDepth, int maxPrimitives, std::vector<IPrimitivePtr> primitives)
{
    primitives.erase(std::remove(primitives.begin(), primitives.end(), IPrimitivePtr()),
                     primitives.end());
    std::vector<Delivery> deliveries;
    deliveries.push_back({this, std::move(primitives)});
    while (!deliveries.empty())
    {
        Delivery next = std::move(deliveries.back());
        deliveries.pop_back();
        if (next.cell->keeps(next.primitives.size(), maxDepth, maxPrimitives))
        {
            append(std::move(next.primitives), next.cell->m_primitives);
        }
        else if (next.cell->m_children.empty())
        {
            next.cell->sortIntoNewCells(maxDepth, maxPrimitives, std::move(next.primitives));
        }
        else
        {
            next.cell->sortIntoChildren(std::move(next.primitives), deliveries);
        }
    }
}

/// Whether `incoming` more elements stay in the cell itself.
bool OctreeNode::keeps(std::size_t incoming, int maxDepth, int maxPrimitives) const
{
    const auto elements = static_cast<std::int64_t>(m_primitives.size() + incoming);
    return elements <= maxPrimitives || static_cast<std::int64_t>(getDepth()) > maxDepth;
}

void OctreeNode::sortIntoNewCells(int maxDepth, int maxPrimitives,
                                  std::vector<IPrimitivePtr> primitives)
{
    const FlatElements elements(primitives);
    std::vector<std::uint32_t> all(elements.size());
    std::iota(all.begin(), all.end(), 0U);
    const TopCell top = {{m_min, m_max}, getDepth(), m_primitives.size()};
    const CellTree tree(elements, std::move(all), top, {maxDepth, maxPrimitives});
    adopt(tree, std::move(primitives));
}

/// One step into a cell that is divided already.
void OctreeNode::sortIntoChildren(std::vector<IPrimitivePtr> primitives,
                                  std::vector<Delivery>& deliveries) const
{
    const FlatElements elements(primitives);
    const Octants octants(m_min, m_max);
    std::vector<std::vector<IPrimitivePtr>> parts(m_children.size());
    for (std::uint32_t i = 0; i < elements.size(); ++i)
    {
        const unsigned int met = octants.metBy(elements, i);
        for (std::size_t octant = 0; octant < parts.size(); ++octant)
        {
            if (((met >> octant) & 1U) != 0)
            {
                parts[octant].push_back(primitives[i]);
            }
        }
    }
    for (std::size_t octant = 0; octant < parts.size(); ++octant)
    {
        deliveries.push_back({m_children[octant].get(), std::move(parts[octant])});
    }
}

/// Makes the cells of `tree` below this one, which has none, and stores the elements.
void OctreeNode::adopt(const CellTree& tree, std::vector<IPrimitivePtr> primitives)
{
    HandleDealer dealer(tree.entries(), std::move(primitives));
    std::vector<OctreeNode*> cells(tree.cells().size(), this);
    for (std::size_t i = 0; i < cells.size(); ++i)
    {
        const CellTree::Cell& cell = tree.cells()[i];
        if (cell.firstChild != 0)
        {
            cells[i]->subDivide();
            for (std::size_t octant = 0; octant < CHILDREN; ++octant)
            {
                cells[cell.firstChild + octant] = cells[i]->m_children[octant].get();
            }
        }
        dealer.deal(cell.firstEntry, cell.entryCount, cells[i]->m_primitives);
    }
}

bool OctreeNode::intersectRay(const RayPtr& /*ray*/) const
{
    return false;
}
} // namespace velmoran::scene
