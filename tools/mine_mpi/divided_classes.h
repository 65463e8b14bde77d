#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "mine/essential_tree.h"
#include "mine/mined_classes.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// The classes of a run, divided among its processes: all that belongs to a closure is in one of them. Each
/// has about as many classes.
class DividedClasses {
public:
    /// `processes` must outlive it. `items`: those for which each rank of the tree stands. `most`: of all
    /// classes.
    DividedClasses(Processes& processes, const std::vector<Itemset>& items, std::size_t most);

    /// Puts an essential itemset and its closure aside for the process to whose classes it belongs.
    void put(EssentialTree::Node node, const EncodedClosure& closure);

    /// Adds all that was put in all processes: together so many itemsets, ascending in each process, and from
    /// process to process. Returns false, in all of them, when there would be too many classes; then only the
    /// itemsets before that class are added. All processes call it.
    bool add(const EssentialTree& tree, std::size_t itemsets);

    /// Puts the classes in order: see MinedClasses.
    void finish(EssentialTree tree) { own_.finish(std::move(tree)); }

    /// Of the classes of all processes; the same in all.
    const ClassFigures& figures() const { return figures_; }

    /// Those of this process.
    const MinedClasses& own() const { return own_; }

private:
    EssentialTree::Node end_of_room(const std::vector<std::string>& received) const;

    Processes& processes_;
    std::size_t most_;
    MinedClasses own_;
    ClassFigures figures_;
    std::vector<std::string> for_each_;  ///< by process: what was put aside for it
};

}  // namespace korv::tools
