#include <algorithm>
#include <bit>

#include "mine/cover.h"

namespace korv::tools {

DenseCover::DenseCover(const Database& database, Count min_support)
    : min_support_(min_support),
      words_(words_for(database.lines)),
      rows_(database.items.size() * words_) {
    for (std::size_t item = 0; item < database.items.size(); ++item) {
        for (const Transaction transaction : database.items[item].transactions) {
            rows_[item * words_ + word_of(transaction)] |= bit_of(transaction);
        }
    }
    const std::vector<BitWord> none(words_);
    prefixes_.push_back({none, none, std::vector<BitWord>(words_, ~BitWord{0}), 0});
}

bool DenseCover::extend(std::size_t item) {
    const std::size_t size = itemset_.size();
    if (prefixes_.size() == size + 1) {
        prefixes_.push_back(
            {std::vector<BitWord>(words_), std::vector<BitWord>(words_), std::vector<BitWord>(words_)});
    }
    Prefix& longer = prefixes_[size + 1];
    if (!is_frequent_with(item, longer) || !is_essential_with(item)) {
        return false;
    }
    const Prefix& prefix = prefixes_[size];
    const BitWord* const held = row(item);
    longer.support = 0;
    for (std::size_t i = 0; i < words_; ++i) {
        longer.any[i] = prefix.any[i] | held[i];
        longer.once[i] = (prefix.once[i] & ~held[i]) | (held[i] & ~prefix.any[i]);
        longer.support += static_cast<Count>(std::popcount(longer.any[i]));
    }
    itemset_.push_back(item);
    return true;
}

void DenseCover::retract() {
    itemset_.pop_back();
}

bool DenseCover::covers(std::size_t item) const {
    const BitWord* const held = row(item);
    const std::vector<BitWord>& any = prefixes_[itemset_.size()].any;
    for (std::size_t i = 0; i < words_; ++i) {
        if ((held[i] & ~any[i]) != 0) {
            return false;
        }
    }
    return true;
}

Positions DenseCover::newly_covered(const std::vector<char>& wanted) const {
    Positions covered;
    for (std::size_t item = 0; item < wanted.size(); ++item) {
        if (wanted[item] != 0 && covers(item)) {
            covered.push_back(item);
        }
    }
    return covered;
}

/// Sets `longer.all` on the way.
bool DenseCover::is_frequent_with(std::size_t item, Prefix& longer) {
    const BitWord* const held = row(item);
    const std::vector<BitWord>& all = prefixes_[itemset_.size()].all;
    std::size_t common = 0;
    for (std::size_t i = 0; i < words_; ++i) {
        longer.all[i] = all[i] & held[i];
        common += static_cast<std::size_t>(std::popcount(longer.all[i]));
    }
    return common >= min_support_;
}

bool DenseCover::is_essential_with(std::size_t item) const {
    const BitWord* const held = row(item);
    const Prefix& prefix = prefixes_[itemset_.size()];
    const auto keeps_a_transaction = [&](std::size_t other) {
        const BitWord* const of_other = row(other);
        for (std::size_t i = 0; i < words_; ++i) {
            if ((prefix.once[i] & of_other[i] & ~held[i]) != 0) {
                return true;
            }
        }
        return false;
    };
    return !covers(item) && std::ranges::all_of(itemset_, keeps_a_transaction);
}

}  // namespace korv::tools
