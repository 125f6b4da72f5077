// Writes the repository's example documents into a folder.

#include "examples/generator/ExampleDocuments.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <fstream>
#include <iostream>
#include <string>

namespace
{
bool writeFile(const std::string& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    return static_cast<bool>(out);
}
} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Writes room.dae, seesaw.dae, avatar.dae and avatar_tall.dae.",
                 "make_example_data");
    std::string folder;
    double detail = 1.0;
    app.add_option("FOLDER", folder, "Existing folder to write to")
        ->required()
        ->check(CLI::ExistingDirectory);
    app.add_option("--detail", detail, "Density: 2 gives about four times the points of 1")
        ->check(CLI::Range(0.5, 16.0))
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);

    for (const auto& document : velmoran::generator::makeExampleDocuments(detail))
    {
        const std::string path = folder + "/" + document.fileName;
        if (!writeFile(path, document.text))
        {
            std::cerr << "make_example_data: can't write " << path << '\n';
            return 1;
        }
        std::cout << path << ": " << document.text.size() << " bytes\n";
    }
    return 0;
}
