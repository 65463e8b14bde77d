#pragma once

#include <chrono>
#include <string>

#include "mine_mpi/mpi_arguments.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// Exit statuses of a run that was begun.
enum class RunStatus {
    done = 0,
    failed = 1,
    stopped = 3,  ///< by a limit of classes or time
};

/// Reads and mines transactions, each process a part of them, and writes the class file and the names file,
/// or estimates, in the first process. `start`: when the program began. Messages go to standard error, from
/// the first process. Throws SharedError in all processes where they can end together, and any other
/// exception in a process that cannot go on alone.
RunStatus mine_in_parts(Processes& processes, const MpiArguments& arguments,
                        std::chrono::steady_clock::time_point start);

/// A message of the program, on standard error.
void say(const std::string& message);

}  // namespace korv::tools
