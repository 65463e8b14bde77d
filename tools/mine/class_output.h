#pragma once

#include "common/atomic_output.h"
#include "mine/arguments.h"
#include "mine/mined_classes.h"

namespace korv::tools {

/// Throws Error when an output would replace an input or the other output.
void require_distinct_files(const Arguments& arguments);

/// Writes a class file. Throws Error when it cannot be written.
void write_classes(const MinedClasses& classes, AtomicOutput& output);

}  // namespace korv::tools
