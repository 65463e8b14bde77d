#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <variant>
#include <vector>

#include "base/bit_words.h"
#include "engine/supports.h"
#include "mine/bit_rows.h"
#include "mine/database.h"

namespace korv::tools {

/// Counts disjunctive supports in transactions: how many hold at least one item of an itemset. Lines count as
/// often as their weight says.
///
/// Items that many lines hold are bit vectors over the lines, the others lists of lines.
class SupportCounter {
public:
    /// `database` must outlive it. O(occurrences of items); takes as much memory as the lists of the database
    /// at most.
    explicit SupportCounter(const Database& database);

    /// The support of an itemset, of any items; in no transaction are those that the database lacks.
    /// O(items * lines / 64 + occurrences of rare items).
    Count count(ItemSpan itemset);

private:
    /// An item by its bit vector, as a row of `rows_`, or by its list.
    using Row = std::size_t;
    using List = const std::vector<Transaction>*;

    std::unordered_map<Item, std::variant<Row, List>> items_;
    BitRows rows_;
    std::vector<BitWord> met_;  ///< working space: the lines that hold an item of the itemset
};

/// Supports that are known, each of them: where others leave a support open, it is counted.
class CountedSupports final : public Supports {
public:
    /// Refers to both. `supports`: of classes of the transactions that are counted.
    CountedSupports(Supports& supports, SupportCounter& counter) : supports_(supports), counter_(counter) {}

    /// The support of `itemset`, which both bounds are set to where it is counted. 0 only where no
    /// transaction has an item of it.
    Count settle(const Itemset& itemset, SupportBounds& bounds) override;

    /// How many supports were counted.
    std::uint64_t counted() const { return counted_; }

private:
    Supports& supports_;
    SupportCounter& counter_;
    std::uint64_t counted_ = 0;
};

}  // namespace korv::tools
