#include "common/workers.h"

#include <algorithm>
#include <exception>

#include "common/temporary_file.h"

namespace korv::tools {

Workers::Workers(std::size_t threads) {
    const SignalsBlocked in_others;
    try {
        others_.reserve(threads - 1);
        while (others_.size() + 1 < threads) {
            others_.emplace_back([this] { help(); });
        }
    } catch (const std::exception&) {
        // No more threads, or no memory for them: those that there are suffice.
    }
}

Workers::~Workers() {
    const Lock lock(mutex_);
    is_over_ = true;
    is_work_.notify_all();
}

void Workers::run(std::size_t parts, const DoPart& do_part) {
    Job job = {do_part, parts};
    Lock lock(mutex_);
    jobs_.push_back(&job);
    is_work_.notify_all();
    while (job.begun < job.parts) {
        do_next_part(job, lock);
    }
    is_done_.wait(lock, [&job] { return job.done == job.parts; });
    std::erase(jobs_, &job);
    if (job.failure) {
        std::rethrow_exception(job.failure);
    }
}

/// What the other threads do.
void Workers::help() {
    Lock lock(mutex_);
    while (!is_over_) {
        if (Job* const job = job_to_help()) {
            do_next_part(*job, lock);
        } else {
            is_work_.wait(lock);
        }
    }
}

/// The oldest job of which a part is not begun; nullptr when there is none.
Workers::Job* Workers::job_to_help() const {
    const auto found = std::ranges::find_if(jobs_, [](const Job* job) { return job->begun < job->parts; });
    return found == jobs_.end() ? nullptr : *found;
}

/// Begins a part, and does it without the lock.
void Workers::do_next_part(Job& job, Lock& lock) {
    const std::size_t part = job.begun++;
    std::exception_ptr failure;
    lock.unlock();
    try {
        job.do_part(part);
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    ++job.done;
    if (failure) {
        job.parts = job.begun;
        if (!job.failure || part < job.failed) {
            job.failure = failure;
            job.failed = part;
        }
    }
    if (job.done == job.parts) {
        is_done_.notify_all();
    }
}

}  // namespace korv::tools
