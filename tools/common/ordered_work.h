#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <variant>

#include "common/workers.h"

namespace korv::tools {

/// Work on many pieces that several threads do at the same time, one piece after the other, and whose results
/// are taken in the order of the pieces. So the threads cannot be told from what comes of the work.
///
/// At most `pieces_for_each_thread` pieces for each thread are under way or wait to be taken: a thread that
/// is too far ahead waits.
template <typename Piece, typename Result>
class OrderedWork {
public:
    using Work = std::function<Result(const Piece&)>;

    struct Steps {
        /// The next piece; nothing when there is no more. Called by one thread at a time.
        std::function<std::optional<Piece>()> next;
        /// Makes what does the work of one thread. Called by each thread.
        std::function<Work()> worker;
        /// Takes a result. Called by one thread at a time, in the order of the pieces.
        std::function<void(Result&& result)> take;
    };

    static constexpr std::size_t pieces_for_each_thread = 8;

    /// Does all work, and returns when it is done.
    ///
    /// What the work on a piece throws is thrown again in its turn, as if one thread did everything: the
    /// pieces before it were taken, and none behind it is. What a step throws ends the work, too.
    static void run(Workers& workers, const Steps& steps) {
        OrderedWork work(workers.threads(), steps);
        workers.run(workers.threads(), [&work](std::size_t) { work.work(); });
        if (work.failure_) {
            std::rethrow_exception(work.failure_);
        }
    }

private:
    using Done = std::variant<Result, std::exception_ptr>;
    using Lock = std::unique_lock<std::mutex>;

    OrderedWork(std::size_t threads, const Steps& steps)
        : steps_(steps), most_pieces_(threads * pieces_for_each_thread) {}

    /// What each thread does.
    void work() {
        try {
            const Work do_work = steps_.worker();
            while (const std::optional<Numbered> piece = next()) {
                finish(piece->number, result_of(do_work, piece->piece));
            }
        } catch (...) {
            fail(std::current_exception());
        }
    }

    struct Numbered {
        std::size_t number;
        Piece piece;
    };

    /// The next piece, as soon as it is not too far ahead; nothing at the end, or when the work failed.
    std::optional<Numbered> next() {
        Lock lock(mutex_);
        taken_one_.wait(lock, [this] { return is_over_ || begun_ - taken_ < most_pieces_; });
        if (is_over_) {
            return std::nullopt;
        }
        std::optional<Piece> piece = steps_.next();
        if (!piece) {
            end();
            return std::nullopt;
        }
        return Numbered{begun_++, std::move(*piece)};
    }

    static Done result_of(const Work& do_work, const Piece& piece) {
        try {
            return do_work(piece);
        } catch (...) {
            return std::current_exception();
        }
    }

    /// Takes the results whose turn it is, unless another thread is at it.
    void finish(std::size_t number, Done done) {
        Lock lock(mutex_);
        done_.emplace(number, std::move(done));
        if (is_taking_ || failure_) {
            return;
        }
        is_taking_ = true;
        while (auto first = done_.extract(taken_)) {
            lock.unlock();
            take(std::move(first.mapped()));
            lock.lock();
            ++taken_;
            taken_one_.notify_all();
        }
        is_taking_ = false;
    }

    void take(Done done) const {
        if (const auto* const failure = std::get_if<std::exception_ptr>(&done)) {
            std::rethrow_exception(*failure);
        }
        steps_.take(std::move(std::get<Result>(done)));
    }

    /// Nothing more is begun.
    void end() {
        is_over_ = true;
        taken_one_.notify_all();
    }

    void fail(std::exception_ptr failure) {
        const Lock lock(mutex_);
        if (!failure_) {
            failure_ = std::move(failure);
        }
        end();
    }

    const Steps& steps_;
    const std::size_t most_pieces_;
    std::mutex mutex_;  ///< of all that follows
    std::condition_variable taken_one_;
    std::size_t begun_ = 0;             ///< how many pieces were
    std::size_t taken_ = 0;             ///< how many results were
    std::map<std::size_t, Done> done_;  ///< by number of the piece
    bool is_taking_ = false;
    bool is_over_ = false;
    std::exception_ptr failure_;
};

}  // namespace korv::tools
