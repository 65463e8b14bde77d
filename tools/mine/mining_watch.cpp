#include "mine/mining_watch.h"

#include "common/quantity.h"

namespace korv::tools {

bool MiningWatch::go_on(const MiningProgress& progress) {
    progress_ = progress;
    const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
    if (display_ != nullptr) {
        display_->show(progress, seconds);
    }
    is_out_of_time_ = max_seconds_ && seconds >= *max_seconds_;
    return !is_out_of_time_;
}

std::string MiningWatch::why_it_stopped(const MiningOptions& options) const {
    const std::string limit = is_out_of_time_ ? "--max-seconds" : "--max-classes";
    const std::string found =
        is_out_of_time_
            ? "stopped after " + seconds_text(*max_seconds_) + " (--max-seconds), with " +
                  with_commas(progress_.classes) + " classes"
            : "there are more than " + with_commas(options.max_classes) + " classes (--max-classes)";
    return found + " when " + with_commas(progress_.roots_done) + " of " + with_commas(progress_.roots) +
           " root items were done; a higher --min-support (now " + std::to_string(options.min_support) +
           ") or a lower --max-size brings fewer, a higher " + limit +
           " lets it go on, --estimate says what to expect";
}

}  // namespace korv::tools
