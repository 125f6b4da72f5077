#include "core/logger/FileWriterFactory.h"

#include "core/logger/FileWriter.h"

#include <boost/make_shared.hpp>

namespace velmoran::core::logger
{
FileWriterFactory::FileWriterFactory() = default;

FileWriterFactory::~FileWriterFactory() = default;

FileWriterFactory* FileWriterFactory::getInstance()
{
    // Never deleted: static objects may log after any destructor that would do it.
    static FileWriterFactory* const instance = new FileWriterFactory();
    return instance;
}

IWriterPtr FileWriterFactory::getFileWriter(const std::string& fileName)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    IWriterPtr& writer = m_writers[fileName];
    if (!writer)
    {
        writer = boost::make_shared<FileWriter>(fileName);
    }
    return writer;
}
} // namespace velmoran::core::logger
