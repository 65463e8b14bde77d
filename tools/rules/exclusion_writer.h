#pragma once

#include <memory>

#include "rules/exclusion.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// Writes exclusions in one of the formats of rules.
class ExclusionWriter {
public:
    ExclusionWriter() = default;
    virtual ~ExclusionWriter() = default;
    ExclusionWriter(const ExclusionWriter&) = delete;
    ExclusionWriter& operator=(const ExclusionWriter&) = delete;

    /// Writes an exclusion, the next one. They are numbered from 1.
    virtual void write(const Exclusion& exclusion) = 0;

    /// Writes what is left. Call this once, last.
    virtual void finish() = 0;
};

/// A writer. The itemsets of `book` hold each item alone; `book` and what it refers to must outlive the
/// writer. `sink` gets all text, a header first where the format has one.
///
/// In words, a pair is told with the rules it makes whose confidence is at least `min_confidence`:
///
///     1. beer and diapers exclude each other: together in 3 transactions, 87.3 expected; one of them
///        is in 61 %
///        beer => not diapers (0.970), not beer => diapers (0.830)
///
/// Items that are together more often than in a quarter of what is expected "avoid each other".
///
/// The columns of csv and tsv, and the keys of jsonl, are: id, items, numbers (of the items), size, together,
/// expected, covered, transactions, p, then the confidences of the rules of a pair, a_not_b (a => not b),
/// b_not_a, not_a_b and not_b_a. In csv and tsv, the names of the items are joined by " and ", which no name
/// is quoted for, and their numbers by blanks; in jsonl both are arrays. The confidences are empty, or null,
/// for triples. Else cells and values are as those of rules (see delimited_writer.h and json_writer.h).
std::unique_ptr<ExclusionWriter> exclusion_writer(RuleFormat format, const RuleBook& book,
                                                  double min_confidence, const TerminalStyle& style,
                                                  TextSink sink);

}  // namespace korv::tools
