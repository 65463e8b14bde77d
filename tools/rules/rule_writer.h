#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "rules/column_facts.h"
#include "rules/found_rule.h"
#include "rules/holdout.h"
#include "rules/item_names.h"
#include "rules/itemset_pool.h"
#include "rules/measures.h"

namespace korv::tools {

/// In which format rules are written.
enum class RuleFormat { words, table, csv, tsv, jsonl, sqlite, dot, html };

/// The formats by their names on the command line: first those that a RuleWriter writes, rule by rule.
inline constexpr std::array<std::pair<std::string_view, RuleFormat>, 8> rule_formats = {{
    {"words", RuleFormat::words},
    {"table", RuleFormat::table},
    {"csv", RuleFormat::csv},
    {"tsv", RuleFormat::tsv},
    {"jsonl", RuleFormat::jsonl},
    {"sqlite", RuleFormat::sqlite},
    {"dot", RuleFormat::dot},
    {"html", RuleFormat::html},
}};

/// The formats that a RuleWriter writes.
inline constexpr auto writer_formats = std::span(rule_formats).first<5>();

/// What the numbers in rules stand for, and what is told of them.
struct RuleBook {
    const ItemsetPool& itemsets;
    const ItemNames& names;
    Count transactions = 0;
    std::vector<Measure> measures = {};    ///< besides those that are always told
    const ColumnFacts* columns = nullptr;  ///< nullptr: nothing is known of columns
    Knowledge known = {};                  ///< what cannot be told is left out, or an empty cell
    /// What other transactions say of the rules, in the order in which they are written; nullptr for none.
    const std::vector<HoldoutCounts>* holdout = nullptr;

    /// What other transactions say of the rule of this number, from 1; nullptr where there are none.
    const HoldoutCounts* holdout_of(std::uint64_t id) const {
        return holdout == nullptr ? nullptr : &(*holdout)[id - 1];
    }
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

/// A writer of one of `writer_formats`. `book` and what it refers to must outlive it; `sink` gets all text, a
/// header first where the format has one.
std::unique_ptr<RuleWriter> rule_writer(RuleFormat format, const RuleBook& book, const TerminalStyle& style,
                                        TextSink sink);

}  // namespace korv::tools
