// korv-mine as a process: estimates, limits of classes and time, and what is kept when they end the work.

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "tools/korv_mine_run.h"

namespace korv::test {
namespace {

const std::string headings = "min. support   frequent items   essential itemsets   classes   class file\n";

TEST_F(KorvMine, EstimatesUsualMinimumSupports) {
    put("a.dat", small_database);
    const Outcome outcome = mine({"a.dat", "--estimate"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.err,
              "input               fimi (guessed from whole numbers with blanks between them)\n"
              "transactions        5\n"
              "items               4\n");
    EXPECT_EQ(mine({"a.dat", "--estimate", "-q"}).err, "");
    // All items are in at least 20%, which is one transaction; half of them are in at least three.
    EXPECT_EQ(outcome.out, headings +
                               "     50% (3)                2                    2         2     16 bytes\n"
                               "     20% (1)                4                    5         5     52 bytes\n"
                               "     10% (1)                4                    5         5     52 bytes\n"
                               "      5% (1)                4                    5         5     52 bytes\n"
                               "      2% (1)                4                    5         5     52 bytes\n"
                               "      1% (1)                4                    5         5     52 bytes\n");
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, EstimatesTheMinimumSupportsThatAreGivenFromTheLargest) {
    put("a.dat", small_database);
    const Outcome outcome = mine({"a.dat", "--estimate", "-s", "1,60%", "--closure-items", "all"});
    EXPECT_EQ(outcome.ending, exited(0));
    EXPECT_EQ(outcome.out, headings +
                               "     60% (3)                2                    2         2     20 bytes\n"
                               "           1                4                    5         5     52 bytes\n");
}

TEST_F(KorvMine, ReportsAnEstimateThatCannotBeWritten) {
    put("a.dat", small_database);
    const Outcome full = shell("exec \"$0\" a.dat --estimate -q > /dev/full");
    EXPECT_EQ(full.ending, exited(1));
    EXPECT_EQ(full.err, "korv-mine: standard output: cannot be written: No space left on device\n");
    const Outcome closed = shell("exec \"$0\" a.dat --estimate -q >&-");
    EXPECT_EQ(closed.ending, exited(1));
    EXPECT_EQ(closed.err, "korv-mine: standard output: is closed or not open for writing\n");
}

TEST_F(KorvMine, RefusesAnEstimateWithWhatIsForClassFiles) {
    put("a.dat", small_database);
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"-o", "x"}, {"--partial"}, {"--max-seconds", "5"}}) {
        std::vector<std::string> arguments = {"a.dat", "--estimate"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const Outcome outcome = mine(arguments);
        EXPECT_NE(outcome.ending, exited(0)) << words[0];
        EXPECT_NE(outcome.err.find(" excludes "), std::string::npos) << outcome.err;
        EXPECT_EQ(files().size(), 1U) << words[0];
    }
}

TEST_F(KorvMine, StopsWhereThereWouldBeMoreClassesThanItMayFind) {
    put("a.csv", small_baskets);
    put("a.classes", "earlier");
    const Outcome outcome =
        mine({"a.csv", "--format", "basket", "-s", "1", "--max-classes", "4", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_TRUE(outcome.err.starts_with("korv-mine: there are more than 4 classes (--max-classes) when "))
        << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("; --partial keeps what is found until then\n")) << outcome.err;
    EXPECT_EQ(files(), (Files{{"a.csv", small_baskets}, {"a.classes", "earlier"}}));
    const Outcome enough = mine({"a.csv", "--format", "basket", "-s", "1", "--max-classes", "5", "-q"});
    EXPECT_EQ(enough.ending, exited(0));
    EXPECT_EQ(enough.out, small_basket_classes);
}

TEST_F(KorvMine, StopsWhenItsTimeIsOver) {
    put("a.dat", large_database());
    const Outcome outcome = mine({"a.dat", "-s", "1", "--max-seconds", "0.1", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_TRUE(outcome.err.starts_with("korv-mine: stopped after 0.10 s (--max-seconds), with "))
        << outcome.err;
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(KorvMine, DoesNotOfferToKeepPartWhereNothingWasFound) {
    put("a.dat", small_database);
    const Outcome outcome = mine({"a.dat", "-s", "1", "--max-seconds", "0", "--partial", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_TRUE(outcome.err.starts_with("korv-mine: stopped after 0.00 s (--max-seconds), with 0 classes"))
        << outcome.err;
    EXPECT_EQ(outcome.err.find("--partial"), std::string::npos) << outcome.err;
    EXPECT_EQ(files().size(), 1U);
}

/// A class as its file says it; the closure is the key.
struct WrittenClass {
    std::string support;
    std::set<std::string> essentials;
};

std::map<std::string, WrittenClass> classes_in(const std::string& file) {
    std::map<std::string, WrittenClass> classes;
    std::istringstream lines(file);
    for (std::string closure; std::getline(lines, closure, '\t');) {
        WrittenClass& each = classes[closure];
        std::string essentials;
        std::getline(lines, each.support, '\t');
        std::getline(lines, essentials);
        std::istringstream words(essentials);
        for (std::string essential; std::getline(words, essential, ',');) {
            each.essentials.insert(essential);
        }
    }
    return classes;
}

/// 12 items, each in about every third of 60 transactions.
std::string medium_database() {
    std::mt19937 random(2);
    std::string text;
    for (int transaction = 0; transaction < 60; ++transaction) {
        for (int item = 0; item < 12; ++item) {
            text += random() % 3 == 0 ? std::to_string(item) + ' ' : "";
        }
        text += '\n';
    }
    return text;
}

TEST_F(KorvMine, KeepsPartOfTheClassesWhenAskedTo) {
    put("a.dat", medium_database());
    ASSERT_EQ(mine({"a.dat", "-s", "1", "-q", "-o", "all"}).ending, exited(0));
    const std::map<std::string, WrittenClass> all = classes_in(files().at("all"));
    ASSERT_GT(all.size(), 100U);
    for (const std::size_t most : {std::size_t{1}, all.size() / 3, all.size() - 1}) {
        SCOPED_TRACE(most);
        const Outcome outcome = mine(
            {"a.dat", "-s", "1", "-q", "-o", "part", "--partial", "--max-classes", std::to_string(most)});
        EXPECT_EQ(outcome.ending, exited(3));
        EXPECT_EQ(outcome.err.find("--partial"), std::string::npos) << outcome.err;
        const std::map<std::string, WrittenClass> part = classes_in(files().at("part"));
        EXPECT_EQ(part.size(), most);
        for (const auto& [closure, found] : part) {
            ASSERT_TRUE(all.contains(closure)) << closure;
            EXPECT_EQ(found.support, all.at(closure).support) << closure;
            EXPECT_FALSE(found.essentials.empty()) << closure;
            EXPECT_TRUE(std::ranges::includes(all.at(closure).essentials, found.essentials)) << closure;
        }
    }
}

TEST_F(KorvMine, SaysThatPartOfTheClassesIsNotAll) {
    put("a.csv", small_baskets);
    const Outcome outcome = mine(
        {"a.csv", "--format", "basket", "-s", "1", "--max-classes", "2", "--partial", "-o", "a.classes"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_NE(outcome.err.find("\nclasses             2, which are not all\n"), std::string::npos)
        << outcome.err;
    EXPECT_EQ(files().at("a.names"), small_names);
}

TEST_F(KorvMine, FindsItemsetsWhoseItemsNeverMeetOnlyUpToASize) {
    put("a.dat", small_database);
    const Outcome refused = mine({"a.dat", "-s", "1", "--min-joint", "0", "-o", "a.classes"});
    EXPECT_EQ(refused.ending, exited(1));
    EXPECT_TRUE(
        refused.err.starts_with("korv-mine: --min-joint: found 0, which is less than --min-support 1; "
                                "expected --max-size, too"))
        << refused.err;
    EXPECT_EQ(files().size(), 1U);
    // 1 and 2, 1 and 4, 3 and 4 never meet; 1 is only where 3 is, and 4 where 2 is.
    EXPECT_EQ(mine({"a.dat", "-s", "1", "-q", "--min-joint", "0", "--max-size", "2"}).out,
              "1\t2\t 1,\n"
              "4\t2\t 4,\n"
              "1 3\t3\t 3,\n"
              "1 4\t4\t 1 4,\n"
              "2 4\t3\t 2,\n"
              "1 2 3 4\t5\t 1 2, 2 3, 3 4,\n");
}

}  // namespace
}  // namespace korv::test
