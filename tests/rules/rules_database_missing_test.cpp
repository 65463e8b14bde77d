// Where the program is built without SQLite.

#include <gtest/gtest.h>

#include "rules/rules_database.h"
#include "tools/complaint.h"

namespace korv::tools {

namespace {

TEST(RulesDatabaseWithoutSqlite, SaysWhatToDo) {
    EXPECT_EQ(
        complaint_of([] { require_rules_database(); }),
        "--to sqlite: korv-rules was built without SQLite (libsqlite3-dev); expected another format, such "
        "as csv, which the shell of SQLite imports");
}

}  // namespace

}  // namespace korv::tools
