#include "rules/sqlite_database.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {

namespace {

class SqliteDatabaseFile : public ::testing::Test {
protected:
    SqliteDatabaseFile() { test::write_file(path(), ""); }

    std::string path() const { return (directory_.path() / "file").string(); }

    /// Expects that a condition holds: inserts it where only 1 is allowed.
    static void expect(const SqliteDatabase& database, const std::string& condition) {
        database.run("CREATE TABLE IF NOT EXISTS expected(holds CHECK(holds = 1))");
        EXPECT_NO_THROW(database.run("INSERT INTO expected SELECT coalesce((" + condition + "), 0)"))
            << condition;
    }

    test::TemporaryDirectory directory_;
};

TEST_F(SqliteDatabaseFile, HasTheValuesOfInsertedRows) {
    const SqliteDatabase database(path(), "rules.db");
    database.run("CREATE TABLE t(a, b, c, d, e)");
    SqliteStatement rows(database, insertion("t", 5));
    rows.insert_row(7U, std::string_view("it's \"é\""), 0.1, std::optional<int>(),
                    std::numeric_limits<double>::quiet_NaN());
    rows.insert_row(std::size_t{1} << 40U, std::string_view(""), std::numeric_limits<double>::infinity(),
                    std::optional(3), -1);
    expect(database, "SELECT count(*) = 2 FROM t");
    expect(database, "SELECT b = 'it''s \"é\"' AND c = 0.1 AND d IS NULL AND e IS NULL FROM t WHERE a = 7");
    expect(database, "SELECT b = '' AND c = 9e999 AND d = 3 AND e = -1 FROM t WHERE a = 1099511627776");
}

TEST_F(SqliteDatabaseFile, HasAllLinksAroundTheSizeOfABatch) {
    for (const std::int64_t links : {0, 1, 63, 64, 65, 128, 200}) {
        test::write_file(path(), "");
        const SqliteDatabase database(path(), "rules.db");
        database.run("CREATE TABLE t(a, b)");
        SqliteLinks rows(database, "t");
        for (std::int64_t i = 0; i < links; ++i) {
            rows.add(i, i * i);
        }
        rows.finish();
        expect(database, "SELECT count(*) = " + std::to_string(links) +
                             " AND count(DISTINCT a) = count(*) AND " + "total(b <> a * a) = 0 FROM t");
    }
}

TEST_F(SqliteDatabaseFile, SaysWhatCannotBeDone) {
    const SqliteDatabase database(path(), "rules.db");
    database.run("CREATE TABLE t(a PRIMARY KEY)");
    SqliteStatement rows(database, insertion("t", 1));
    rows.insert_row(1);
    EXPECT_EQ(complaint_of([&] { rows.insert_row(1); }),
              "rules.db: cannot be written: UNIQUE constraint failed: t.a");
    EXPECT_EQ(complaint_of([&] { const SqliteStatement missing(database, insertion("u", 1)); }),
              "rules.db: cannot be written: no such table: u");
}

TEST_F(SqliteDatabaseFile, IsNotMadeWhereThereIsNoFile) {
    EXPECT_EQ(complaint_of([&] { const SqliteDatabase database(path() + "/none", "rules.db"); }),
              "rules.db: cannot be written: unable to open database file");
}

TEST(Insertion, HasAPlaceForEachValue) {
    EXPECT_EQ(insertion("t", 1), "INSERT INTO t VALUES(?)");
    EXPECT_EQ(insertion("t", 3), "INSERT INTO t VALUES(?,?,?)");
    EXPECT_EQ(insertion("t", 2, 3), "INSERT INTO t VALUES(?,?),(?,?),(?,?)");
}

}  // namespace

}  // namespace korv::tools
