#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "mine/mined_classes.h"

namespace korv::tools {

/// For the messages of failed expectations.
inline void PrintTo(const MinedClass& each, std::ostream* out) {
    *out << testing::PrintToString(each.closure) << " of support " << each.support << " by "
         << testing::PrintToString(each.essentials);
}

/// All classes, in order.
inline std::vector<MinedClass> list_of(const MinedClasses& mined) {
    std::vector<MinedClass> list;
    mined.for_each([&list](const MinedClass& each) { list.push_back(each); });
    return list;
}

}  // namespace korv::tools
