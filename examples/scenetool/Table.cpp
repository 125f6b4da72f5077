#include "examples/scenetool/Table.h"

#include "examples/scenetool/Text.h"

#include <algorithm>

namespace velmoran::examples
{
void printTable(const std::vector<std::vector<std::string>>& rows,
                const std::vector<Alignment>& columns, std::ostream& out)
{
    std::vector<std::size_t> widths(columns.size(), 0);
    for (const std::vector<std::string>& row : rows)
    {
        for (std::size_t i = 0; i < row.size(); ++i)
        {
            widths.at(i) = std::max(widths.at(i), row[i].size());
        }
    }
    for (const std::vector<std::string>& row : rows)
    {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
        {
            const std::string cell =
                columns[i] == LEFT ? padRight(row[i], widths[i]) : padLeft(row[i], widths[i]);
            line += (i > 0 ? "  " : "") + cell;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}
} // namespace velmoran::examples
