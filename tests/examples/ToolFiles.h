#pragma once

#include "tests/examples/ColladaText.h"
#include "tests/examples/ToolRun.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Files to run the program on.
namespace velmoran::examples::test
{
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

    std::string readFile(const std::string& name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    /// What a command that has to succeed writes as JSON.
    static nlohmann::json runJson(std::vector<const char*> arguments)
    {
        arguments.push_back("--json");
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return nlohmann::json::parse(outcome.out, nullptr, false);
    }

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
struct SharedDocument
{
    std::string file;
    nlohmann::json reference;

    bool isWhole() const { return reference.value("well_formed", true); }
};

/// Those of the folder that the environment names; none without it.
inline std::vector<SharedDocument> sharedDocuments()
{
    namespace fs = std::filesystem;
    std::vector<SharedDocument> documents;
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
            documents.push_back({entry.path().string(), nlohmann::json::parse(in)});
        }
    }
    return documents;
}

/// The same without those that are cut off.
inline std::vector<SharedDocument> wholeSharedDocuments()
{
    std::vector<SharedDocument> documents = sharedDocuments();
    documents.erase(std::remove_if(documents.begin(), documents.end(),
                                   [](const SharedDocument& each) { return !each.isWhole(); }),
                    documents.end());
    return documents;
}
} // namespace velmoran::examples::test
