#include "common/class_agreement.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

namespace {

/// A class and its line.
struct PlacedClass {
    NodeRef node;
    std::uint32_t line;
};

Error class_error(const std::string& name, const PlacedClass& place, const Disagreement& words) {
    return input_error(name, {place.line, 1}, words.found, words.expected);
}

/// The first line whose class `is_wanted` asks for; the end of the classes and 0 where there is none.
template <typename IsWanted>
PlacedClass first_class(const ClassMap& classes, const std::vector<std::uint32_t>& lines,
                        IsWanted is_wanted) {
    PlacedClass first = {classes.end(), 0};
    auto line = lines.begin();
    for (NodeRef node = classes.begin(); node != classes.end(); ++node, ++line) {
        const bool is_earlier = first.node == classes.end() || *line < first.line;
        if (is_earlier && is_wanted(node)) {
            first = {node, *line};
        }
    }
    return first;
}

/// Throws Error for the first line with a support above `transactions`.
void require_supports_up_to(Count transactions, const ClassMap& classes,
                            const std::vector<std::uint32_t>& lines, const std::string& name) {
    const PlacedClass first = first_class(
        classes, lines, [transactions](NodeRef node) { return node->second.support > transactions; });
    if (first.node != classes.end()) {
        throw class_error(name, first, support_above(first.node->second.support, transactions));
    }
}

/// The first line of another class of no smaller support that has a key within a class.
PlacedClass other_with_key_within(NodeRef of_class, const ClassMap& classes,
                                  const std::vector<std::uint32_t>& lines) {
    return first_class(classes, lines, [of_class](NodeRef node) {
        return node != of_class && node->second.support >= of_class->second.support &&
               key_within(node, of_class->first) != nullptr;
    });
}

/// The one of some classes that stands first in the file.
PlacedClass first_of(const std::vector<NodeRef>& some, const ClassMap& classes,
                     const std::vector<std::uint32_t>& lines) {
    std::unordered_set<const Itemset*> wanted;
    for (const NodeRef node : some) {
        wanted.insert(&node->first);
    }
    return first_class(classes, lines, [&wanted](NodeRef node) { return wanted.contains(&node->first); });
}

/// The first line of a class of no larger support around an essential itemset that contradicts it.
PlacedClass stranger_of(const Itemset& essential, const PlacedClass& of, const ClassMap& classes,
                        const std::vector<std::uint32_t>& lines) {
    auto line = lines.begin();
    PlacedClass first = {classes.end(), 0};
    for (NodeRef node = classes.begin(); node != classes.end(); ++node, ++line) {
        const bool is_earlier = first.node == classes.end() || *line < first.line;
        if (is_earlier && node->second.support <= of.node->second.support &&
            is_stranger(essential, of.node, of.line, node, *line)) {
            first = {node, *line};
        }
    }
    return first;
}

/// Throws Error for an essential itemset of the second class that lies within the first one, which does not
/// contain the second one. Where both have it, this is told of one of them.
void require_essential_elsewhere(const PlacedClass& contradicted, const PlacedClass& other,
                                 const ClassMap& classes, const std::vector<std::uint32_t>& lines,
                                 const std::string& name) {
    const Itemset& essential = *key_within(other.node, contradicted.node->first);
    for (const PlacedClass& of : {other, contradicted}) {
        const PlacedClass stranger = stranger_of(essential, of, classes, lines);
        if (stranger.node != classes.end()) {
            throw class_error(name, of,
                              essential_disagreement(essential, of.node, stranger.node, stranger.line).words);
        }
    }
}

[[noreturn]] void fail(const PlacedClass& contradicted, const PlacedClass& other, const std::string& name) {
    const Disagreement words =
        support_not_larger(contradicted.node->second.support, other.node->second.support, other.line,
                           *key_within(other.node, contradicted.node->first));
    throw class_error(name, contradicted, words);
}

}  // namespace

Disagreement support_above(Count support, Count transactions) {
    return {"the support " + std::to_string(support),
            std::to_string(transactions) + " at most, the number of transactions"};
}

Disagreement support_not_larger(Count support, Count other_support, std::size_t other_line,
                                const Itemset& key) {
    std::string items;
    append_items(key, items);
    return {"the support " + std::to_string(support), "more than " + std::to_string(other_support) +
                                                          ", the support of line " +
                                                          std::to_string(other_line) + ", whose itemset " +
                                                          shown(items) + " lies within the closed itemset"};
}

EssentialDisagreement essential_disagreement(const Itemset& essential, NodeRef of_class, NodeRef around,
                                             std::size_t around_line) {
    std::string items;
    append_items(essential, items);
    const std::string found = "the essential itemset " + shown(items);
    const std::string line = "line " + std::to_string(around_line);
    if (is_contained(around->first, of_class->first)) {
        return {FindingKind::essential_in_smaller_class,
                {found + " within the smaller class of " + line,
                 "essential itemsets that lie within no smaller class"}};
    }
    const std::vector<Itemset>& others = around->second.essentials;
    if (std::ranges::find(others, essential) != others.end() || around->first == essential) {
        return {FindingKind::shared_essential,
                {found + ", which " + line + " has, too", "each essential itemset in one class"}};
    }
    return {FindingKind::essential_elsewhere,
            {found, "classes around it that contain this one; " + line + " does not"}};
}

bool is_stranger(const Itemset& essential, NodeRef of_class, std::size_t line, NodeRef around,
                 std::size_t around_line) {
    if (!is_contained(essential, around->first) || is_contained(of_class->first, around->first)) {
        return false;
    }
    const std::vector<Itemset>& others = around->second.essentials;
    const bool has_it =
        std::ranges::find(others, essential) != others.end() && !is_contained(around->first, of_class->first);
    return !has_it ||
           std::pair(around->second.support, around_line) < std::pair(of_class->second.support, line);
}

const Itemset* key_within(NodeRef of_class, const Itemset& itemset) {
    const std::vector<Itemset>& essentials = of_class->second.essentials;
    if (essentials.empty()) {
        return is_contained(of_class->first, itemset) ? &of_class->first : nullptr;
    }
    const auto within = std::ranges::find_if(
        essentials, [&itemset](const Itemset& essential) { return is_contained(essential, itemset); });
    return within == essentials.end() ? nullptr : &*within;
}

void require_agreement(const ClassMap& classes, const std::vector<std::uint32_t>& lines,
                       const std::string& name, Count transactions, DifferenceSupports& supports) {
    require_supports_up_to(transactions, classes, lines, name);
    const std::vector<NodeRef> contradicted = supports.contradicted_classes();
    if (contradicted.empty()) {
        return;
    }
    const PlacedClass first = first_of(contradicted, classes, lines);
    const PlacedClass other = other_with_key_within(first.node, classes, lines);
    if (!is_contained(other.node->first, first.node->first)) {
        require_essential_elsewhere(first, other, classes, lines, name);
    }
    fail(first, other, name);
}

}  // namespace korv::tools
