#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bit_words.h"
#include "mine/database.h"

namespace korv::tools {

/// Answers questions about an itemset that grows and shrinks at its end. Items are positions in
/// Database::items.
///
/// There are two representations with the same operations, and each is tested against a count in the
/// transactions: DenseCover keeps sets of transactions as bit vectors, SparseCover keeps counts for each
/// transaction.
///
/// - extend(item): adds an item and returns true if the itemset is then essential and frequent; otherwise
///   returns false, and nothing changes.
/// - retract(): removes the item that was added last.
/// - support(): the disjunctive support of the itemset.
/// - covers(item): whether each transaction with this item holds an item of the itemset.
/// - newly_covered(wanted): the items, ascending, that the last extend covered. Only items for which `wanted`
///   is not 0 are looked for; these must not have been covered before.
/// - promising(candidates): the candidates for which extend is worth a call; no other would be frequent.

/// Positions in Database::items.
using Positions = std::vector<std::size_t>;

/// Suits items that are in more than about one of thirty transactions.
///
/// Invariant: for each prefix of the itemset there are three bit vectors over the transactions: `any` marks
/// those that hold at least one of its items, `once` exactly one, `all` all of them.
class DenseCover {
public:
    DenseCover(const Database& database, Count min_support);

    bool extend(std::size_t item);
    void retract();
    Count support() const { return prefixes_[itemset_.size()].support; }
    bool covers(std::size_t item) const;
    Positions newly_covered(const std::vector<char>& wanted) const;
    /// Returns all of them, since extend is fast.
    static Positions promising(const Positions& candidates) { return candidates; }

private:
    struct Prefix {
        std::vector<BitWord> any;
        std::vector<BitWord> once;
        std::vector<BitWord> all;
        Count support = 0;
    };

    const BitWord* row(std::size_t item) const { return rows_.data() + item * words_; }
    bool is_frequent_with(std::size_t item, Prefix& longer);
    bool is_essential_with(std::size_t item) const;

    Count min_support_;
    std::size_t words_;          ///< of a bit vector
    std::vector<BitWord> rows_;  ///< the transactions of each item, one behind the other
    std::vector<std::size_t> itemset_;
    std::vector<Prefix> prefixes_;  ///< by size, with room for at least one more
};

/// Suits items that are in few transactions.
///
/// Invariant: for each transaction, the cover knows how many items of the itemset it holds, and which one if
/// there is only one; for each item of the itemset, how many transactions hold no other item of it; for each
/// prefix of the itemset, which transactions hold all of it.
class SparseCover {
public:
    /// `database` must outlive the cover.
    SparseCover(const Database& database, Count min_support);

    bool extend(std::size_t item);
    void retract();
    Count support() const { return support_; }
    bool covers(std::size_t item) const;
    /// Looks at all items, or only at those of newly covered transactions when these are fewer.
    Positions newly_covered(const std::vector<char>& wanted);
    /// Counts the candidates in the transactions that hold all of the itemset, and returns the frequent ones.
    Positions promising(const Positions& candidates);

private:
    struct Held {
        std::uint32_t items = 0;      ///< how many items of the itemset the transaction holds
        std::uint32_t exclusive = 0;  ///< their exclusive or: the item itself, if there is only one
    };

    const std::vector<Transaction>& transactions(std::size_t item) const {
        return database_.items[item].transactions;
    }
    bool is_frequent_and_essential_with(std::size_t item);
    Positions wanted_in_newly_covered(const std::vector<char>& wanted);

    const Database& database_;
    Count min_support_;
    std::vector<Held> held_;       ///< by transaction
    std::vector<Count> own_;       ///< by item of the itemset: transactions that hold no other of its items
    std::vector<Count> lost_;      ///< by item: how many of these hold the item that is tried; else 0
    std::vector<Count> together_;  ///< by item: transactions that hold it and all of the itemset; else 0
    std::vector<char> is_seen_;    ///< by item: whether newly_covered met it; else 0
    std::vector<Transaction> first_;          ///< by item: its first transaction
    std::size_t items_of_a_transaction_ = 0;  ///< on average, rounded up
    std::vector<Positions> items_of_;         ///< by transaction
    std::vector<std::size_t> itemset_;
    std::vector<std::vector<Transaction>> all_;  ///< by size of a prefix, with room for at least one more
    Count support_ = 0;
};

}  // namespace korv::tools
