#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace velmoran::examples
{
enum Alignment
{
    LEFT,
    RIGHT
};

/// Writes rows with two blanks between columns as wide as their widest cell. Rows may have less
/// cells than there are columns.
void printTable(const std::vector<std::vector<std::string>>& rows,
                const std::vector<Alignment>& columns, std::ostream& out);
} // namespace velmoran::examples
