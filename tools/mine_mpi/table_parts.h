#pragma once

#include <string>
#include <vector>

#include "mine/database.h"
#include "mine/table.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// Puts the parts of a table together that the processes have read: the values of a column are those of all
/// processes, in the order in which they first occur, so that items and bins are those of the whole table.
/// Returns the lines of this process; names, and the report, are complete in the first process alone. The
/// first process holds the distinct cells of one column at a time, and the names. `part` is used up;
/// `options` are those of its columns, `file` is the first one. Throws Error in all processes, as
/// TableReader::finish does.
Database join_table_parts(Processes& processes, TableReader::Part part, const TableOptions& options,
                          const std::string& file, TableReport& report);

}  // namespace korv::tools
