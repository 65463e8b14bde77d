#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "rules/found_rule.h"
#include "rules/rule_columns.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// How many bytes rules take in each of the formats for programs.
struct ColumnBytes {
    std::uint64_t csv = 0;
    std::uint64_t tsv = 0;
    std::uint64_t jsonl = 0;
};

/// Counts the bytes that rules take in csv, tsv and jsonl, exactly, in one pass and without making their
/// text. The sizes of sides are kept: 12 bytes for each itemset of the book, plain and negated.
class ColumnSizes {
public:
    /// The headers are counted at once. `book` and what it refers to must outlive this, and get no itemset
    /// more.
    explicit ColumnSizes(const RuleBook& book);

    /// Counts a rule, the next one. O(1), and O(text) for sides that come for the first time.
    void add(const FoundRule& rule);

    const ColumnBytes& bytes() const { return bytes_; }

private:
    class Columns;

    /// Of a side; 0 where it was not counted yet, since no side is without text.
    struct SideBytes {
        std::uint32_t csv = 0;
        std::uint32_t tsv = 0;
        std::uint32_t jsonl = 0;
    };

    const SideBytes& bytes_of(Side side);

    const RuleBook book_;
    const std::vector<FurtherMeasure> further_;
    std::vector<SideBytes> sides_;  ///< of each itemset, plain and negated
    ColumnBytes bytes_;
    std::uint64_t id_ = 0;
};

}  // namespace korv::tools
