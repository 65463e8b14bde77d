#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/atomic_output.h"
#include "rules/column_facts.h"
#include "rules/dot_graph.h"
#include "rules/exclusion_search.h"
#include "rules/found_rule.h"
#include "rules/rule_writer.h"
#include "rules/rules_database.h"
#include "rules/rules_page.h"

namespace korv::tools {

/// Where rules go: a file, or an open stream, in one of the formats. A file is there only when it is
/// complete.
class RuleOutput {
public:
    /// Opens the output, so that a path that cannot be written is found before the work begins. Throws Error
    /// as AtomicOutput does.
    RuleOutput(const std::string& path, RuleFormat format, const TerminalStyle& style)
        : output_(path), format_(format), style_(style) {}

    // Call one of the functions that write, once. They throw Error, or BrokenPipe, as AtomicOutput does.

    /// Writes all rules, in one of writer_formats.
    void write_rules(const std::vector<FoundRule>& rules, const RuleBook& book);

    /// Writes rules and their lattice as a database. See write_rules_database, which throws Error, too.
    void write_database(const SearchResult& found, const RuleBook& book, const RulesOrigin& origin);

    /// Writes rules and their lattice as a page. Returns how many classes there was room for.
    std::size_t write_page(const SearchResult& found, const RuleBook& book, const PageOrigin& origin);

    /// Draws the lattice, or the rules. Returns the number of nodes.
    std::size_t write_graph(const SearchResult& found, const RuleBook& book, GraphKind graph);

    /// Writes exclusions, in one of writer_formats, with the rules of at least this confidence that they
    /// give.
    void write_exclusions(const std::vector<Exclusion>& exclusions, const RuleInput& input,
                          const ColumnFacts& columns, double min_confidence);

    /// Writes a text in place of rules.
    void write_report(std::string_view report);

    /// Whether a database can go there, which must be a file.
    bool is_file() const { return !output_.temporary_path().empty(); }

private:
    AtomicOutput output_;
    RuleFormat format_;
    TerminalStyle style_;
};

}  // namespace korv::tools
