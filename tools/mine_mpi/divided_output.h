#pragma once

#include <functional>
#include <string_view>

#include "mine_mpi/divided_classes.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// Calls `write` in the first process with the records of all classes, in order, one or more at a time. Each
/// process makes those of its own classes, some MiB of all at a time. All processes call it, behind finish of
/// the classes. Where `write` throws Error, all processes throw SharedError.
void write_divided(Processes& processes, const DividedClasses& classes,
                   const std::function<void(std::string_view)>& write);

}  // namespace korv::tools
