#include "mine_mpi/level_display.h"

#include <cmath>

#include "common/quantity.h"
#include "common/right_aligned.h"

namespace korv::tools {

namespace {

/// "1,200 of 8,000 itemsets of 3 items", or "the pairs of 1,200 of 8,000 items".
std::string place_of_walk(const LevelProgress& progress) {
    const std::string done = with_commas(progress.itemsets) + " of " + with_commas(progress.of_itemsets);
    if (progress.size == 0) {
        return "the pairs of " + done + " items";
    }
    return done + " itemsets of " + std::to_string(progress.size) + (progress.size == 1 ? " item" : " items");
}

}  // namespace

bool LevelWatch::go_on(const LevelProgress& progress) {
    progress_ = progress;
    const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
    if (line_ != nullptr && line_->is_due(seconds)) {
        line_->show(level_progress_line(progress, seconds, peak_memory()), seconds);
    }
    is_out_of_time_ = max_seconds_ && seconds >= *max_seconds_;
    return !is_out_of_time_;
}

std::string LevelWatch::why_it_stopped(const MiningOptions& options) const {
    const std::string found =
        is_out_of_time_
            ? "stopped after " + seconds_text(*max_seconds_) + " (--max-seconds), with " +
                  with_commas(progress_.found.classes) + " classes"
            : "there are more than " + with_commas(options.max_classes) + " classes (--max-classes)";
    return found + " when " + place_of_walk(progress_) + " were done; a higher --min-support (now " +
           std::to_string(options.min_support) + ") or a lower --max-size brings fewer, a higher " +
           (is_out_of_time_ ? "--max-seconds" : "--max-classes") +
           " lets it go on, --estimate says what to expect";
}

std::string level_progress_line(const LevelProgress& progress, double seconds, std::size_t mebibytes) {
    return place_of_walk(progress) + ", " + with_commas(progress.found.essentials) + " essential itemsets, " +
           with_commas(progress.found.classes) + " classes, " + size_text(progress.found.file_bytes) + "; " +
           std::to_string(std::llround(seconds)) + " s, " + std::to_string(mebibytes) + " MiB";
}

std::string level_table(const std::vector<LevelReport>& levels) {
    std::vector<std::vector<std::string>> rows = {{"items", "candidates for one more", "frequent",
                                                   "essential", "exchanged", "slowest process",
                                                   "fastest process"}};
    for (const LevelReport& level : levels) {
        const bool is_level = level.work.empty();
        rows.push_back({is_level ? std::to_string(level.size) : std::string(level.work),
                        is_level ? with_commas(level.candidates) : "-",
                        is_level ? with_commas(level.frequent) : "-",
                        is_level ? with_commas(level.essential) : "-", size_text(level.bytes),
                        seconds_text(level.slowest), seconds_text(level.fastest)});
    }
    return right_aligned(rows);
}

}  // namespace korv::tools
