#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "mine/database.h"
#include "mine/reading.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// What a process has of a database whose transactions are divided among several. Items have the numbers that
/// they would have if one process read all.
struct PartOfDatabase {
    /// The lines of this process, and the items in them. Names are those of all items, in the first process
    /// alone.
    Database database;
    Count transactions = 0;  ///< of the whole database
    /// All items of the whole database, ascending, and in how many transactions they are, in the first
    /// process alone.
    std::vector<Item> items;
    std::vector<Count> supports;
    ReadingReport report;  ///< complete in the first process
};

/// Reads transactions from files, each process a part of them; see read_database. Throws Error in all
/// processes: the first in the order of the inputs. What a report tells of columns that say the same, and of
/// a column of counts, is left out.
PartOfDatabase read_part(Processes& processes, const std::vector<std::string>& paths,
                         const ReadingOptions& options);

}  // namespace korv::tools
