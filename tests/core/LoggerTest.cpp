#include "core/logger/Logger.h"
#include "core/logger/BasicDecorator.h"
#include "core/logger/ConsoleWriter.h"
#include "core/logger/FileWriterFactory.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <regex>
#include <sstream>
#include <sys/resource.h>
#include <thread>

using namespace velmoran::core::logger;
using ::testing::ElementsAre;

namespace
{
// Stands in for a file, and notes each call in a list that several writers share.
class RecordingWriter : public IWriter
{
public:
    RecordingWriter(std::string name, std::vector<std::string>& calls)
        : m_name(std::move(name)), m_calls(calls)
    {
    }
    void write(std::string message) override { m_calls.push_back(m_name + ":" + message); }
    void flush() override { m_calls.push_back(m_name + " flushed"); }
    void setDecorator(boost::shared_ptr<IDecorator>) override {}

private:
    std::string m_name;
    std::vector<std::string>& m_calls;
};

struct FormatCounter
{
    mutable int formatted = 0;
};

std::ostream& operator<<(std::ostream& out, const FormatCounter& counter)
{
    return out << ++counter.formatted;
}

class BracketDecorator : public IDecorator
{
public:
    std::string decorate(const std::string& message) override { return "<" + message + ">\n"; }
};

std::string contentOf(const std::string& fileName)
{
    std::ostringstream content;
    content << std::ifstream(fileName).rdbuf();
    return content.str();
}
} // namespace

TEST(Logger, HandsEachMessageToAllWritersInTheOrderAdded)
{
    std::vector<std::string> calls;
    Logger logger;
    logger.addWriter(boost::make_shared<RecordingWriter>("a", calls));
    logger.addWriter(IWriterPtr());
    logger.addWriter(boost::make_shared<RecordingWriter>("b", calls));

    EXPECT_EQ(&(logger << std::string("one") << "two" << 3), &logger);
    EXPECT_THAT(calls, ElementsAre("a:one", "a flushed", "b:one", "b flushed", "a:two", "a flushed",
                                   "b:two", "b flushed", "a:3", "a flushed", "b:3", "b flushed"));
}

TEST(Logger, WritesAndFormatsNothingWhileSwitchedOff)
{
    std::vector<std::string> calls;
    Logger logger;
    logger.addWriter(boost::make_shared<RecordingWriter>("a", calls));
    FormatCounter counter;

    Logger::active = false;
    EXPECT_EQ(&(logger << counter << "x"), &logger);
    Logger::active = true;
    logger.setEnabled(false);
    logger << counter << "x";
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(counter.formatted, 0);

    logger.setEnabled(true);
    logger << counter;
    EXPECT_THAT(calls, ElementsAre("a:1", "a flushed"));
}

// Each thread sets up a logger of its own, as the owners of a scene do, and so replaces
// the shared writer's decorator while the others write.
TEST(FileLog, KeepsMessagesOfSeveralThreadsWhole)
{
    const std::string fileName = "FileLogThreads.log";
    std::ofstream(fileName, std::ios::trunc);
    const auto logMessages = [&fileName]
    {
        for (int i = 0; i < 20; ++i)
        {
            const auto writer = FileWriterFactory::getInstance()->getFileWriter(fileName);
            writer->setDecorator(boost::make_shared<BasicDecorator>());
            Logger logger;
            logger.addWriter(writer);
            logger << "[INFO] message " + std::string(30, 'x') + " end";
        }
    };
    std::thread other(logMessages);
    logMessages();
    other.join();
    const std::regex whole(
        R"((\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3} \[INFO\] message x{30} end\n){40})");
    EXPECT_TRUE(std::regex_match(contentOf(fileName), whole)) << contentOf(fileName);
}

TEST(FileLog, AppendsWithTheLatestDecorator)
{
    const std::string fileName = "FileLogAppends.log";
    std::ofstream(fileName) << "already there\n";
    const IWriterPtr writer = FileWriterFactory::getInstance()->getFileWriter(fileName);
    EXPECT_EQ(FileWriterFactory::getInstance()->getFileWriter(fileName), writer);

    writer->setDecorator(IDecoratorPtr());
    writer->write("bare\n");
    writer->setDecorator(boost::make_shared<BracketDecorator>());
    writer->write("message");
    EXPECT_EQ(contentOf(fileName), "already there\nbare\n<message>\n");
}

TEST(FileLog, DropsWhatCanNotBeWrittenAndReportsAFileThatCanNotBeOpenedOnce)
{
    static int run = 0; // a name is reported once in the process
    const std::string missing = "no/such/folder" + std::to_string(++run);
    ::testing::internal::CaptureStderr();
    for (const std::string& fileName : {missing, std::string("/dev/full"), missing})
    {
        const auto writer = FileWriterFactory::getInstance()->getFileWriter(fileName);
        EXPECT_NO_THROW(writer->write("dropped"));
    }
    EXPECT_THAT(::testing::internal::GetCapturedStderr(),
                ::testing::MatchesRegex("[^\n]*\"" + missing + "\"[^\n]*\n"));
}

TEST(FileLog, GoesOnOnALineOfItsOwnWhenThereIsRoomAgain)
{
    const std::string fileName = "FileLogFull.log";
    std::ofstream(fileName, std::ios::trunc);
    const auto writer = FileWriterFactory::getInstance()->getFileWriter(fileName);
    // A file that may not grow beyond a size stands for a disk.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit full = before;
    full.rlim_cur = 5;
    setrlimit(RLIMIT_FSIZE, &full);
    writer->write("cut off\n");
    writer->write("dropped\n");
    setrlimit(RLIMIT_FSIZE, &before);
    writer->write("whole\n");
    writer->write("another\n");
    EXPECT_EQ(contentOf(fileName), "cut o\nwhole\nanother\n");
}

TEST(ConsoleLog, GoesToStandardOutput)
{
    ConsoleWriter writer;
    ::testing::internal::CaptureStdout();
    writer.write("bare");
    writer.setDecorator(boost::make_shared<BracketDecorator>());
    writer.write("message");
    writer.flush();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "bare<message>\n");
}
