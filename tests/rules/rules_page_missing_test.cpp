// Where the program is built without zlib.

#include <gtest/gtest.h>

#include "rules/rules_page.h"
#include "tools/complaint.h"

namespace korv::tools {

namespace {

TEST(RulesPageWithoutZlib, SaysWhatToDo) {
    EXPECT_EQ(
        complaint_of([] { require_rules_page(); }),
        "--to html: korv-rules was built without zlib (zlib1g-dev); expected another format, such as csv");
}

}  // namespace

}  // namespace korv::tools
