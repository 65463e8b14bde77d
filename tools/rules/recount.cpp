#include "rules/recount.h"

#include <algorithm>

namespace korv::tools {

namespace {

// Which itemsets a line holds an item of, as bits.
constexpr unsigned in_premise = 1;
constexpr unsigned in_conclusion = 2;

}  // namespace

Recount::Recount(const Database& database)
    : lines_(database.lines),
      weights_(database.weights),
      words_(words_for(database.items.size())),
      marks_(database.items.size()) {
    std::size_t occurrences = 0;
    for (const Database::ItemColumn& column : database.items) {
        items_.push_back(column.item);
        occurrences += column.transactions.size();
    }
    if (lines_ * words_ * sizeof(BitWord) <= occurrences * sizeof(Position) * 4) {
        fill_bits(database);
    } else {
        fill_lists(database, occurrences);
    }
}

void Recount::fill_bits(const Database& database) {
    bits_.resize(lines_ * words_);
    for (std::size_t position = 0; position < items_.size(); ++position) {
        for (const Transaction line : database.items[position].transactions) {
            bits_[line * words_ + word_of(position)] |= bit_of(position);
        }
    }
}

void Recount::fill_lists(const Database& database, std::size_t occurrences) {
    ends_.resize(lines_);
    for (const Database::ItemColumn& column : database.items) {
        for (const Transaction line : column.transactions) {
            ++ends_[line];
        }
    }
    // First where each line begins; each item that is put there moves that on, to the end.
    std::size_t begin = 0;
    for (std::size_t& end : ends_) {
        begin += end;
        end = begin - end;
    }
    held_.resize(occurrences);
    for (std::size_t position = 0; position < items_.size(); ++position) {
        for (const Transaction line : database.items[position].transactions) {
            held_[ends_[line]++] = static_cast<Position>(position);
        }
    }
}

void Recount::mark(ItemSpan items, unsigned side) {
    for (const Item item : items) {
        const auto found = std::ranges::lower_bound(items_, item);
        if (found != items_.end() && *found == item) {
            marks_[static_cast<std::size_t>(found - items_.begin())] |= static_cast<unsigned char>(side);
        }
    }
}

/// Collects the marks as bits.
void Recount::want_marked() {
    wanted_.clear();
    for (std::size_t position = 0; position < marks_.size(); ++position) {
        if (marks_[position] == 0) {
            continue;
        }
        if (wanted_.empty() || wanted_.back().word != word_of(position)) {
            wanted_.push_back({.word = word_of(position)});
        }
        wanted_.back().of_premise |= (marks_[position] & in_premise) != 0 ? bit_of(position) : 0;
        wanted_.back().of_conclusion |= (marks_[position] & in_conclusion) != 0 ? bit_of(position) : 0;
    }
}

unsigned Recount::sides_by_bits(std::size_t line) const {
    const BitWord* const held = bits_.data() + line * words_;
    BitWord of_premise = 0;
    BitWord of_conclusion = 0;
    for (const Wanted& wanted : wanted_) {
        of_premise |= held[wanted.word] & wanted.of_premise;
        of_conclusion |= held[wanted.word] & wanted.of_conclusion;
    }
    return (of_premise != 0 ? in_premise : 0) | (of_conclusion != 0 ? in_conclusion : 0);
}

unsigned Recount::sides_by_list(std::size_t line) const {
    unsigned sides = 0;
    for (std::size_t i = line == 0 ? 0 : ends_[line - 1]; i < ends_[line]; ++i) {
        sides |= marks_[held_[i]];
    }
    return sides;
}

Contingency Recount::count(const WordedSide& premise, const WordedSide& conclusion) {
    std::ranges::fill(marks_, static_cast<unsigned char>(0));
    mark(premise.items, in_premise);
    mark(conclusion.items, in_conclusion);
    want_marked();
    Contingency counts = {0, 0, 0};
    for (std::size_t line = 0; line < lines_; ++line) {
        const unsigned sides = ends_.empty() ? sides_by_bits(line) : sides_by_list(line);
        const bool meets_premise = ((sides & in_premise) != 0) != premise.is_negated;
        const bool meets_conclusion = ((sides & in_conclusion) != 0) != conclusion.is_negated;
        const Count weight = weights_.empty() ? 1 : weights_[line];
        counts.premise += meets_premise ? weight : 0;
        counts.conclusion += meets_conclusion ? weight : 0;
        counts.both += meets_premise && meets_conclusion ? weight : 0;
    }
    return counts;
}

}  // namespace korv::tools
