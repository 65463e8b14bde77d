#include "mine/progress.h"

#include <cmath>

#include "common/quantity.h"

namespace korv::tools {

std::string progress_line(const MiningProgress& progress, double seconds, std::size_t mebibytes) {
    return std::to_string(progress.roots_done) + " of " + std::to_string(progress.roots) + " root items, " +
           with_commas(progress.essentials) + " essential itemsets, " + with_commas(progress.classes) +
           " classes, " + size_text(progress.file_bytes) + "; " + std::to_string(std::llround(seconds)) +
           " s, " + std::to_string(mebibytes) + " MiB";
}

void ProgressDisplay::show(const MiningProgress& progress, double seconds) {
    if (line_.is_due(seconds)) {
        line_.show(progress_line(progress, seconds, peak_memory()), seconds);
    }
}

}  // namespace korv::tools
