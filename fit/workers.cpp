#include "fit/workers.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::milliseconds LookEvery{25};

} // namespace

Workers::Workers(unsigned threads, std::function<bool(double)> progress)
    : m_threads(threads > 0 ? threads : std::max(1U, std::thread::hardware_concurrency()))
    , m_progress(std::move(progress)) {}

void Workers::Tell(double done) {
    if (m_progress && !m_stop && !m_progress(std::min(done, 1.0)))
        m_stop = true;
}

void Workers::Run(std::size_t count, double share, const std::function<void(std::size_t)>& job) {
    std::atomic<std::size_t> next = 0;
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t done = 0;
    std::size_t running = 0;
    std::exception_ptr failure;
    const auto work = [&] {
        for (std::size_t i = next++; i < count && !m_stop; i = next++) {
            try {
                job(i);
            } catch (...) {
                const std::lock_guard lock(mutex);
                failure = std::current_exception();
                next = count;
            }
            const std::lock_guard lock(mutex);
            ++done;
        }
        const std::lock_guard lock(mutex);
        --running;
        changed.notify_one();
    };

    std::vector<std::jthread> threads;
    running = std::min<std::size_t>(m_threads, count);
    threads.reserve(running);
    for (std::size_t i = running; i > 0; --i)
        threads.emplace_back(work);
    for (bool ready = false; !ready;) {
        double part = 0;
        {
            std::unique_lock lock(mutex);
            ready = changed.wait_for(lock, LookEvery, [&] { return running == 0; });
            part = count > 0 ? static_cast<double>(done) / static_cast<double>(count) : 1;
        }
        Tell(m_done + share * part);
    }
    m_done += share;
    threads.clear();
    if (failure)
        std::rethrow_exception(failure);
}
