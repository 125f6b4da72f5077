// Runs a fuzzer's function once over each file of the folders that are given, without a
// fuzzer: what was found once stays mended.

#include "fuzz/Input.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

int main(int argc, char** argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i)
    {
        std::set<std::filesystem::path> files; // in a fixed order
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
        {
            files.insert(entry.path());
        }
        for (const std::filesystem::path& path : files)
        {
            std::ifstream file(path, std::ios::binary);
            const std::string bytes((std::istreambuf_iterator<char>(file)),
                                    std::istreambuf_iterator<char>());
            std::fprintf(stderr, "%s\n", path.filename().c_str());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++count;
        }
    }
    return count > 0 ? 0 : 1;
}
