#include <algorithm>
#include <iterator>
#include <numeric>

#include "mine/cover.h"

namespace korv::tools {

SparseCover::SparseCover(const Database& database, Count min_support)
    : database_(database),
      min_support_(min_support),
      held_(database.lines),
      own_(database.items.size()),
      lost_(database.items.size()),
      together_(database.items.size()),
      is_seen_(database.items.size()),
      items_of_(database.lines),
      all_(2) {
    std::size_t occurrences = 0;
    for (std::size_t item = 0; item < database.items.size(); ++item) {
        first_.push_back(transactions(item).front());
        occurrences += transactions(item).size();
        for (const Transaction transaction : transactions(item)) {
            items_of_[transaction].push_back(item);
        }
    }
    items_of_a_transaction_ = occurrences / database.lines + 1;
    all_.front().resize(database.lines);
    std::iota(all_.front().begin(), all_.front().end(), Transaction{0});
}

bool SparseCover::extend(std::size_t item) {
    if (!is_frequent_and_essential_with(item)) {
        return false;
    }
    for (const Transaction transaction : transactions(item)) {
        Held& held = held_[transaction];
        if (held.items == 0) {
            ++own_[item];
        } else if (held.items == 1) {
            --own_[held.exclusive];
        }
        ++held.items;
        held.exclusive ^= static_cast<std::uint32_t>(item);
    }
    support_ += own_[item];
    itemset_.push_back(item);
    all_.resize(std::max(all_.size(), itemset_.size() + 2));
    return true;
}

void SparseCover::retract() {
    const std::size_t item = itemset_.back();
    itemset_.pop_back();
    support_ -= own_[item];
    own_[item] = 0;
    for (const Transaction transaction : transactions(item)) {
        Held& held = held_[transaction];
        --held.items;
        held.exclusive ^= static_cast<std::uint32_t>(item);
        if (held.items == 1) {
            ++own_[held.exclusive];
        }
    }
}

bool SparseCover::covers(std::size_t item) const {
    // The first transaction nearly always decides. It is stored apart, so that no list has to be read.
    return held_[first_[item]].items > 0 &&
           std::ranges::all_of(transactions(item),
                               [this](Transaction transaction) { return held_[transaction].items > 0; });
}

Positions SparseCover::newly_covered(const std::vector<char>& wanted) {
    const std::size_t newly_held = own_[itemset_.back()] * items_of_a_transaction_;
    Positions covered;
    const auto add_if_covered = [&](std::size_t item) {
        if (covers(item)) {
            covered.push_back(item);
        }
    };
    if (newly_held < wanted.size()) {
        std::ranges::for_each(wanted_in_newly_covered(wanted), add_if_covered);
        std::ranges::sort(covered);
        return covered;
    }
    for (std::size_t item = 0; item < wanted.size(); ++item) {
        if (wanted[item] != 0) {
            add_if_covered(item);
        }
    }
    return covered;
}

/// The wanted items of transactions that hold no item of the itemset but the one that was added last; no
/// other item can be newly covered. Each is there once, in any order.
Positions SparseCover::wanted_in_newly_covered(const std::vector<char>& wanted) {
    Positions seen;
    for (const Transaction transaction : transactions(itemset_.back())) {
        if (held_[transaction].items > 1) {
            continue;
        }
        for (const std::size_t item : items_of_[transaction]) {
            if (wanted[item] != 0 && is_seen_[item] == 0) {
                is_seen_[item] = 1;
                seen.push_back(item);
            }
        }
    }
    for (const std::size_t item : seen) {
        is_seen_[item] = 0;
    }
    return seen;
}

Positions SparseCover::promising(const Positions& candidates) {
    if (candidates.empty()) {
        return {};
    }
    const std::vector<Transaction>& all = all_[itemset_.size()];
    for (const Transaction transaction : all) {
        for (const std::size_t item : items_of_[transaction]) {
            ++together_[item];
        }
    }
    Positions frequent;
    std::ranges::copy_if(candidates, std::back_inserter(frequent),
                         [this](std::size_t item) { return together_[item] >= min_support_; });
    for (const Transaction transaction : all) {
        for (const std::size_t item : items_of_[transaction]) {
            together_[item] = 0;
        }
    }
    return frequent;
}

/// On the way, stores which transactions hold all of the next prefix.
bool SparseCover::is_frequent_and_essential_with(std::size_t item) {
    std::vector<Transaction>& all = all_[itemset_.size() + 1];
    all.clear();
    bool has_own = false;
    for (const Transaction transaction : transactions(item)) {
        const Held& held = held_[transaction];
        has_own = has_own || held.items == 0;
        if (held.items == itemset_.size()) {
            all.push_back(transaction);
        }
        if (held.items == 1) {
            ++lost_[held.exclusive];
        }
    }
    bool all_keep_one = true;
    for (const std::size_t other : itemset_) {
        all_keep_one = all_keep_one && lost_[other] < own_[other];
        lost_[other] = 0;
    }
    return all.size() >= min_support_ && has_own && all_keep_one;
}

}  // namespace korv::tools
