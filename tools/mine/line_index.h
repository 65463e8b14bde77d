#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "mine/ranked_items.h"

namespace korv::tools {

/// The items of each line, one line behind the other: the database the other way round.
class LineIndex {
public:
    explicit LineIndex(const RankedItems& items);

    /// The ranks of a line, ascending.
    std::span<const Rank> operator[](Transaction line) const {
        return std::span(ranks_).subspan(begins_[line], begins_[line + std::size_t{1}] - begins_[line]);
    }

    /// Calls visit(line, ranks) for each of some lines. These are far from each other in memory, so each is
    /// asked for some time before it is visited.
    template <typename Visit>
    void for_each(std::span<const Transaction> lines, Visit visit) const {
        constexpr std::size_t ahead = 8;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (i + 2 * ahead < lines.size()) {
                __builtin_prefetch(&begins_[lines[i + 2 * ahead]]);
                __builtin_prefetch(ranks_.data() + begins_[lines[i + ahead]]);
            }
            visit(lines[i], (*this)[lines[i]]);
        }
    }

private:
    std::vector<std::size_t> begins_;  ///< by line: where its ranks begin; one more at the end
    std::vector<Rank> ranks_;
};

}  // namespace korv::tools
