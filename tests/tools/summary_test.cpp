#include "mine/summary.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tools/random_database.h"

namespace korv::tools {
namespace {

const Database database = database_of({0b011, 0b001, 0b110});
const MinedClasses classes = mine(database, {.min_support = 1}).classes;

TEST(Summary, CountsAndSaysHowToGoOn) {
    const std::string text = summary(database, 2, classes, "data/groceries.classes", 1.234);
    EXPECT_TRUE(
        text.starts_with("transactions        3\n"
                         "items               3\n"
                         "frequent items      2\n"
                         "essential itemsets  4\n"
                         "classes             4\n"
                         "largest closure     3 items\n"
                         "time                1.23 s\n"
                         "peak memory         "))
        << text;
    EXPECT_TRUE(text.ends_with(" MiB\nTo derive rules: korv groceries data/groceries.classes 2 0.8 3\n"))
        << text;
}

/// The most memory that this process has had so far, in whole MiB. The system gives KiB.
long mebibytes_of_this_process() {
    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(Summary, GivesPeakMemoryInMebibytes) {
    const std::string label = "peak memory         ";
    const long before = mebibytes_of_this_process();
    const std::string text = summary(database, 2, classes, "-", 0.0);
    const long after = mebibytes_of_this_process();
    ASSERT_NE(text.find(label), std::string::npos);
    const long shown = std::stol(text.substr(text.find(label) + label.size()));
    EXPECT_GT(before, 0);
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, after);
}

TEST(Summary, QuotesPathsForTheShell) {
    EXPECT_TRUE(summary(database, 2, classes, "my t's.classes", 0.0)
                    .ends_with("korv 'my t'\\''s' 'my t'\\''s.classes' 2 0.8 3\n"));
}

TEST(Summary, LeavesTheNamesOpenForStandardOutput) {
    EXPECT_TRUE(summary(database, 2, classes, "-", 0.0).ends_with("korv NAME CLASSES 2 0.8 3\n"));
}

}  // namespace
}  // namespace korv::tools
