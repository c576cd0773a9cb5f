#pragma once

#include <atomic>
#include <cstddef>
#include <functional>

/// Is looked at every few milliseconds of work; what is then left is thrown away.
using Stop = std::atomic<bool>;

/// Work in threads, watched by the caller's.
class Workers {
  public:
    /// threads: 0 for as many as the machine has. `progress` may be empty.
    Workers(unsigned threads, std::function<bool(double)> progress);

    const Stop& Stopped() const { return m_stop; }
    bool Cancelled() const { return m_stop; }

    /// Calls job(0) ... job(count - 1), each once, in any order and in several threads,
    /// and returns when all are done. Meanwhile the progress, which goes on by `share`
    /// in all, is told to the caller. What a job throws is thrown here.
    void Run(std::size_t count, double share, const std::function<void(std::size_t)>& job);

  private:
    void Tell(double done);

    unsigned m_threads;
    std::function<bool(double)> m_progress;
    Stop m_stop = false;
    double m_done = 0;
};
