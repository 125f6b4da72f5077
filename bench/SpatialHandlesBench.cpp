// Sorting triangles into an octree of shared handles: every element of a cell is tested against
// each of its eight children's boxes.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

namespace velmoran::bench
{
namespace
{
using Handle = boost::shared_ptr<TrianglePoints>;

struct HandleCell
{
    Eigen::Vector3f min;
    Eigen::Vector3f max;
    std::vector<Handle> elements;
    std::vector<boost::shared_ptr<HandleCell>> children;
};
using CellHandle = boost::shared_ptr<HandleCell>;

CellHandle makeCell(const Eigen::Vector3f& min, const Eigen::Vector3f& max)
{
    CellHandle cell = boost::make_shared<HandleCell>();
    cell->min = min;
    cell->max = max;
    return cell;
}

void divide(HandleCell& cell, int depth)
{
    if (cell.elements.size() <= MAX_PRIMITIVES || depth > MAX_DEPTH)
    {
        return;
    }
    const Eigen::Vector3f half = (cell.max - cell.min) * 0.25F;
    for (unsigned int i = 0; i < 8; ++i)
    {
        const Eigen::Vector3f side(static_cast<float>(i & 1U), static_cast<float>((i >> 1U) & 1U),
                                   static_cast<float>(i >> 2U));
        const Eigen::Vector3f low = cell.min + side.cwiseProduct(2.0F * half);
        cell.children.push_back(makeCell(low, low + 2.0F * half));
        for (const Handle& element : cell.elements)
        {
            if (meetsBox(*element, low + half, half))
            {
                cell.children.back()->elements.push_back(element);
            }
        }
    }
    cell.elements.clear();
    for (const CellHandle& child : cell.children)
    {
        divide(*child, depth + 1);
    }
}

std::size_t countEntries(const HandleCell& cell)
{
    std::size_t entries = cell.elements.size();
    for (const CellHandle& child : cell.children)
    {
        entries += countEntries(*child);
    }
    return entries;
}

void buildOfHandles(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    std::vector<Handle> elements;
    Eigen::Vector3f min = ring[0][0];
    Eigen::Vector3f max = min;
    for (const TrianglePoints& triangle : ring)
    {
        elements.push_back(boost::make_shared<TrianglePoints>(triangle));
        for (const Eigen::Vector3f& point : triangle)
        {
            min = min.cwiseMin(point);
            max = max.cwiseMax(point);
        }
    }
    CellHandle root;
    for (auto _ : state)
    {
        state.PauseTiming();
        root = makeCell(min, max);
        state.ResumeTiming();
        root->elements = elements;
        divide(*root, 0);
    }
    const auto wanted = static_cast<double>(FlatOctree(ring).entryCount());
    const auto found = static_cast<double>(countEntries(*root));
    // The limit's test of middle planes leaves out some that the rounding box test lets in.
    require(state, std::abs(found - wanted) < 1e-2 * wanted, "other entries");
    countItems(state, state.range(0));
}
BENCHMARK(buildOfHandles)->Name("octree/shared handles, eight box tests")->Apply(&atNAnd4N<50000>);
} // namespace
} // namespace velmoran::bench
