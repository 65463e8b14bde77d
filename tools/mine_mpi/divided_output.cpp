#include "mine_mpi/divided_output.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "mine_mpi/class_batch.h"

namespace korv::tools {

namespace {

/// Of closures, as they are kept; so records of about a quarter of a MiB are made at a time: few enough to
/// stay in the cache, and for memory to be used again.
constexpr std::size_t bytes_of_round = std::size_t{1} << 16;

/// Where the classes of a round end, by the keys of the first process. Its classes are as good as drawn at
/// random, so between two of its keys there are about as many of each other process.
class Rounds {
public:
    Rounds(Processes& processes, const MinedClasses& own) : processes_(processes), own_(own) {}

    /// The position behind the classes of this process in the round that begins at a position.
    std::size_t end_of(std::size_t begin) {
        std::uint32_t items = std::numeric_limits<std::uint32_t>::max();
        std::string closure;
        const std::size_t end = processes_.is_first() ? end_of_bytes(begin) : own_.size();
        if (end < own_.size()) {
            items = own_.key(end).items;
            closure = own_.key(end).closure;
        }
        processes_.broadcast_value(items);
        processes_.broadcast(closure);
        is_last_ = items == std::numeric_limits<std::uint32_t>::max();
        return is_last_ ? own_.size() : own_.lower_bound({items, closure});
    }

    /// Whether no round follows the one whose end was asked for last. The same in all processes.
    bool is_last() const { return is_last_; }

private:
    /// Where the closures from a position on take as much as a round may.
    std::size_t end_of_bytes(std::size_t begin) const {
        constexpr std::size_t of_record = 8;
        std::size_t end = begin;
        for (std::size_t bytes = 0; end < own_.size() && bytes < bytes_of_round; ++end) {
            bytes += own_.key(end).closure.size() + of_record;
        }
        return end;
    }

    Processes& processes_;
    const MinedClasses& own_;
    bool is_last_ = false;
};

}  // namespace

void write_divided(Processes& processes, const DividedClasses& classes,
                   const std::function<void(std::string_view)>& write) {
    Rounds rounds(processes, classes.own());
    std::vector<std::string> batches;
    std::size_t begin = 0;
    while (!rounds.is_last()) {
        const std::size_t end = rounds.end_of(begin);
        std::string batch;
        // The first process writes a round while the others make the next one.
        processes.together([&] {
            write_merged(batches, write);
            batch = batch_of(classes.own(), begin, end);
        });
        batches = processes.gathered(std::move(batch));
        begin = end;
    }
    processes.together([&] { write_merged(batches, write); });
}

}  // namespace korv::tools
