#pragma once

#include "core/logger/IWriter.h"

#include <cstdio>
#include <mutex>

namespace velmoran::core::logger
{
/// Appends messages to a file. Handed out by `FileWriterFactory`, which keeps one
/// for each file name.
///
/// Each message is handed to the operating system whole, in one call and at the
/// file's end, so that other writers and processes may append to the same file.
/// What the file can't take (a full disk) is dropped; nothing is thrown. When there is room
/// again, the next message begins on a line of its own.
class VELMORAN_CORE_EXPORT FileWriter : public IWriter
{
public:
    /// Opens `fileName`, relative to the working directory of this moment, and
    /// creates it if it is missing. A file that can't be opened is reported on
    /// standard error, and all its messages are dropped.
    explicit FileWriter(const std::string& fileName);
    ~FileWriter() override;

    void write(std::string message) override;

    /// Nothing is left to do: `write` keeps nothing back.
    void flush() override;

    void setDecorator(boost::shared_ptr<IDecorator> decorator) override;

private:
    std::mutex m_mutex; ///< guards what follows; held while a message is decorated and written
    IDecoratorPtr m_decorator;
    bool m_isCutOff = false; ///< the file ends with the beginning of a message
    std::FILE* const m_file; ///< owned, unbuffered; null when the file can't be opened
};
} // namespace velmoran::core::logger
