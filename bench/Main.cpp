// Runs the benchmarks; see RatioTable and MarkdownTable for what comes out.

#include "bench/MarkdownTable.h"
#include "bench/RatioTable.h"
#include "bench/ResultsReporter.h"
#include "core/logger/FileWriterFactory.h"

#include <benchmark/benchmark.h>

#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace
{
/// A second thread that does nothing. Atomic counters and locks cost less in a program
/// that has only ever had one thread, which is not where a scene lives.
class IdleThread
{
public:
    IdleThread() : m_thread([this] { wait(); }) {}

    ~IdleThread()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isOver = true;
        }
        m_over.notify_one();
        m_thread.join();
    }

    IdleThread(const IdleThread&) = delete;
    IdleThread& operator=(const IdleThread&) = delete;

private:
    void wait()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_over.wait(lock, [this] { return m_isOver; });
    }

    std::mutex m_mutex;
    std::condition_variable m_over;
    bool m_isOver = false;
    std::thread m_thread;
};

/// Lets the scene library's log files be written as always, but not be kept.
void openLogsForNobody()
{
    namespace fs = std::filesystem;
    const fs::path here = fs::current_path();
    // Another run of this program may be at the same point.
    const std::string name = "velmoran_bench_" + std::to_string(std::random_device()());
    const fs::path logs = fs::temp_directory_path() / name;
    fs::create_directories(logs);
    fs::current_path(logs);
    for (const char* const log : {"SceneManager.log", "GeometryManager.log"})
    {
        velmoran::core::logger::FileWriterFactory::getInstance()->getFileWriter(log);
    }
    fs::current_path(here);
    fs::remove_all(logs); // open files live on without a name
}

/// The options of this program, taken out of those for the benchmark library.
class Options
{
public:
    Options(int argc, char** argv)
    {
        for (int i = 0; i < argc; ++i)
        {
            const std::string argument = argv[i];
            if (argument == "--table")
            {
                m_isTable = true;
            }
            else if (argument.rfind(GROWTH, 0) == 0)
            {
                m_growthFile = argument.substr(GROWTH.size());
            }
            else
            {
                m_others.push_back(argument);
            }
        }
        if (m_isTable) // in front: what the caller says counts
        {
            const std::vector<std::string> mixed = {"--benchmark_repetitions=5",
                                                    "--benchmark_enable_random_interleaving=true"};
            m_others.insert(m_others.begin() + 1, mixed.begin(), mixed.end());
        }
    }

    bool isTable() const { return m_isTable; }
    const std::string& growthFile() const { return m_growthFile; }

    /// False when an option is unknown.
    bool initializeLibrary()
    {
        std::vector<char*> arguments;
        for (std::string& argument : m_others)
        {
            arguments.push_back(argument.data());
        }
        auto count = static_cast<int>(arguments.size());
        benchmark::Initialize(&count, arguments.data());
        return !benchmark::ReportUnrecognizedArguments(count, arguments.data());
    }

private:
    const std::string GROWTH = "--growth=";

    bool m_isTable = false;
    std::string m_growthFile; ///< empty for none
    std::vector<std::string> m_others;
};
} // namespace

/// Options: those of the benchmark library; --table for one table in Markdown, everything else on
/// the error stream; --growth=FILE for the times of all cases (see RunResults::write).
int main(int argc, char** argv)
{
    using namespace velmoran::bench;
    Options options(argc, argv);
    if (!options.initializeLibrary())
    {
        return 1;
    }
    openLogsForNobody();
    const IdleThread idleThread;
    ResultsReporter reporter;
    reporter.SetOutputStream(options.isTable() ? &std::cerr : &std::cout);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (options.isTable())
    {
        MarkdownTable(reporter.results()).print(std::cout);
    }
    else
    {
        printRatios(std::cout, reporter.results());
    }
    if (!options.growthFile().empty())
    {
        std::ofstream file(options.growthFile());
        reporter.results().write(file);
    }
    return 0;
}
