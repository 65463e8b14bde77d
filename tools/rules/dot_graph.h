#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engine/lattice_entries.h"
#include "rules/found_rule.h"
#include "rules/rule_writer.h"

namespace korv::tools {

// Graphs in the language of Graphviz, in UTF-8. Names are written so that they are shown as they are, but for
// characters that are not printable, which are spelt as \xHH (see printable.h).

/// What a graph shows.
enum class GraphKind {
    lattice,  ///< the classes that rules are derived from
    rules,
};

/// Beyond this, a drawing is a tangle.
inline constexpr std::size_t most_legible_nodes = 500;

/// Writes the lattice: a node for each class, with its closed itemset in words and its support, and an edge
/// to each of its successors, which are below it. Returns the number of nodes.
std::size_t write_lattice_graph(const LatticeEntries& entries, const RuleBook& book, const TextSink& sink);

/// Writes rules: a node for each side with its support, those that are negated with a dashed border, and an
/// edge for each rule from its premise to its conclusion. The edge is labelled with the confidence; it is the
/// wider, the more support the rule has, grey where its lift is 1, the more red the larger and the more blue
/// the smaller it is, and dashed where the rule is bounded. Returns the number of nodes.
std::size_t write_rules_graph(const std::vector<FoundRule>& rules, const RuleBook& book,
                              const TextSink& sink);

/// A text as a quoted string that Graphviz shows as it is in a label, with lines parted at "\n".
std::string dot_label(std::string_view text);

/// A text as a quoted string that Graphviz shows as it is in a tooltip, which it reads in another way.
std::string dot_tooltip(std::string_view text);

}  // namespace korv::tools
