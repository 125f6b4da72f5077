#pragma once

#include "core/Export.h"
#include "core/Forward.h"

#include <map>
#include <mutex>
#include <string>

namespace velmoran::core::logger
{
/// The writers of the process's log files: one for each file name, shared by all
/// loggers that ask for it.
///
/// Lives, like its writers, until the process ends, so that loggers in static
/// objects can write to the very end.
/// Threads: every operation may be called from any thread.
class VELMORAN_CORE_EXPORT FileWriterFactory
{
public:
    /// The one factory of the process; never null, never deleted.
    static FileWriterFactory* getInstance();

    FileWriterFactory(const FileWriterFactory&) = delete;
    FileWriterFactory& operator=(const FileWriterFactory&) = delete;

    /// The writer that appends to the named file; never empty. The first request
    /// for a name opens the file, relative to the working directory of that moment;
    /// later ones cost a look-up. A file that can't be opened is reported once on
    /// standard error, and its messages are dropped from then on.
    IWriterPtr getFileWriter(const std::string& fileName);

private:
    FileWriterFactory();
    ~FileWriterFactory();

    std::mutex m_mutex;                          ///< guards m_writers
    std::map<std::string, IWriterPtr> m_writers; ///< by file name as it was asked for
};
} // namespace velmoran::core::logger
