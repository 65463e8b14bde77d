#include "mine/dense_cover.h"

#include <algorithm>
#include <functional>
#include <span>

namespace korv::tools {

namespace {

/// In rows of at most so many words it takes longer to find out which words have uncovered lines than to go
/// over all.
constexpr std::size_t words_of_short_row = 128;

/// In longer ones most lines are found within so many words.
constexpr std::size_t near_in_long_row = 16;

/// It is faster to look at so many words of a row, one behind the other, than at one that has uncovered
/// lines.
constexpr std::size_t words_for_one_uncovered = 8;

/// Of more witnesses, a search in the lines of an item is faster.
constexpr std::size_t most_witnesses_to_look_at = 64;

constexpr Transaction no_line = ~Transaction{0};

}  // namespace

DenseCover::DenseCover(const RankedItems& items)
    : order_(items.items),
      words_of_line_(words_for(items.size())),
      lines_(items.lines * words_of_line_),
      extents_(items.size()),
      prefixes_(2) {
    rows_.reset(items.size(), items.lines);
    rows_.set_weights({items.weights.begin(), items.weights.end()});
    Prefix& empty = prefixes_.front();
    empty.any = {std::vector<BitWord>(rows_.words()), true};
    empty.all = {std::vector<BitWord>(rows_.words(), ~BitWord{0}), true};
    empty.outside.resize(words_of_line_);
    for (Rank rank = 0; rank < items.size(); ++rank) {
        const Rank place = order_.places[rank];
        const std::span<const Transaction> lines = items.transactions[rank];
        if (!lines.empty()) {
            extents_[rank] = {word_of(lines.front()), word_of(lines.back()) + std::size_t{1}};
        }
        for (const Transaction line : lines) {
            rows_.insert(rank, line);
            lines_[line * words_of_line_ + word_of(place)] |= bit_of(place);
        }
    }
    // Those of the most common items come last, as they are looked at first.
    for (Rank rank = items.size(); rank-- > 0;) {
        const Rank place = order_.places[rank];
        if (!items.transactions[rank].empty() && (empty.outside[word_of(place)] & bit_of(place)) == 0) {
            add_witness(items.transactions[rank].front(), empty);
        }
    }
    near_ = rows_.words() <= words_of_short_row ? rows_.words() : near_in_long_row;
}

void DenseCover::pairs_of(Rank rank, Count least, std::vector<Candidate>& candidates) const {
    candidates.clear();
    for (Rank below = 0; below < rank; ++below) {
        const Count count = rows_.both(rows_[rank], rows_[below]);
        if (count >= least) {
            candidates.push_back({below, count});
        }
    }
}

void DenseCover::enter_to_count(Rank rank) {
    itemset_.push_back(rank);
    if (prefixes_.size() == itemset_.size() + 1) {
        prefixes_.emplace_back();
    }
    prefixes_[itemset_.size()].any.is_made = false;
    prefixes_[itemset_.size()].all.is_made = false;
    prefixes_[itemset_.size()].uncovered.is_made = false;
}

const std::vector<Rank>& DenseCover::enter(Rank rank) {
    const std::vector<Rank>& gained = gain(rank);
    enter_to_count(rank);
    return gained;
}

void DenseCover::leave() {
    itemset_.pop_back();
}

const std::vector<Rank>& DenseCover::gain(Rank rank) {
    const std::vector<BitWord>& before = prefixes_[itemset_.size()].outside;
    const std::vector<BitWord>& after = outside_with(rank);
    gained_.clear();
    for (std::size_t i = 0; i < words_of_line_; ++i) {
        for (BitWord left = before[i] & ~after[i]; left != 0; left &= left - 1) {
            gained_.push_back(order_.ranks[lowest_number(i, left)]);
        }
    }
    return gained_;
}

const std::vector<BitWord>& DenseCover::outside_with(Rank added) {
    Prefix& after = prefixes_[itemset_.size() + 1];
    keep_witnesses(prefixes_[itemset_.size()], added, after);
    find_among_witnesses(after);
    for (std::size_t i = 0; i < words_of_line_; ++i) {
        for (BitWord left = lost_[i]; left != 0; left &= ~after.outside[i]) {
            const Rank rank = order_.ranks[lowest_number(i, left)];
            left &= left - 1;
            const Transaction line = uncovered_line(rank, added);
            if (line != no_line) {
                add_witness(line, after);
            }
        }
    }
    return after.outside;
}

/// Keeps the witnesses that do not hold an item. What the others hold is lost, but for this item, which is
/// covered. There are no branches, since nobody can tell which ones hold it.
void DenseCover::keep_witnesses(const Prefix& before, Rank added, Prefix& after) {
    const BitWord* const of_added = rows_[added];
    after.witnesses.resize(before.witnesses.size());
    removed_.resize(before.witnesses.size());
    std::size_t kept = 0;
    std::size_t removed = 0;
    for (const Transaction witness : before.witnesses) {
        const BitWord holds_added = of_added[word_of(witness)] >> witness % word_bits & 1U;
        after.witnesses[kept] = removed_[removed] = witness;
        kept += 1 - holds_added;
        removed += holds_added;
    }
    after.witnesses.resize(kept);
    lost_.assign(words_of_line_, 0);
    for (const Transaction witness : std::span(removed_).first(removed)) {
        for (std::size_t i = 0; i < words_of_line_; ++i) {
            lost_[i] |= line(witness)[i];
        }
    }
    after.outside.resize(words_of_line_);
    for (std::size_t i = 0; i < words_of_line_; ++i) {
        after.outside[i] = before.outside[i] & ~lost_[i];
    }
    const Rank place = order_.places[added];
    lost_[word_of(place)] &= ~bit_of(place);
}

/// Finds what is lost in the witnesses that were added last, which hold the most of it.
void DenseCover::find_among_witnesses(Prefix& prefix) {
    const std::size_t size = prefix.witnesses.size();
    const auto last = std::span(prefix.witnesses).last(std::min(size, most_witnesses_to_look_at));
    for (std::size_t i = 0; i < words_of_line_; ++i) {
        BitWord lost = lost_[i];
        for (std::size_t k = last.size(); k > 0 && lost != 0; --k) {
            lost &= ~line(last[k - 1])[i];
        }
        prefix.outside[i] |= lost_[i] & ~lost;
        lost_[i] = lost;
    }
}

void DenseCover::add_witness(Transaction line, Prefix& prefix) const {
    const BitWord* const held = this->line(line);
    for (std::size_t i = 0; i < words_of_line_; ++i) {
        prefix.outside[i] |= held[i];
    }
    prefix.witnesses.push_back(line);
}

void DenseCover::keep_frequent(Count least, std::vector<Candidate>& candidates) {
    std::size_t kept = 0;
    for (Candidate candidate : candidates) {
        candidate.joint = joint(candidate.rank);
        if (candidate.joint >= least) {
            candidates[kept++] = candidate;
        }
    }
    candidates.resize(kept);
}

Count DenseCover::joint(Rank rank) {
    return rows_.both(rows_[rank], all(itemset_.size()));
}

Count DenseCover::own(Rank rank) {
    return rows_.without(rows_[rank], any(itemset_.size()));
}

/// A bit vector of the prefix of this size, combined from that of the shorter one and its last item.
template <typename Combine>
const BitWord* DenseCover::made(LazyBits Prefix::*which, std::size_t size, Combine combine) {
    LazyBits& lazy = prefixes_[size].*which;
    if (!lazy.is_made) {
        const BitWord* const shorter = made(which, size - 1, combine);
        const BitWord* const added = rows_[itemset_[size - 1]];
        lazy.bits.resize(rows_.words());
        std::transform(shorter, shorter + rows_.words(), added, lazy.bits.begin(), combine);
        lazy.is_made = true;
    }
    return lazy.bits.data();
}

const BitWord* DenseCover::any(std::size_t size) {
    return made(&Prefix::any, size, std::bit_or<>());
}

const BitWord* DenseCover::all(std::size_t size) {
    return made(&Prefix::all, size, std::bit_and<>());
}

/// The lines that hold no item of the prefix of this size.
const std::vector<DenseCover::Word>& DenseCover::uncovered(std::size_t size) {
    LazyWords& lazy = prefixes_[size].uncovered;
    if (!lazy.is_made) {
        const BitWord* const covered = any(size);
        lazy.words.clear();
        for (std::size_t word = 0; word < rows_.words(); ++word) {
            if (covered[word] != ~BitWord{0}) {
                lazy.words.push_back({word, ~covered[word]});
            }
        }
        lazy.is_made = true;
    }
    return lazy.words;
}

/// A line of a rank that holds neither anything of the itemset nor `added`; or no_line.
Transaction DenseCover::uncovered_line(Rank rank, Rank added) {
    const auto [begin, end] = extents_[rank];
    const std::size_t near = std::min(begin + near_, end);
    const Transaction line = uncovered_line_between(begin, near, rank, added);
    if (line != no_line || near == end) {
        return line;
    }
    return uncovered(itemset_.size()).size() * words_for_one_uncovered <= rows_.words()
               ? uncovered_line_from(near, rank, added)
               : uncovered_line_between(near, end, rank, added);
}

/// Looks at all words from one up to another.
Transaction DenseCover::uncovered_line_between(std::size_t begin, std::size_t end, Rank rank, Rank added) {
    const BitWord* const held = rows_[rank];
    const BitWord* const covered = any(itemset_.size());
    const BitWord* const of_added = rows_[added];
    const std::size_t i = begin + find_word_(held + begin, covered + begin, of_added + begin, end - begin);
    return i == end ? no_line
                    : static_cast<Transaction>(lowest_number(i, held[i] & ~(covered[i] | of_added[i])));
}

/// Looks at the words from one on, and passes over those of covered lines alone.
Transaction DenseCover::uncovered_line_from(std::size_t begin, Rank rank, Rank added) {
    const BitWord* const held = rows_[rank];
    const BitWord* const of_added = rows_[added];
    const std::vector<Word>& words = uncovered(itemset_.size());
    for (auto word = std::ranges::lower_bound(words, begin, {}, &Word::number); word != words.end(); ++word) {
        const BitWord left = held[word->number] & word->bits & ~of_added[word->number];
        if (left != 0) {
            return static_cast<Transaction>(lowest_number(word->number, left));
        }
    }
    return no_line;
}

}  // namespace korv::tools
