#include "bench/Grids.h"

namespace velmoran::bench
{
FlatGrid makeFlatGrid(std::int64_t triangles)
{
    constexpr unsigned int COLUMNS = 500;
    const auto rows = static_cast<unsigned int>(triangles / 2 / COLUMNS);
    FlatGrid grid;
    for (unsigned int row = 0; row <= rows; ++row)
    {
        for (unsigned int column = 0; column <= COLUMNS; ++column)
        {
            const auto x = static_cast<float>(column);
            const auto y = static_cast<float>(row);
            const unsigned int height = (31 * column + 13 * row) * column + 17 * row * row;
            const auto z = static_cast<float>(height % 1021) / 1024.0F;
            grid.positions.insert(grid.positions.end(), {x, y, z});
        }
    }
    for (unsigned int row = 0; row < rows; ++row)
    {
        for (unsigned int column = 0; column < COLUMNS; ++column)
        {
            const unsigned int corner = row * (COLUMNS + 1) + column;
            const unsigned int above = corner + COLUMNS + 1;
            grid.indices.insert(grid.indices.end(),
                                {corner, corner + 1, above, above, corner + 1, above + 1});
        }
    }
    return grid;
}

std::vector<unsigned int> repeatIndices(const std::vector<unsigned int>& indices,
                                        std::size_t attributes)
{
    std::vector<unsigned int> entries;
    entries.reserve(indices.size() * attributes);
    for (const unsigned int index : indices)
    {
        entries.insert(entries.end(), attributes, index);
    }
    return entries;
}
} // namespace velmoran::bench
