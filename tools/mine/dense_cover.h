#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bit_words.h"
#include "mine/bit_rows.h"
#include "mine/bit_search.h"
#include "mine/cover.h"
#include "mine/rank_order.h"

namespace korv::tools {

/// A cover (see cover.h) of items that are in many transactions.
///
/// Invariant, but for items of enter_to_count: each item outside the closure is in a witness, a line that
/// holds no item of the itemset; and so what is in witnesses is all that is outside. A new item takes away
/// the witnesses that hold it; only for what is in none of the others is a line looked for. An item without
/// lines, as there are in a part of a database, is in every closure, and never gained.
class DenseCover {
public:
    explicit DenseCover(const RankedItems& items);

    void pairs_of(Rank rank, Count least, std::vector<Candidate>& candidates) const;
    const std::vector<Rank>& enter(Rank rank);
    /// The same where nothing but joint supports and own counts is asked for until it is left.
    void enter_to_count(Rank rank);
    void leave();
    const std::vector<Rank>& gain(Rank rank);
    /// What is outside the closure when this item is added: a bit for each rank, by place (see RankOrder).
    /// Valid until the next call.
    const std::vector<BitWord>& outside_with(Rank added);
    static void announce(const std::vector<Rank>&, std::uint64_t) {}
    void keep_frequent(Count least, std::vector<Candidate>& candidates);
    /// The number of transactions that hold this item and all of the itemset.
    Count joint(Rank rank);
    Count own(Rank rank);
    std::size_t own_nanoseconds(Rank) const { return rows_.words() / 2 * rows_.passes(); }

private:
    /// The words of a row from the first up to the one behind the last that is not 0.
    struct Extent {
        std::size_t begin = 0;
        std::size_t end = 0;
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
        LazyBits any;                        ///< the lines that hold at least one of its items
        LazyWords uncovered;                 ///< the others
        LazyBits all;                        ///< those that hold all of them
        std::vector<BitWord> outside;        ///< the ranks that are not in its closure, by place
        std::vector<Transaction> witnesses;  ///< uncovered lines, which together hold just these
    };

    template <typename Combine>
    const BitWord* made(LazyBits Prefix::*which, std::size_t size, Combine combine);
    const BitWord* any(std::size_t size);
    const BitWord* all(std::size_t size);
    const std::vector<Word>& uncovered(std::size_t size);
    const BitWord* line(Transaction line) const { return lines_.data() + line * words_of_line_; }
    void keep_witnesses(const Prefix& before, Rank added, Prefix& after);
    void find_among_witnesses(Prefix& prefix);
    void add_witness(Transaction line, Prefix& prefix) const;
    Transaction uncovered_line(Rank rank, Rank added);
    Transaction uncovered_line_between(std::size_t begin, std::size_t end, Rank rank, Rank added);
    Transaction uncovered_line_from(std::size_t begin, Rank rank, Rank added);

    FindWord find_word_ = word_searches().front();
    BitRows rows_;  ///< by rank
    RankOrder order_;
    std::size_t words_of_line_;
    std::vector<BitWord> lines_;   ///< the ranks that are in a line, by place; line by line
    std::vector<Extent> extents_;  ///< by rank
    std::size_t near_ = 0;         ///< within so many words of a row, all are looked at first
    std::vector<Rank> itemset_;
    std::vector<Prefix> prefixes_;      ///< by size, with room for at least one more
    std::vector<Transaction> removed_;  ///< set and used in one call
    std::vector<BitWord> lost_;         ///< ranks that a witness showed to be outside, by place: likewise
    std::vector<Rank> gained_;          ///< what enter or gain returned last
};

}  // namespace korv::tools
