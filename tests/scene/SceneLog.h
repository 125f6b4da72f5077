#pragma once

#include "core/logger/FileWriterFactory.h"
#include "core/logger/IDecorator.h"
#include "core/logger/IWriter.h"

#include <boost/make_shared.hpp>

#include <string>
#include <vector>

namespace velmoran::scene
{
/// What is written to a log of scenes or geometry libraries while this lives and none of these
/// is made.
class SceneLog
{
public:
    explicit SceneLog(const std::string& fileName = "SceneManager.log")
        : m_writer(core::logger::FileWriterFactory::getInstance()->getFileWriter(fileName))
    {
        struct Tap : core::logger::IDecorator
        {
            std::string decorate(const std::string& message) override
            {
                lines->push_back(message);
                return "";
            }
            std::vector<std::string>* lines = nullptr;
        };
        const auto tap = boost::make_shared<Tap>();
        tap->lines = &m_lines;
        m_writer->setDecorator(tap);
    }

    ~SceneLog() { m_writer->setDecorator(core::logger::IDecoratorPtr()); }

    std::vector<std::string> take()
    {
        std::vector<std::string> taken;
        taken.swap(m_lines);
        return taken;
    }

private:
    const core::logger::IWriterPtr m_writer;
    std::vector<std::string> m_lines;
};
} // namespace velmoran::scene
