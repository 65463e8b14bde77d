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

/// So much of the class file each process makes at a time: little enough to stay in the cache, and for memory
/// to be used again.
constexpr std::size_t bytes_of_batch = std::size_t{1} << 18;

/// Where the classes of a round end, by the keys of the first process. Its classes are as good as drawn at
/// random, so between two of its keys there are about as many of each other process.
class Rounds {
public:
    Rounds(Processes& processes, const DividedClasses& classes) : processes_(processes), own_(classes.own()) {
        const std::size_t of_round = bytes_of_batch * static_cast<std::size_t>(processes.size());
        const std::size_t rounds = classes.figures().file_bytes / of_round + 1;
        of_first_ = std::max<std::size_t>(own_.size() / rounds, 1);
    }

    /// The position behind the classes of this process in the round that begins at a position.
    std::size_t end_of(std::size_t begin) {
        std::uint32_t items = std::numeric_limits<std::uint32_t>::max();
        std::string closure;
        if (processes_.is_first() && begin + of_first_ < own_.size()) {
            const ClassKey key = own_.key(begin + of_first_);
            items = key.items;
            closure = key.closure;
        }
        processes_.broadcast_value(items);
        processes_.broadcast(closure);
        is_last_ = items == std::numeric_limits<std::uint32_t>::max();
        return is_last_ ? own_.size() : own_.lower_bound({items, closure});
    }

    /// Whether no round follows the one whose end was asked for last. The same in all processes.
    bool is_last() const { return is_last_; }

private:
    Processes& processes_;
    const MinedClasses& own_;
    std::size_t of_first_;  ///< so many classes of the first process are in a round
    bool is_last_ = false;
};

}  // namespace

void write_divided(Processes& processes, const DividedClasses& classes,
                   const std::function<void(std::string_view)>& write) {
    Rounds rounds(processes, classes);
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
