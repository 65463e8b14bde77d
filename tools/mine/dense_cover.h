#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bit_words.h"
#include "mine/bit_rows.h"
#include "mine/cover.h"

namespace korv::tools {

/// A cover (see cover.h) of items that are in many transactions.
///
/// Invariant: each item outside the closure has a witness, its first line that holds no item of the itemset.
/// Only when a new item is in that line is another one looked for, from there on. An item without lines, as
/// there are in a part of a database, is in every closure, and never gained.
class DenseCover {
public:
    explicit DenseCover(const RankedItems& items);

    void pairs_of(Rank rank, Count least, std::vector<Candidate>& candidates) const;
    const std::vector<Rank>& enter(Rank rank);
    /// The same where nothing but joint supports and own counts is asked for until it is left.
    void enter_to_count(Rank rank);
    void leave();
    const std::vector<Rank>& gain(Rank rank);
    static void announce(const std::vector<Rank>&, std::uint64_t) {}
    void keep_frequent(Count least, std::vector<Candidate>& candidates);
    Count own(Rank rank);
    std::size_t own_nanoseconds(Rank) const { return rows_.words() / 2 * rows_.passes(); }

private:
    struct Outside {
        Rank rank;
        Transaction witness;
    };

    /// A bit vector over the lines, made when it is first asked for.
    struct LazyBits {
        std::vector<BitWord> bits;
        bool is_made = false;
    };

    /// A word of a bit vector.
    struct Word {
        std::size_t number;
        BitWord bits;
    };

    /// The words of a bit vector that are not 0, ascending, made when they are first asked for.
    struct LazyWords {
        std::vector<Word> words;
        bool is_made = false;
    };

    /// What is known of a prefix of the itemset.
    struct Prefix {
        LazyBits any;                  ///< the lines that hold at least one of its items
        LazyWords uncovered;           ///< the others
        LazyBits all;                  ///< those that hold all of them
        std::vector<Outside> outside;  ///< of the closure
    };

    template <typename Combine>
    const BitWord* made(LazyBits Prefix::*which, std::size_t size, Combine combine);
    const BitWord* any(std::size_t size);
    const BitWord* all(std::size_t size);
    const std::vector<Word>& uncovered(std::size_t size);
    bool stays_outside(Outside& outside, std::size_t size, Rank added);
    bool has_witness_from(std::size_t word, Outside& outside, std::size_t size, Rank added);

    BitRows rows_;          ///< by rank
    std::size_t near_ = 0;  ///< within so many words, witnesses are looked for word by word
    std::vector<Rank> itemset_;
    std::vector<Prefix> prefixes_;  ///< by size, with room for at least one more
    std::vector<Rank> gained_;      ///< what enter or gain returned last
};

}  // namespace korv::tools
