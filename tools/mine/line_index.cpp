#include "mine/line_index.h"

#include <numeric>

namespace korv::tools {

LineIndex::LineIndex(const RankedItems& items) : begins_(items.lines + std::size_t{1}) {
    for (const std::span<const Transaction> lines : items.transactions) {
        for (const Transaction line : lines) {
            ++begins_[line];
        }
    }
    std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
    ranks_.resize(begins_.back());
    // From the ends to the beginnings.
    for (Rank rank = items.size(); rank > 0; --rank) {
        for (const Transaction line : items.transactions[rank - 1]) {
            ranks_[--begins_[line]] = rank - 1;
        }
    }
}

}  // namespace korv::tools
