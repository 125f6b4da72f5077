// Runs the benchmarks; see RatioTable for what comes out.

#include "bench/RatioTable.h"
#include "core/logger/FileWriterFactory.h"

#include <benchmark/benchmark.h>

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <random>
#include <string>
#include <thread>

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
} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
    {
        return 1;
    }
    openLogsForNobody();
    const IdleThread idleThread;
    velmoran::bench::RatioTable table;
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
