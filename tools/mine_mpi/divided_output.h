#pragma once

#include <functional>
#include <string_view>

#include "mine_mpi/divided_classes.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// Calls `write` in the first process with the record of each class, in order. Each process makes those of
/// its own classes, about as many MiB at a time as there are processes. All processes call it, behind finish
/// of the classes. Where `write` throws Error, all processes throw SharedError.
void write_divided(Processes& processes, const DividedClasses& classes,
                   const std::function<void(std::string_view)>& write);

}  // namespace korv::tools
