#include "rules/holdout_input.h"

#include <gtest/gtest.h>

#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

class HoldoutInput : public testing::Test {
protected:
    Database read(const std::string& text, const std::map<Item, std::string>& names,
                  const ReadingOptions& options = {}) const {
        const std::string path = (directory_.path() / "other.csv").string();
        test::write_file(path, text);
        return read_holdout(path, options, ItemNames(names));
    }

    std::string complaint(const std::string& text, const std::map<Item, std::string>& names) const {
        ReadingOptions options;
        options.format = Format::basket;
        options.separator = ',';
        const std::string message = complaint_of([&] { read(text, names, options); });
        return message.substr(message.find("other.csv"));
    }

private:
    test::TemporaryDirectory directory_;
};

using Lines = std::vector<Transaction>;

/// The lines that hold an item; none for one that there is not.
Lines lines_of(const Database& database, Item item) {
    for (const Database::ItemColumn& column : database.items) {
        if (column.item == item) {
            return column.transactions;
        }
    }
    return {};
}

TEST_F(HoldoutInput, KnowsItemsByTheirNames) {
    const Database database = read("beer,bread\nmilk\nbread\n", {{1, "bread"}, {2, "milk"}, {3, "salt"}});
    EXPECT_EQ(lines_of(database, 1), (Lines{0, 2}));
    EXPECT_EQ(lines_of(database, 2), (Lines{1}));
    EXPECT_EQ(lines_of(database, 3), Lines());
    EXPECT_EQ(lines_of(database, 4), (Lines{0}));  // beer, which is new
}

TEST_F(HoldoutInput, KnowsNumbersByThemselves) {
    const Database database = read("3 1\n3\n", {{1, "bread"}, {3, "salt"}});
    EXPECT_EQ(lines_of(database, 1), (Lines{0}));
    EXPECT_EQ(lines_of(database, 3), (Lines{0, 1}));
}

TEST_F(HoldoutInput, RefusesTransactionsOfOtherItems) {
    EXPECT_EQ(
        complaint("tea,rice\ntea,salt\n", {{1, "bread"}}),
        "other.csv: found no item of the input, but items such as \"tea\"; expected transactions of the "
        "same items");
    EXPECT_EQ(
        complaint("tea,rice\ntea,salt\n", {}),
        "other.csv: found no item of the input, but items such as \"tea\"; expected transactions of the "
        "same items");
}

/// A column that was cut into 7, 18 to 25, and 40.5 to 60, and another one.
const std::map<Item, std::string> ages = {
    {1, "age=7"}, {2, "age=18..25"}, {3, "age=40.5..60"}, {4, "sex=male"}, {5, "sex=female"}};

ReadingOptions as_table() {
    ReadingOptions options;
    options.format = Format::table;
    options.separator = ',';
    return options;
}

TEST_F(HoldoutInput, PutsNumbersIntoTheBinsOfTheInput) {
    const Database database =
        read("age,sex\n7.0,male\n18,male\n25,female\n20,male\n60,male\n41,male\n", ages, as_table());
    EXPECT_EQ(lines_of(database, 1), (Lines{0}));
    EXPECT_EQ(lines_of(database, 2), (Lines{1, 2, 3}));
    EXPECT_EQ(lines_of(database, 3), (Lines{4, 5}));
    EXPECT_EQ(lines_of(database, 4), (Lines{0, 1, 3, 4, 5}));
}

TEST_F(HoldoutInput, LeavesNumbersOutsideAllBinsInNone) {
    const Database database = read("age,sex\n6,male\n30,male\n61,male\n", ages, as_table());
    EXPECT_EQ(lines_of(database, 1), Lines());
    EXPECT_EQ(lines_of(database, 2), Lines());
    EXPECT_EQ(lines_of(database, 3), Lines());
}

TEST_F(HoldoutInput, DoesNotCutNumbersByThemselves) {
    // By themselves, 18 and 19 would be a bin, and 24 and 60.
    ReadingOptions options = as_table();
    options.table.bins = {{.column = "", .bins = 2}};
    const Database database = read("age,sex\n18,male\n19,male\n24,male\n60,male\n", ages, options);
    EXPECT_EQ(lines_of(database, 2), (Lines{0, 1, 2}));
    EXPECT_EQ(lines_of(database, 3), (Lines{3}));
}

TEST_F(HoldoutInput, CutsAtPointsAsTheInputWas) {
    ReadingOptions options = as_table();
    options.table.bins = {{.column = "age", .bins = 1, .points = {"18"}}};
    const Database database =
        read("age,sex\n18,male\n7,male\n", {{1, "age=..<18"}, {2, "age=18.."}}, options);
    EXPECT_EQ(lines_of(database, 1), (Lines{1}));
    EXPECT_EQ(lines_of(database, 2), (Lines{0}));
}

TEST_F(HoldoutInput, TakesNamesThatAreKnownAsTheyAre) {
    // Words that look like a bin are items of their own.
    const Database database =
        read("size,sex\n1..3,male\n2,male\n", {{1, "size=1..3"}, {2, "size=2"}}, as_table());
    EXPECT_EQ(lines_of(database, 1), (Lines{0}));
    EXPECT_EQ(lines_of(database, 2), (Lines{1}));
}

}  // namespace
}  // namespace korv::tools
