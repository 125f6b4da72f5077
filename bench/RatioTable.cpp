#include "bench/RatioTable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace velmoran::bench
{
struct Row
{
    const char* ours;
    const char* heldAgainst;
    std::int64_t size;
    double wantedRatio;  ///< 0: for information
    double wantedGrowth; ///< from size to four times the size; 0: for information
};

namespace
{
constexpr std::int64_t MILLION = 1000000;

const std::vector<Row> ROWS = {
    {"insertValue/ours", "insertValue/meshoptimizer", MILLION, 0.8, 6.5},
    {"insertValue/ours", "insertValue/absl::flat_hash_map", MILLION, 1.25, 0},
    {"insertValue/ours", "insertValue/std::unordered_map", MILLION, 0, 0},
    {"insertValue/ours", "insertValue/limit", MILLION, 0, 0},
    {"insertValues/ours", "insertValue/absl::flat_hash_map", MILLION, 0.7, 6.5},
    {"insertValues/ours", "insertValue/limit", MILLION, 1.2, 0},

    {"event/ours, heard", "event/Boost.Signals2 by type", MILLION, 1.0, 0},
    {"event/ours, heard", "event/Boost.Signals2 without look-up", MILLION, 0, 0},
    {"event/ours, heard", "event/limit", MILLION, 0, 0},
    {"event/ours, from texts, heard", "event/Boost.Signals2 by type, from texts", MILLION, 0, 0},
    {"event/ours, unheard", "event/ours, heard", MILLION, 0.2, 0},
    {"event/ours, from texts, unheard", "event/ours, from texts, heard", MILLION, 0.2, 0},

    {"matrix text/ours", "matrix text/snprintf", 10000, 0.35, 0},
    {"matrix text/ours", "matrix text/limit", 10000, 0, 0},
    {"setTranslation/ours, unheard", "setTranslation/ours, heard", 100000, 0, 0},
    {"setTranslation/ours, unheard", "setTranslation/limit", 100000, 0, 0},

    {"merge/ours, no clash", "merge/OpenSceneGraph deep copy", 100000, 2.5, 6},
    {"merge/ours, into an empty scene", "merge/OpenSceneGraph deep copy", 100000, 2.5, 6},
    {"merge/ours, every identifier clashes", "merge/OpenSceneGraph deep copy", 100000, 6, 6},
    {"merge/ours, every identifier clashes, logging off", "merge/OpenSceneGraph deep copy", 100000,
     6, 6},
    {"merge/ours, no clash", "merge/Assimp copy", 100000, 0, 0},
    {"merge/ours, no clash", "merge/limit, no clash", 100000, 0, 0},
    {"merge/ours, every identifier clashes, logging off", "merge/limit, every identifier clashes",
     100000, 0, 0},

    {"getNodeByID/ours", "getNodeByID/OpenSceneGraph visitor", 100000, 0.01, 0},
    {"getNodeByID/ours", "getNodeByID/Assimp FindNode", 100000, 0, 0},
    {"getNodeByID/ours", "getNodeByID/limit", 100000, 0, 0},
    {"getNodeByID/ours, first 10,000 after a change", "getNodeByID/OpenSceneGraph visitor", 100000,
     0, 0},
    {"build/ours", "build/OpenSceneGraph", 100000, 0, 0},
    {"build/ours", "build/limit", 100000, 0, 0},
    {"build/ours", "build/Assimp", 100000, 0, 0},
    {"combined matrices/ours, together", "combined matrices/Ogre update", 100000, 0.9, 0},
    {"combined matrices/ours, together", "combined matrices/OpenSceneGraph visitor", 100000, 0, 0},
    {"combined matrices/ours, together", "combined matrices/limit, together", 100000, 0, 0},
    {"combined matrices/ours, one by one", "combined matrices/OpenSceneGraph node paths", 100000, 0,
     0},
    {"combined matrices/ours, one by one", "combined matrices/limit, one by one", 100000, 0, 0},

    {"play/ours, unheard", "play/limit", 1000, 1.5, 0},
    {"play/ours, unheard", "play/OpenSceneGraph", 1000, 0.1, 0},
    {"play/ours, heard", "play/ours, unheard", 1000, 0, 0},
    {"play/ours, into a map", "play/limit", 1000, 3.5, 0},
    {"play/ours, 10,000 keys", "play/ours, 100 keys", 40, 1.5, 0},
    {"seek/ours, 10,000 keys", "seek/ours, 100 keys", 40, 0, 0},

    {"skinning/ours", "skinning/Ogre, into a buffer that is there", 25000, 0, 6},
    {"skinning/ours", "skinning/Ogre, into a buffer that is there", 100000, 2.3, 6},
    {"skinning/ours", "skinning/Ogre, into a buffer that is there", 400000, 0, 0},
    {"skinning/ours", "skinning/limit", 25000, 0, 0},
    {"skinning/ours", "skinning/limit", 100000, 2, 0},
    {"skinning/ours", "skinning/limit", 400000, 0, 0},
    {"skinning/ours, by influences", "skinning/ours, by influences", 4, 0, 5},
    {"replaceJoints/ours, by joints", "replaceJoints/limit", 150, 0, 6},
    {"replaceJoints/ours, by vertices", "replaceJoints/ours, by vertices", 20000, 0, 1.5},
    {"morph/ours, by joints", "morph/limit, by joints", 150, 0, 6},
    {"morph/ours, by vertices", "morph/limit, by vertices", 20000, 0, 6},

    {"subdivision/ours, positions", "subdivision/CGAL", 62500, 0, 6.5},
    {"subdivision/ours, positions", "subdivision/CGAL", 250000, 0.45, 0},
    {"subdivision/ours, positions", "subdivision/limit", 250000, 0, 0},
    {"subdivision/ours, normals and texture coordinates", "subdivision/CGAL", 62500, 0, 6.5},
    {"subdivision/ours, normals and texture coordinates", "subdivision/CGAL", 250000, 1.25, 0},
    {"subdivision/ours, normals and texture coordinates", "subdivision/limit", 250000, 0, 0},
    {"subdivision/ours, skinned", "subdivision/ours, positions", 62500, 0, 6.5},
    {"subdivision/ours, fan", "subdivision/ours, positions", 62500, 0, 6.5},

    {"triangles/ours, all held", "triangles/limit", 250000, 0, 0},
    {"triangles/ours, one by one and summed", "triangles/limit", 250000, 0, 0},

    {"octree/ours", "octree/CGAL AABB_tree build", 50000, 0, 6.5},
    {"octree/ours", "octree/CGAL AABB_tree build", 200000, 1.2, 0},
    {"octree/ours", "octree/limit", 200000, 0, 0},
    {"pick/ours", "pick/CGAL AABB_tree nearest hit", 50000, 0, 6.5},
    {"pick/ours", "pick/CGAL AABB_tree nearest hit", 200000, 0.5, 0},
    {"pick/ours", "pick/limit", 200000, 0, 0},

    {"normals/ours, with the vertices", "normals/OpenMesh update_normals", 250000, 0, 6.5},
    {"normals/ours, with the vertices", "normals/OpenMesh update_normals", MILLION, 0.35, 0},
    {"normals/ours, with the vertices", "normals/limit", MILLION, 1.4, 0},
    {"normals/ours, in a slot of their own", "normals/OpenMesh update_normals", 250000, 0, 6.5},
    {"normals/ours, in a slot of their own", "normals/OpenMesh update_normals", MILLION, 1.0, 0},
    {"normals/ours, in a slot of their own", "normals/limit", MILLION, 0, 0},
};

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string format(double value, const char* pattern)
{
    char text[32];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

std::string formatTime(double seconds)
{
    return seconds >= 1e-3   ? format(seconds * 1e3, "%.3g ms")
           : seconds >= 1e-6 ? format(seconds * 1e6, "%.3g us")
                             : format(seconds * 1e9, "%.3g ns");
}

/// "" when nothing is wanted, else the limit and whether it holds.
std::string judge(double value, double wanted)
{
    return wanted == 0 ? "" : format(wanted, " (<= %g") + (value <= wanted ? ")" : " MISSED)");
}
} // namespace

RatioTable::RatioTable() : ConsoleReporter(OO_None) {}

double RatioTable::Sample::seconds() const
{
    return medianOf(roundSeconds);
}

double RatioTable::Sample::secondsPerItem() const
{
    return seconds() / itemsPerRound;
}

void RatioTable::ReportRuns(const std::vector<Run>& runs)
{
    std::vector<Run> shown;
    for (const Run& run : runs)
    {
        const bool isSingle = run.run_type == Run::RT_Iteration;
        if (isSingle ? run.repetitions <= 1 : run.aggregate_name == "median")
        {
            shown.push_back(run);
        }
        if (!isSingle || run.error_occurred || run.iterations == 0)
        {
            continue;
        }
        const std::int64_t size = std::atoll(run.run_name.args.c_str());
        Sample& sample = m_samples[Key(run.run_name.function_name, size)];
        const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
        sample.roundSeconds.push_back(seconds);
        for (const auto& [name, counter] : run.counters)
        {
            sample.counters[name] = counter.value;
        }
        const auto rate = run.counters.find("items_per_second");
        if (rate != run.counters.end())
        {
            sample.itemsPerRound = rate->second.value * seconds;
        }
    }
    ConsoleReporter::ReportRuns(shown);
}

void RatioTable::Finalize()
{
    std::ostream& out = GetOutputStream();
    out << "\nRatios: ours to what it is held against, by the time for one item, with the range "
           "over\nthe repetitions; 4n/n: growth of ours. In brackets what is wanted.\n\n";
    for (const Row& row : ROWS)
    {
        printRow(row);
    }
    printAllocations();
    out << std::flush;
}

const RatioTable::Sample* RatioTable::find(const std::string& name, std::int64_t size) const
{
    const auto found = m_samples.find(Key(name, size));
    return found == m_samples.end() ? nullptr : &found->second;
}

void RatioTable::printRow(const Row& row) const
{
    const Sample* const ours = find(row.ours, row.size);
    const Sample* const other = find(row.heldAgainst, row.size);
    if (ours == nullptr || other == nullptr)
    {
        return;
    }
    const double ratio = ours->secondsPerItem() / other->secondsPerItem();
    std::vector<double> ratios;
    const double scale = other->itemsPerRound / ours->itemsPerRound;
    for (std::size_t i = 0; i < ours->roundSeconds.size() && i < other->roundSeconds.size(); ++i)
    {
        ratios.push_back(scale * ours->roundSeconds[i] / other->roundSeconds[i]);
    }
    std::ostream& out = GetOutputStream();
    out << row.ours << " : " << row.heldAgainst << "\n    " << formatTime(ours->secondsPerItem())
        << " : " << formatTime(other->secondsPerItem()) << " = " << format(ratio, "%.3g")
        << format(*std::min_element(ratios.begin(), ratios.end()), " [%.3g")
        << format(*std::max_element(ratios.begin(), ratios.end()), "-%.3g]")
        << judge(ratio, row.wantedRatio);
    const Sample* const larger = find(row.ours, 4 * row.size);
    if (larger != nullptr)
    {
        const double growth = larger->seconds() / ours->seconds();
        out << ", 4n/n " << format(growth, "%.3g") << judge(growth, row.wantedGrowth);
    }
    out << "\n";
}

void RatioTable::printAllocations() const
{
    const Sample* const reading = find("triangles/ours, all held", MILLION);
    if (reading == nullptr)
    {
        return;
    }
    const double allocations = reading->counters.at("allocs_per_triangle");
    const double objects = reading->counters.at("objects_per_triangle");
    GetOutputStream() << "triangles/ours, all held: " << format(allocations, "%.6g")
                      << " allocations per triangle, " << format(objects, "%g")
                      << " objects handed out" << judge(allocations, objects) << "\n";
}
} // namespace velmoran::bench
