#include "mine_mpi/level_stretches.h"

#include <algorithm>
#include <cstdint>

namespace korv::tools {

namespace {

using Node = EssentialTree::Node;

/// So much work, about a number that is exchanged for each, is in a round: enough for the time of a message
/// not to matter, and so little that progress is shown.
constexpr std::uint64_t work_of_round = std::uint64_t{1} << 19;
constexpr std::uint64_t least_work_of_stretch = std::uint64_t{1} << 12;

/// What is to be done for an itemset: it has at most one candidate for each sibling below it.
std::uint64_t work_of(const EssentialTree& tree, Node node, std::size_t words_of_closure) {
    constexpr std::uint64_t of_node = 64;
    const Node parent = tree.parent(node);
    return of_node + 2 * words_of_closure +
           (parent == EssentialTree::none ? 0 : node - tree.first_child(parent));
}

}  // namespace

std::vector<Node> stretches_of_level(const EssentialTree& tree, Node begin, Node end,
                                     std::size_t words_of_closure, std::size_t processes) {
    std::uint64_t all = 0;
    for (Node node = begin; node < end; ++node) {
        all += work_of(tree, node, words_of_closure);
    }
    const std::uint64_t of_round = std::max(work_of_round, least_work_of_stretch * processes);
    const std::uint64_t stretches = (all + of_round - 1) / of_round * processes;
    if (stretches == 0) {
        return {end};
    }
    const std::uint64_t of_stretch = (all + stretches - 1) / stretches;
    std::vector<Node> begins;
    std::uint64_t before = 0;
    for (Node node = begin; node < end; ++node) {
        while (begins.size() < stretches && before >= of_stretch * begins.size()) {
            begins.push_back(node);
        }
        before += work_of(tree, node, words_of_closure);
    }
    begins.resize(stretches + 1, end);
    return begins;
}

}  // namespace korv::tools
