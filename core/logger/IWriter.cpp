#include "core/logger/IWriter.h"

namespace velmoran::core::logger
{
IWriter::~IWriter() = default;
} // namespace velmoran::core::logger
