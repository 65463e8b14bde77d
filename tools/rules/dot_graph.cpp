#include "rules/dot_graph.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <unordered_map>

#include "common/quantity.h"
#include "rules/class_numbers.h"
#include "rules/display_text.h"
#include "rules/itemset_pool.h"
#include "rules/measures.h"
#include "rules/number_words.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

constexpr std::size_t columns_of_label = 30;
constexpr SideStyle style_of_label = {.is_printable = true, .most_items = 12, .most_columns = 40};
constexpr SideStyle style_of_tooltip = {.is_printable = true};

constexpr double thinnest = 1;
constexpr double thickest = 6;

/// A text in quotes. `backslash`: how one is spelt.
std::string quoted(std::string_view text, std::string_view backslash) {
    std::string result = "\"";
    for (const char each : text) {
        switch (each) {
            case '"':
                result += "\\\"";
                break;
            case '\\':  // which begins what stands for something else, such as \N for the name of the node
                result += backslash;
                break;
            case '\n':
                result += "\\n";
                break;
            case '&':  // which begins what stands for a character, such as &lt;
                result += "&amp;";
                break;
            default:
                result += each;
        }
    }
    return result + '"';
}

/// How a graph begins: what all of its nodes and edges have in common.
std::string beginning_of(std::string_view name, std::string_view attributes, std::string_view edges) {
    std::string text = "digraph " + std::string(name) + " {\n";
    text.append("    graph [").append(attributes).append(", fontname=\"sans-serif\", fontsize=11];\n");
    text +=
        "    node [shape=box, style=\"rounded,filled\", fillcolor=\"#f6f6f2\", color=\"#777777\", "
        "fontname=\"sans-serif\", fontsize=11, margin=\"0.12,0.06\"];\n";
    text.append("    edge [").append(edges).append(", fontname=\"sans-serif\", fontsize=10];\n");
    return text;
}

/// "885 (40 %)"; a range where it is not known.
std::string support_text(const CountRange& support, Count transactions) {
    const auto share = [transactions](Count count) { return percent_text(double(count) / transactions); };
    return count_text(support) + " (" + range_text(share(support.low), share(support.high)) + ')';
}

/// The attributes of a node: what it stands for, in lines, and its support.
std::string node_attributes(Side side, const CountRange& support, const RuleBook& book) {
    std::string label;
    for (const std::string& line : wrapped(side_text(side, book, style_of_label), columns_of_label)) {
        label += line + '\n';
    }
    label += support_text(support, book.transactions);
    return "label=" + dot_label(label) + ", tooltip=" + dot_tooltip(side_text(side, book, style_of_tooltip));
}

/// The colour of a lift: grey for 1 and for one that is not defined, red from 2 on, blue down to a half.
std::string color_of_lift(double lift) {
    using Color = std::array<double, 3>;
    constexpr Color grey = {0x99, 0x99, 0x99};
    constexpr Color red = {0xc0, 0x24, 0x1c};
    constexpr Color blue = {0x1c, 0x5c, 0xb4};
    const double distance = std::isnan(lift) ? 0 : std::clamp(std::log2(lift), -1.0, 1.0);
    const Color& full = distance < 0 ? blue : red;
    std::string text = "#";
    for (std::size_t i = 0; i < grey.size(); ++i) {
        std::array<char, 3> digits = {};
        const double part = grey[i] + (full[i] - grey[i]) * std::abs(distance);
        std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned>(std::lround(part)));
        text += digits.data();
    }
    return text;
}

/// The width of the edge of a rule, among rules of at most so much support.
double width_of_edge(Count support, Count largest) {
    const double share = largest == 0 ? 0 : double(support) / largest;
    return thinnest + (thickest - thinnest) * share;
}

/// A measure of a rule in words, from its lower end to its upper one.
template <typename Text>
std::string measured(Measure measure, const FoundRule& rule, const RuleBook& book, Text text) {
    const MeasureBounds bounds = bounds_of(measure, rule, book.transactions);
    return range_text(text(bounds.low), text(bounds.high));
}

/// The confidence as a percentage, or "-" where it is not defined.
std::string confidence_text(double confidence) {
    return std::isnan(confidence) ? "-" : percent_text(confidence);
}

/// What a pointer at the edge of a rule is told.
std::string told_of(const FoundRule& rule, const RuleBook& book) {
    return side_text(rule.premise, book, style_of_tooltip) + " => " +
           side_text(rule.conclusion, book, style_of_tooltip) + ": support " +
           count_text(range_of(rule, &Contingency::both)) + ", confidence " +
           measured(Measure::confidence, rule, book, confidence_text) + ", lift " +
           measured(Measure::lift, rule, book, measure_text);
}

Count support_of(const FoundRule& rule) {
    return range_of(rule, &Contingency::both).low;
}

std::string edge_attributes(const FoundRule& rule, const RuleBook& book, Count largest) {
    const std::string color = color_of_lift(bounds_of(Measure::lift, rule, book.transactions).low);
    const std::string told = dot_tooltip(told_of(rule, book));
    std::string text = "label=" + dot_label(measured(Measure::confidence, rule, book, confidence_text)) +
                       ", penwidth=" + decimals_text(width_of_edge(support_of(rule), largest), 1) +
                       ", color=\"" + color + "\", tooltip=" + told + ", labeltooltip=" + told;
    if (certainty(rule) == Certainty::bounded) {
        text += ", style=dashed";
    }
    return text;
}

/// What stands below the graph of rules.
std::string caption(const std::vector<FoundRule>& rules, const RuleBook& book) {
    std::string text = with_commas(rules.size()) + (rules.size() == 1 ? " rule" : " rules") + " of " +
                       with_commas(book.transactions) + " transactions";
    if (!rules.empty()) {
        const auto [least, most] = std::ranges::minmax(rules, {}, support_of);
        text += "; width: support, " +
                range_text(with_commas(support_of(least)), with_commas(support_of(most))) +
                "; colour: lift, grey for 1, red from 2 on, blue below 1; numbers: confidence";
    }
    return text;
}

/// Nodes for sides, each written when it is first met.
class SideNodes {
public:
    SideNodes(const RuleBook& book, std::string& text) : book_(book), text_(text) {}

    /// The number of a side. `support`: how many transactions meet it.
    std::size_t number(Side side, const CountRange& support) {
        const std::size_t key = 2 * std::size_t{side.itemset()} + (side.is_negated() ? 1 : 0);
        const auto [found, is_new] = numbers_.try_emplace(key, numbers_.size() + 1);
        if (is_new) {
            text_ += "    " + std::to_string(found->second) + " [" + node_attributes(side, support, book_) +
                     (side.is_negated() ? ", style=\"rounded,filled,dashed\"" : "") + "];\n";
        }
        return found->second;
    }

    std::size_t size() const { return numbers_.size(); }

private:
    const RuleBook& book_;
    std::string& text_;
    std::unordered_map<std::size_t, std::size_t> numbers_;
};

}  // namespace

std::size_t write_lattice_graph(const LatticeEntries& entries, const RuleBook& book, const TextSink& sink) {
    sink(
        beginning_of("lattice", "rankdir=TB, ranksep=0.5, nodesep=0.2", "arrowhead=none, color=\"#999999\""));
    const ClassNumbers numbers(entries);
    std::size_t number = 0;
    for (const LatticeEntry& entry : entries) {
        ItemsetPool itemset;
        const Side side(itemset.intern(entry.itemset()), false);
        const RuleBook of_class = {itemset, book.names, book.transactions, {}, book.columns};
        const CountRange support = {entry.support(), entry.support()};
        const std::string upper = "    " + std::to_string(++number);
        std::string text = upper + " [" + node_attributes(side, support, of_class) + "];\n";
        for (const NodeRef successor : entry.successors) {
            text += upper + " -> " + std::to_string(numbers.of(successor)) + ";\n";
        }
        sink(text);
    }
    sink("}\n");
    return entries.size();
}

std::size_t write_rules_graph(const std::vector<FoundRule>& rules, const RuleBook& book,
                              const TextSink& sink) {
    sink(beginning_of("rules",
                      "rankdir=LR, ranksep=0.9, nodesep=0.15, label=" + dot_label(caption(rules, book)),
                      "arrowsize=0.7"));
    const Count largest = rules.empty() ? 0 : support_of(std::ranges::max(rules, {}, support_of));
    std::string text;
    SideNodes nodes(book, text);
    for (const FoundRule& rule : rules) {
        const std::size_t premise = nodes.number(rule.premise, range_of(rule, &Contingency::premise));
        const std::size_t conclusion =
            nodes.number(rule.conclusion, range_of(rule, &Contingency::conclusion));
        text += "    " + std::to_string(premise) + " -> " + std::to_string(conclusion) + " [" +
                edge_attributes(rule, book, largest) + "];\n";
        sink(text);
        text.clear();
    }
    sink("}\n");
    return nodes.size();
}

std::string dot_label(std::string_view text) {
    return quoted(text, R"(\\)");
}

std::string dot_tooltip(std::string_view text) {
    return quoted(text, R"(\\\\)");  // Graphviz resolves a tooltip twice
}

}  // namespace korv::tools
