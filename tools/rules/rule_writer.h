#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"
#include "rules/item_names.h"
#include "rules/itemset_pool.h"
#include "rules/measures.h"

namespace korv::tools {

/// In which format rules are written.
enum class RuleFormat { words, table, csv, tsv, jsonl };

/// The formats by their names on the command line.
inline constexpr std::array<std::pair<std::string_view, RuleFormat>, 5> rule_formats = {{
    {"words", RuleFormat::words},
    {"table", RuleFormat::table},
    {"csv", RuleFormat::csv},
    {"tsv", RuleFormat::tsv},
    {"jsonl", RuleFormat::jsonl},
}};

/// What the numbers in rules stand for, and what is told of them.
struct RuleBook {
    const ItemsetPool& itemsets;
    const ItemNames& names;
    Count transactions = 0;
    std::vector<Measure> measures = {};    ///< besides those that are always told
    const ColumnFacts* columns = nullptr;  ///< nullptr: nothing is known of columns
};

/// How a terminal is written to.
struct TerminalStyle {
    std::size_t width = 100;  ///< columns of a table
    bool has_color = false;
};

/// Takes pieces of text, whole lines of them.
using TextSink = std::function<void(std::string_view text)>;

/// Writes rules in one of the formats.
class RuleWriter {
public:
    RuleWriter() = default;
    virtual ~RuleWriter() = default;
    RuleWriter(const RuleWriter&) = delete;
    RuleWriter& operator=(const RuleWriter&) = delete;

    /// Writes a rule, the next one. Rules are numbered from 1.
    virtual void write(const FoundRule& rule) = 0;

    /// Writes what is left. Call this once, last.
    virtual void finish() = 0;
};

/// A writer. `book` and what it refers to must outlive it; `sink` gets all text, a header first where the
/// format has one.
std::unique_ptr<RuleWriter> rule_writer(RuleFormat format, const RuleBook& book, const TerminalStyle& style,
                                        TextSink sink);

}  // namespace korv::tools
