#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "common/finding_kind.h"
#include "engine/classes.h"
#include "engine/difference_supports.h"

namespace korv::tools {

/// What is found in a class, and what is expected instead, in words.
struct Disagreement {
    std::string found;
    std::string expected;
};

/// The words for a support above the number of transactions.
Disagreement support_above(Count support, Count transactions);

/// The words for a support that is not larger than that of another class, which has a key within this one.
Disagreement support_not_larger(Count support, Count other_support, std::size_t other_line,
                                const Itemset& key);

/// What is told of an essential itemset, in words.
struct EssentialDisagreement {
    FindingKind kind;
    Disagreement words;
};

/// What is wrong where a closed itemset around an essential itemset of another class does not contain the
/// closed itemset of that class: the essential itemset belongs to the class around it, which is smaller, or
/// both have it, or else an item is missing or too many. It is told of the line of `of_class`; `around_line`:
/// the line of `around`.
EssentialDisagreement essential_disagreement(const Itemset& essential, NodeRef of_class, NodeRef around,
                                             std::size_t around_line);

/// Whether a class around an essential itemset of `of_class` contradicts that: it does not contain the class.
/// Of two classes that have the essential itemset, of which neither contains the other, it is told of the one
/// of larger support, or else of the later one.
bool is_stranger(const Itemset& essential, NodeRef of_class, std::size_t line, NodeRef around,
                 std::size_t around_line);

/// The key of a class that lies within an itemset: the first essential itemset that does, or the closed
/// itemset of a class that stores none; nullptr when there is none.
const Itemset* key_within(NodeRef of_class, const Itemset& itemset);

/// Throws Error, which names the lines, where classes contradict each other, as those of a database never do:
/// where a support is above `transactions`, and where within a closed itemset lies a key of another class
/// whose support is not smaller. (A key of a class is one of its essential itemsets, or its closed itemset
/// where it has none. A transaction that meets the one itemset meets the other; so that class would have a
/// smaller support, or the same closure.)
///
/// `lines`: of the classes, in their order; `name`: of the class file; `supports`: made of the classes, whose
/// essential itemsets have items and lie within the closed itemsets. Takes less time than making these did.
void require_agreement(const ClassMap& classes, const std::vector<std::uint32_t>& lines,
                       const std::string& name, Count transactions, DifferenceSupports& supports);

}  // namespace korv::tools
