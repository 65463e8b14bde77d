// Where the programs are built without zlib.

#include <gtest/gtest.h>

#include "common/gzip.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

TEST(GunzipWithoutZlib, SaysWhatToDo) {
    const auto nothing = [](char*, std::size_t) { return std::size_t{0}; };
    EXPECT_EQ(complaint_of([&] { gunzip(nothing, "\x1F\x8B", "a.gz"); }),
              "a.gz: is compressed, and korv_tools_tests was built without zlib; try zcat FILE | "
              "korv_tools_tests -");
}

}  // namespace
}  // namespace korv::tools
