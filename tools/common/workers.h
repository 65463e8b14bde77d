#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace korv::tools {

/// Threads that share work which falls into parts.
class Workers {
public:
    /// Does the part of the number given.
    using DoPart = std::function<void(std::size_t part)>;

    /// This thread is one of the `threads`, of which there is at least one; those that the system does not
    /// start are done without. Signals come to this thread alone.
    explicit Workers(std::size_t threads);
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    /// Nothing must be under way.
    ~Workers();

    /// How many threads there are, with the one that made this.
    std::size_t threads() const { return others_.size() + 1; }

    /// Does the parts 0 to `parts` - 1, each once, and returns when all are done. They are begun in this
    /// order, part 0 by the thread that calls, which goes on with those that no other thread has begun. A
    /// part may run others. With one thread, one part is done after the other.
    ///
    /// What a part throws is thrown again, that of the first part in their order, when all that were begun
    /// are done; no more are begun then.
    void run(std::size_t parts, const DoPart& do_part);

    /// Does tasks likewise: each is a part.
    void run(const std::vector<std::function<void()>>& tasks) {
        run(tasks.size(), [&tasks](std::size_t part) { tasks[part](); });
    }

private:
    /// The parts of one run.
    struct Job {
        const DoPart& do_part;
        std::size_t parts;
        std::size_t begun = 0;
        std::size_t done = 0;
        std::size_t failed = 0;                ///< the part that `failure` is of
        std::exception_ptr failure = nullptr;  ///< of the first part that failed
    };
    using Lock = std::unique_lock<std::mutex>;

    void help();
    void do_next_part(Job& job, Lock& lock);
    Job* job_to_help() const;

    std::mutex mutex_;  ///< of all that follows, but for `others_`
    std::condition_variable is_work_;
    std::condition_variable is_done_;
    std::vector<Job*> jobs_;  ///< the oldest first
    bool is_over_ = false;
    std::vector<std::jthread> others_;
};

}  // namespace korv::tools
