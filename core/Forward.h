#pragma once

// Forward declarations of the core library's classes and the handles that
// share them. Headers include this; sources include the classes.

#include <boost/shared_ptr.hpp>

namespace velmoran::core::event
{
class EventType;
class EventData;
class Event;
class EventManager;
class EventBase;

using EventManagerPtr = boost::shared_ptr<EventManager>;
} // namespace velmoran::core::event

namespace velmoran::core::logger
{
class Logger;
class IWriter;
class ConsoleWriter;
class FileWriter;
class FileWriterFactory;
class IDecorator;
class BasicDecorator;

using IWriterPtr = boost::shared_ptr<IWriter>;
using IDecoratorPtr = boost::shared_ptr<IDecorator>;
} // namespace velmoran::core::logger

namespace velmoran::core::system
{
class IClock;
class MillisecClock;

using IClockPtr = boost::shared_ptr<IClock>;
} // namespace velmoran::core::system

namespace velmoran::core::utils
{
class Matrix;
class Quaternion;
template <typename T, int N>
class Vector;
} // namespace velmoran::core::utils
