#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "mine/mined_classes.h"

namespace korv::tools {

/// The records in a class file of the classes from position `begin` up to `end`, with their keys, as a
/// process tells them another one.
std::string batch_of(const MinedClasses& classes, std::size_t begin, std::size_t end);

/// Calls `write` with each record of some batches, in the order of their keys.
void write_merged(const std::vector<std::string>& batches,
                  const std::function<void(std::string_view)>& write);

}  // namespace korv::tools
