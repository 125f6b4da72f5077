#pragma once

#include "tests/examples/ColladaText.h"
#include "tests/examples/ToolRun.h"

#include <Eigen/Core>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

// Files to run the program on.
namespace velmoran::examples::test
{
using nlohmann::json;

/// What a command that has to succeed writes as JSON.
inline json runJson(std::vector<std::string> arguments)
{
    arguments.push_back("--json");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return json::parse(outcome.out, nullptr, false);
}

/// Checks that an object holds what `part` tells; there nothing is null.
inline void expectHolds(const json& object, const std::string& part)
{
    json merged = object;
    merged.merge_patch(json::parse(part));
    EXPECT_EQ(merged, object);
}

/// A command that ends with a status other than 0 and a message.
struct Refusal
{
    std::vector<std::string> arguments;
    int status;
    const char* message; ///< a part of it
};

/// Each writes nothing but its message: one line when the fault is none of usage.
inline void expectRefused(const std::vector<Refusal>& rows)
{
    for (const Refusal& row : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(row.arguments));
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_THAT(outcome.out, ::testing::IsEmpty());
        EXPECT_THAT(outcome.err, ::testing::HasSubstr(row.message));
        EXPECT_EQ(outcome.err.find('\n') == outcome.err.size() - 1, row.status == 1);
    }
}

inline std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

using Points = Eigen::Matrix3Xd; ///< in columns

/// The points of an OBJ file, or its normals.
inline Points readPoints(const std::string& path, const std::string& kind = "v ")
{
    std::istringstream in(readFile(path));
    std::vector<double> numbers;
    for (std::string line; std::getline(in, line);)
    {
        std::istringstream words(line.rfind(kind, 0) == 0 ? line.substr(kind.size()) : "");
        for (double number = 0.0; words >> number;)
        {
            numbers.push_back(number);
        }
    }
    return Eigen::Map<const Points>(numbers.data(), 3, Eigen::Index(numbers.size() / 3));
}

/// A folder of its own for each case.
class ToolFolder : public ::testing::Test
{
protected:
    ToolFolder() { std::filesystem::create_directories(m_folder); }

    ~ToolFolder() override { std::filesystem::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }

    /// Writes a document and returns its path.
    std::string write(const std::string& name, const std::string& body) const
    {
        std::ofstream(path(name)) << document(body);
        return path(name);
    }

    /// Writes a document like that in the file `original`, the first of each word replaced.
    std::string writeChanged(const std::string& name, const std::string& original,
                             const std::vector<std::pair<std::string, std::string>>& words) const
    {
        std::string text = test::readFile(original);
        for (const auto& [from, to] : words)
        {
            text.replace(text.find(from), from.size(), to);
        }
        std::ofstream(path(name)) << text;
        return path(name);
    }

    std::string readFile(const std::string& name) const { return test::readFile(path(name)); }

private:
    std::filesystem::path m_folder =
        std::filesystem::path(::testing::TempDir()) /
        ("toolfolder_" +
         std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
};

/// A document of the repository.
inline std::string exampleDocument(const std::string& name)
{
    return std::string(VELMORAN_SOURCE_DIR) + "/examples/data/" + name;
}

/// A document of another program, and the facts that are known of it.
struct OtherDocument
{
    std::string file;
    json reference;
};

/// Those of the folder that the environment names; none without it.
inline std::vector<OtherDocument> otherDocuments()
{
    namespace fs = std::filesystem;
    std::vector<OtherDocument> documents;
    const char* const folder = std::getenv("VELMORAN_MODELS");
    if (folder == nullptr || !fs::is_directory(folder))
    {
        return documents;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    {
        const fs::path reference =
            fs::path(folder) / "reference" / entry.path().filename().replace_extension("json");
        if (entry.path().extension() == ".dae" && fs::exists(reference))
        {
            std::ifstream in(reference);
            documents.push_back({entry.path().string(), json::parse(in)});
        }
    }
    return documents;
}

/// The same without those that are cut off.
inline std::vector<OtherDocument> wholeOtherDocuments()
{
    std::vector<OtherDocument> whole;
    for (const OtherDocument& document : otherDocuments())
    {
        if (document.reference.value("well_formed", true))
        {
            whole.push_back(document);
        }
    }
    return whole;
}

/// The files of such documents, behind those of the repository's documents `own`.
inline std::vector<std::string> wholeDocuments(const std::vector<std::string>& own)
{
    std::vector<std::string> files;
    for (const std::string& name : own)
    {
        files.push_back(exampleDocument(name));
    }
    for (const OtherDocument& document : wholeOtherDocuments())
    {
        files.push_back(document.file);
    }
    return files;
}
} // namespace velmoran::examples::test
