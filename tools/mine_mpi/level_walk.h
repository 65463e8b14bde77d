#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "mine/essential_tree.h"
#include "mine/miner.h"
#include "mine_mpi/divided_classes.h"
#include "mine_mpi/part_items.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// What was done for the essential itemsets of one size.
struct LevelReport {
    std::string_view work = {};  ///< what was done instead, before the first or behind the last level
    std::size_t size = 0;
    std::uint64_t candidates = 0;  ///< that were counted
    std::uint64_t frequent = 0;    ///< of them, those together in enough transactions
    std::uint64_t essential = 0;   ///< of them, those that became nodes
    std::uint64_t bytes = 0;       ///< that all processes gave away
    double slowest = 0.0;          ///< processor seconds of the process that took longest, without waiting
    double fastest = 0.0;          ///< likewise, of the one that took the least
};

/// How far the walk by levels has come.
struct LevelProgress {
    std::size_t size = 0;         ///< of the itemsets that are being looked at; 0 while pairs are counted
    std::size_t itemsets = 0;     ///< of that size that are done; items, where pairs are counted
    std::size_t of_itemsets = 0;  ///< of that size, likewise
    ClassFigures found = {};      ///< so far
};

/// What the walk has found when all itemsets of a size are done: the itemsets of up to one item more, and the
/// closures of those of up to that size.
struct LevelState {
    std::size_t size = 0;            ///< 0 before the first level
    EssentialTree::Node closed = 0;  ///< so many nodes, from the first on, have closures
};

/// What is asked and told while the walk goes on, in the first process alone.
struct LevelEvents {
    /// Asked after each round; the walk ends when it returns false.
    std::function<bool(const LevelProgress&)> go_on = {};
    /// Told when a level is done.
    std::function<void(const LevelReport&)> level_done = {};
    /// Told behind that, where all of the level was done and has its classes. `closures`: as append_encoded
    /// writes them, of the nodes that were closed on this level, in their order; empty without
    /// keeps_closures.
    std::function<void(const EssentialTree& tree, const LevelState& state,
                       const std::vector<std::string>& closures)>
        level_kept = {};
    bool keeps_closures = false;
};

/// What an earlier run kept: see LevelEvents::level_kept. In the first process alone; of size 0 where there
/// is nothing.
struct KeptLevels {
    LevelState state;
    /// The nodes behind the root items.
    struct Node {
        EssentialTree::Node parent;
        Rank rank;
        Count joint;
        Count support;
    };
    std::vector<Node> nodes;
    std::vector<std::string> closures;  ///< of all closed nodes
};

/// What the walk by levels found.
struct LevelResult {
    DividedClasses classes;
    bool is_complete = true;  ///< whether these are all classes
};

/// Finds what mine() finds, in a database that is divided among processes.
///
/// The walk goes by levels, over the essential itemsets of one item, of two, and so on; all processes hold
/// the same tree of them. A level is divided into rounds, and a round among the processes. Each process finds
/// the candidates of its own itemsets; all count them in their lines, and tell which items these show to be
/// outside a closure; and the sums and unions go to the process that asked. It makes nodes of them, which all
/// add to their trees, and closures, each of which goes to the process that has its class.
///
/// A node of the tree takes 28 bytes in each process, besides the classes.
LevelResult mine_by_levels(Processes& processes, const PartItems& items, const MiningOptions& options,
                           const LevelEvents& events, KeptLevels kept = {});

}  // namespace korv::tools
