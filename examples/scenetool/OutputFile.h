#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace velmoran::examples
{
/// A file that appears under its name only when it is complete: it is written under a
/// temporary name beside it and renamed at the end. Without `commit` nothing is left.
///
/// Errors throw `CommandError` with the file's name and the reason.
class OutputFile
{
public:
    /// Opens the temporary file. Refuses names of things that are no regular file and
    /// files that may not be written. A link is followed.
    explicit OutputFile(const std::string& fileName);

    ~OutputFile();

    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const std::string& text);

    /// Closes the temporary file; fails when not everything could be written.
    void finish();

    /// Gives the finished file its name.
    void commit();

private:
    [[noreturn]] void fail(int reason) const;

    std::string m_fileName;            ///< as the user wrote it
    std::filesystem::path m_path;      ///< where the file is to stand
    std::filesystem::path m_temporary; ///< empty once committed
    std::ofstream m_stream;
};
} // namespace velmoran::examples
