#include "check/check_arguments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

CheckArguments parsed(std::vector<std::string> words) {
    words.insert(words.begin(), "korv-check");
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    return parse_check_arguments(static_cast<int>(pointers.size()), pointers.data());
}

TEST(CheckArguments, HaveTheDefaultsOfTheDocument) {
    const CheckArguments arguments = parsed({"a.classes"});

    EXPECT_EQ(arguments.path, "a.classes");
    EXPECT_FALSE(arguments.transactions.has_value());
    EXPECT_EQ(arguments.most, 20U);
    EXPECT_EQ(arguments.most_items, 100U);
    EXPECT_EQ(arguments.notes, NoteChoice::counted);
    EXPECT_EQ(arguments.format, FindingFormat::text);
    EXPECT_FALSE(arguments.sample.classes.has_value());
    EXPECT_EQ(arguments.sample.seed, 1U);
    EXPECT_FALSE(arguments.quiet);
}

TEST(CheckArguments, TakeWhatIsGiven) {
    const CheckArguments arguments =
        parsed({"-",     "--database", "a.csv",  "--separator", ";",       "--sample", "7",     "--seed",
                "3",     "--names",    "n",      "--notes",     "--large", "5",        "--fix", "b",
                "--max", "0",          "--json", "-q",          "--rules", "x",        "y"});

    EXPECT_EQ(arguments.path, "-");
    EXPECT_EQ(arguments.database, "a.csv");
    EXPECT_EQ(arguments.reading.separator, ';');
    EXPECT_EQ(arguments.sample.classes, 7U);
    EXPECT_EQ(arguments.sample.seed, 3U);
    EXPECT_EQ(arguments.names, "n");
    EXPECT_EQ(arguments.notes, NoteChoice::shown);
    EXPECT_EQ(arguments.most_items, 5U);
    EXPECT_EQ(arguments.mended, "b");
    EXPECT_EQ(arguments.most, 0U);
    EXPECT_EQ(arguments.format, FindingFormat::json);
    EXPECT_TRUE(arguments.quiet);
    EXPECT_EQ(arguments.rules, (std::vector<std::string>{"x", "y"}));
    EXPECT_EQ(parsed({"a", "-n", "9"}).transactions, 9U);
    EXPECT_EQ(parsed({"a", "--no-notes"}).notes, NoteChoice::none);
}

TEST(CheckArguments, EndTheProgramWith3WhereTheyAreWrong) {
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"a", "b"},
        {"a", "-n", "0"},
        {"a", "-n", "5", "--database", "x"},
        {"a", "--rules", "x"},
        {"a", "--sample", "3"},
        {"a", "--notes", "--no-notes"},
        {"a", "--max", "-1"},
        {"a", "--fix", ""},
    };
    for (const std::vector<std::string>& words : wrong) {
        EXPECT_EXIT(parsed(words), testing::ExitedWithCode(3), "see korv-check --help")
            << ::testing::PrintToString(words);
    }
}

TEST(CheckArguments, AreRefusedWhereOptionsOfReadingDoNotGoTogether) {
    EXPECT_NE(complaint_of([] { parsed({"a", "--database", "x", "--format", "fimi", "--bins", "4"}); }), "");
}

}  // namespace
}  // namespace korv::tools
