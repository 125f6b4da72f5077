#pragma once

#include "core/logger/FileWriterFactory.h"
#include "core/logger/IDecorator.h"
#include "core/logger/IWriter.h"

#include <boost/make_shared.hpp>

#include <string>
#include <vector>

namespace velmoran::scene
{
/// What scenes write to their log while this lives and no new scene is made.
class SceneLog
{
public:
    SceneLog()
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
        writer()->setDecorator(tap);
    }

    ~SceneLog() { writer()->setDecorator(core::logger::IDecoratorPtr()); }

    std::vector<std::string> take()
    {
        std::vector<std::string> taken;
        taken.swap(m_lines);
        return taken;
    }

private:
    static core::logger::IWriterPtr writer()
    {
        return core::logger::FileWriterFactory::getInstance()->getFileWriter("SceneManager.log");
    }

    std::vector<std::string> m_lines;
};

} // namespace velmoran::scene
