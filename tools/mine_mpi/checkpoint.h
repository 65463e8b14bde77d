#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "mine/essential_tree.h"
#include "mine/miner.h"
#include "mine_mpi/level_walk.h"
#include "mine_mpi/part_items.h"

namespace korv::tools {

/// The directory in which the first process keeps what the walk by levels has found, so that another run can
/// go on with it: a file "head" that says of what, and a file "level-K" for each size K of itemsets that is
/// done. Each is there when it is complete.
///
/// A level takes 16 bytes for each itemset that it found, and for each that it closed its closure, in about
/// one byte an item.
class Checkpoint {
public:
    /// Begins a checkpoint in `directory`, which is made if it is not there; where `resumes`, goes on with
    /// the one that is there. `items`, `fingerprint` (of their transactions) and `options`: what is mined.
    /// Throws Error where there is a checkpoint but it is not to be gone on with, where there is none that
    /// could be, where it is of something else, and where it cannot be read or written.
    Checkpoint(std::string directory, bool resumes, const RankedItems& items, std::uint64_t fingerprint,
               const MiningOptions& options);

    /// What was kept; of size 0 where there is nothing. Call this once.
    KeptLevels take_kept() { return std::move(kept_); }

    /// Keeps one more level: see LevelEvents::level_kept. Throws Error when it cannot be written.
    void keep(const EssentialTree& tree, const LevelState& state, const std::vector<std::string>& closures);

    /// Removes the checkpoint: the work is done. The directory stays where anything else is in it.
    void remove();

private:
    std::string path_of_level(std::size_t size) const;
    bool read_level(std::size_t size);

    std::string directory_;
    std::string head_;
    std::string description_;  ///< what is in the head
    KeptLevels kept_;
    EssentialTree::Node roots_;
    EssentialTree::Node nodes_kept_;  ///< so many nodes of the tree are in files, or are root items
};

}  // namespace korv::tools
