#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "base/bit_words.h"
#include "engine/supports.h"
#include "index/bounds_cache.h"
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
    /// O(items * lines / 64 + occurrences of rare items). Several threads can count at the same
    /// time.
    Count count(ItemSpan itemset) const;

private:
    void add_lines_with(std::size_t position, std::vector<BitWord>& met) const;

    const Database& database_;
    Itemset items_;                 ///< of the database, ascending: an item is known by its position
    std::vector<std::size_t> row_;  ///< by position: the row of the item in `rows_`, or no_row
    BitRows rows_;                  ///< of the items that are in many lines
};

/// Supports that are known, each of them: where others leave a support open, it is counted.
class CountedSupports final : public Supports {
public:
    /// Refers to the counter. `supports`: of classes of the transactions that are counted.
    CountedSupports(std::unique_ptr<Supports> supports, const SupportCounter& counter)
        : supports_(std::move(supports)), counter_(counter) {}

    /// The support of `itemset`, which both bounds are set to where it is counted. 0 only where no
    /// transaction has an item of it. What was counted is remembered, in bounded memory.
    Count settle(const Itemset& itemset, SupportBounds& bounds) override;

    /// How many supports were counted.
    std::uint64_t counted() const { return counted_; }

private:
    std::unique_ptr<Supports> supports_;
    const SupportCounter& counter_;
    BoundsCache known_;  ///< what was counted, as both bounds
    std::uint64_t counted_ = 0;
};

}  // namespace korv::tools
