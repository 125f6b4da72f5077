#include "examples/scenetool/OutputFile.h"

#include "examples/scenetool/SceneLoader.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace velmoran::examples
{
namespace fs = std::filesystem;

OutputFile::OutputFile(const std::string& fileName) : m_fileName(fileName), m_path(fileName)
{
    std::error_code error;
    if (fs::exists(m_path, error))
    {
        if (!fs::is_regular_file(m_path, error))
        {
            fail(fs::is_directory(m_path, error) ? EISDIR : EINVAL);
        }
        if (::access(m_path.c_str(), W_OK) != 0)
        {
            fail(errno);
        }
        m_path = fs::canonical(m_path, error);
    }
    fs::path temporary = m_path;
    temporary += ".part" + std::to_string(::getpid());
    errno = 0;
    m_stream.open(temporary, std::ios::binary | std::ios::trunc);
    if (!m_stream)
    {
        fail(errno);
    }
    m_temporary = temporary;
}

OutputFile::~OutputFile()
{
    if (!m_temporary.empty())
    {
        m_stream.close();
        std::error_code ignored;
        fs::remove(m_temporary, ignored);
    }
}

void OutputFile::write(const std::string& text)
{
    errno = 0;
    if (!m_stream.write(text.data(), static_cast<std::streamsize>(text.size())))
    {
        fail(errno);
    }
}

void OutputFile::finish()
{
    errno = 0;
    m_stream.close();
    if (!m_stream)
    {
        fail(errno);
    }
}

void OutputFile::commit()
{
    std::error_code error;
    fs::rename(m_temporary, m_path, error);
    if (error)
    {
        fail(error.value());
    }
    m_temporary.clear();
}

void OutputFile::fail(int reason) const
{
    const std::string why =
        reason == EINVAL ? "it is not a regular file" : std::generic_category().message(reason);
    throw CommandError("can't write " + m_fileName + ": " + (reason == 0 ? "unknown error" : why));
}
} // namespace velmoran::examples
