#pragma once

#include <cstddef>
#include <vector>

#include "mine/essential_tree.h"

namespace korv::tools {

/// Divides the itemsets of one size, the nodes from `begin` to `end` of a tree, into rounds, and each round
/// into one stretch for each process; all about as much work. Returns where each stretch begins, and the end:
/// rounds times `processes` stretches, of which some can be empty; none where there are no itemsets.
///
/// `words_of_closure`: what the closure of an itemset takes, in numbers of 64 bits.
std::vector<EssentialTree::Node> stretches_of_level(const EssentialTree& tree, EssentialTree::Node begin,
                                                    EssentialTree::Node end, std::size_t words_of_closure,
                                                    std::size_t processes);

}  // namespace korv::tools
