#include "rules/recount.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace korv::tools {

namespace {

constexpr unsigned char in_premise = 1;
constexpr unsigned char in_conclusion = 2;

}  // namespace

Recount::Recount(const Database& database) : weights_(database.weights), marks_(database.items.size()) {
    // Where each line begins, first; then its end, since each item that is put there moves it on.
    ends_.resize(database.lines);
    for (const Database::ItemColumn& column : database.items) {
        items_.push_back(column.item);
        for (const Transaction line : column.transactions) {
            ++ends_[line];
        }
    }
    std::size_t begin = 0;
    for (std::size_t& end : ends_) {
        const std::size_t size = end;
        end = begin;
        begin += size;
    }
    held_.resize(begin);
    Position position = 0;
    for (const Database::ItemColumn& column : database.items) {
        for (const Transaction line : column.transactions) {
            held_[ends_[line]++] = position;
        }
        ++position;
    }
}

void Recount::mark(ItemSpan items, unsigned char side) {
    for (const Item item : items) {
        const auto found = std::ranges::lower_bound(items_, item);
        if (found != items_.end() && *found == item) {
            marks_[static_cast<std::size_t>(found - items_.begin())] |= side;
        }
    }
}

Contingency Recount::count(const SideItems& premise, const SideItems& conclusion) {
    std::ranges::fill(marks_, static_cast<unsigned char>(0));
    mark(premise.items, in_premise);
    mark(conclusion.items, in_conclusion);
    std::array<Count, 4> transactions = {};  // by the itemsets of which they hold an item
    std::size_t next = 0;
    for (std::size_t line = 0; line < ends_.size(); ++line) {
        unsigned held = 0;
        for (; next < ends_[line]; ++next) {
            held |= marks_[held_[next]];
        }
        transactions[held] += weights_.empty() ? 1 : weights_[line];
    }
    Contingency counts = {0, 0, 0};
    for (unsigned held = 0; held < transactions.size(); ++held) {
        const bool meets_premise = ((held & in_premise) != 0) != premise.is_negated;
        const bool meets_conclusion = ((held & in_conclusion) != 0) != conclusion.is_negated;
        counts.premise += meets_premise ? transactions[held] : 0;
        counts.conclusion += meets_conclusion ? transactions[held] : 0;
        counts.both += meets_premise && meets_conclusion ? transactions[held] : 0;
    }
    return counts;
}

}  // namespace korv::tools
