#include "common/class_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "io/class_loading.h"
#include "io/class_record.h"
#include "support/bits.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

ClassFile read(const std::string& text) {
    return read_class_file({"a.classes", text});
}

/// What is wrong with a text.
std::string complaint(const std::string& text) {
    return complaint_of([&text] { read(text); });
}

TEST(ClassFile, ClassesAreInTheOrderOfTheirItemsWithTheirLines) {
    const ClassFile file = read("2 3\t7\t 2, 3,\n1\t4\t 1,\n1 2 3\t9\t 1 2, 1 3,\n");

    EXPECT_EQ(file.name, "a.classes");
    ASSERT_EQ(file.classes.size(), 3U);
    EXPECT_EQ(file.lines, (std::vector<std::uint32_t>{2, 3, 1}));
    EXPECT_EQ(file.classes.at({1}).support, 4U);
    EXPECT_TRUE(file.classes.at({1}).essentials.empty());
    EXPECT_EQ(file.classes.at({1, 2, 3}).support, 9U);
    EXPECT_EQ(file.classes.at({1, 2, 3}).essentials, (std::vector<Itemset>{{1, 2}, {1, 3}}));
    EXPECT_EQ(file.classes.at({2, 3}).essentials, (std::vector<Itemset>{{2}, {3}}));
}

TEST(ClassFile, ItemsMayStandInAnyOrderAndEssentialItemsetsKeepTheirs) {
    const ClassFile file = read("3 1 2\t5\t 3 2, 1,\n");

    EXPECT_EQ(file.classes.at({1, 2, 3}).essentials, (std::vector<Itemset>{{2, 3}, {1}}));
}

TEST(ClassFile, LeadingZerosAndTheLargestNumbersAreRead) {
    const ClassFile file = read("007 4294967295\t00000000000012\t 7,\n");

    ASSERT_EQ(file.classes.size(), 1U);
    EXPECT_EQ(file.classes.begin()->first, (Itemset{7, 4294967295}));
    EXPECT_EQ(file.classes.begin()->second.support, 12U);
}

struct Fault {
    std::string text;
    std::string complaint;  ///< behind the name of the file
};

class ClassFileFault : public testing::TestWithParam<Fault> {};

TEST_P(ClassFileFault, IsNamedWithItsPlace) {
    EXPECT_EQ(complaint(GetParam().text), "a.classes:" + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    OfForm, ClassFileFault,
    testing::Values(
        Fault{"",
              "1:1: found an empty file; expected classes: items, a tab, a support, a tab, essential "
              "itemsets"},
        Fault{"1\t4\t 1,\n\n", "2:1: found the end of the line; expected an item number"},
        Fault{"1\t4\t 1,\nx1\t", "2:1: found \"x1\"; expected an item number"},
        Fault{"1  2\t4\t 1,\n", "1:3: found a blank; expected an item number"},
        Fault{" 1\t4\t 1,\n", "1:1: found a blank; expected an item number"},
        Fault{"1 \t4\t 1,\n", "1:3: found a tab; expected an item number"},
        Fault{"1,2\t4\t 1,\n", "1:2: found a comma; expected a blank and another item, or a tab"},
        Fault{"1\n", "1:2: found a line without a tab; expected a tab before the support, and one behind it"},
        Fault{"1", "1:2: found the end of the file; expected a blank and another item, or a tab"},
        Fault{"-1\t4\t 1,\n", "1:1: found \"-1\"; expected an item number"},
        Fault{std::string("1\0\t4\t 1,\n", 9),
              "1:2: found \"\\x00\"; expected a blank and another item, or a tab"},
        Fault{"1\t\t4\t 1,\n", "1:3: found a tab; expected a support"},
        Fault{"1\t-4\t 1,\n", "1:3: found \"-4\"; expected a support"},
        Fault{"1\t4 \t 1,\n", "1:4: found a blank; expected a digit, or a tab"},
        Fault{"1\t4.5\t 1,\n", "1:4: found \".5\"; expected a digit, or a tab"},
        Fault{"1\t4\t1,\n", "1:5: found \"1\"; expected a blank and an essential itemset"},
        Fault{"1\t4\t\n", "1:5: found the end of the line; expected a blank and an essential itemset"},
        Fault{"1\t4\t  1,\n", "1:6: found a blank; expected an item number"},
        Fault{"1\t4\t 1\n", "1:7: found the end of the line; expected a blank and another item, or a comma"},
        Fault{"1 2\t4\t 1,,\n",
              "1:10: found a comma; expected a blank and another essential itemset, or the end of the line"},
        Fault{"1 2\t4\t 1,2,\n",
              "1:10: found \"2\"; expected a blank and another essential itemset, or the end of the line"},
        Fault{"1 2\t4\t 1, \n", "1:11: found the end of the line; expected an item number"},
        Fault{"1 2\t4\t ,\n", "1:8: found a comma; expected an item number"},
        Fault{"1\t4\t 1,\r\n",
              "1:8: found CR; expected lines that end with LF alone (tr -d '\\r' takes CR out)"},
        Fault{"1\t2\t 1,\r\r\n",
              "1:8: found CR; expected lines that end with LF alone (tr -d '\\r' takes CR out)"},
        Fault{"1\t2\t 1,\r2\t3\t 2,\r",
              "1:8: found CR; expected lines that end with LF (tr '\\r' '\\n' makes LF of CR)"},
        Fault{"1\r2\t2\t 1,\n", "1:2: found CR; expected a blank and another item, or a tab"},
        Fault{"1\t4\t 1,",
              "1:8: found the end of the file; expected an end of the line behind the last "
              "comma"}));

INSTANTIATE_TEST_SUITE_P(
    OfNumbers, ClassFileFault,
    testing::Values(
        Fault{"4294967296\t4\t 1,\n", "1:1: found \"4294967296\"; expected an item number below 4294967296"},
        Fault{"1 18446744073709551617\t4\t 1,\n",
              "1:3: found \"18446744073709551617\"; expected an item number below 4294967296"},
        Fault{"1\t99999999999\t 1,\n", "1:3: found \"99999999999\"; expected a support below 4294967296"},
        Fault{"1\t0\t 1,\n", "1:3: found a support of 0; expected 1 at least"}));

INSTANTIATE_TEST_SUITE_P(
    OfItemsets, ClassFileFault,
    testing::Values(
        Fault{"2 1 2\t4\t 1,\n", "1:5: found the item 2 again; expected each item of an itemset once"},
        Fault{"1 2 3\t4\t 3 3,\n", "1:12: found the item 3 again; expected each item of an itemset once"},
        Fault{"1 2\t4\t 1, 3,\n",
              "1:11: found an essential itemset with the item 3; expected items of the "
              "closed itemset alone"},
        Fault{"1 2\t4\t 1, 2, 1,\n", "1:14: found an essential itemset again; expected each of them once"},
        Fault{"1 2 3\t4\t 1 2, 2 1,\n", "1:15: found an essential itemset again; expected each of them once"},
        Fault{"1 2\t4\t 1, 1 2,\n",
              "1:11: found the closed itemset as one of several essential itemsets; "
              "expected smaller ones, or it alone"},
        Fault{"1 2\t4\t 2 1, 2,\n",
              "1:8: found the closed itemset as one of several essential itemsets; "
              "expected smaller ones, or it alone"}));

INSTANTIATE_TEST_SUITE_P(
    OfSeveralLines, ClassFileFault,
    testing::Values(Fault{"1 2\t4\t 1,\n3\t1\t 3,\n2 1\t4\t 1,\n1 2\t4\t 1,\n3\t1\t 3,\n",
                          "3:1: found the closed itemset of line 1 again; expected each closed itemset once"},
                    Fault{"3\t1\t 3,\n3\t1\t 3,\n?\n",
                          "2:1: found the closed itemset of line 1 again; expected each closed itemset once"},
                    Fault{"3\t1\t 3,\n?\n3\t1\t 3,\n", "2:1: found \"?\"; expected an item number"}));

TEST(ClassRecordReader, GoesOnBehindAFault) {
    const TextInput input = {"a.classes", "1\t0\t 1,\n2 3\t5\t 3,\n4\n6\t7\t 6,"};
    ClassRecordReader reader(input);

    EXPECT_EQ(complaint_of([&reader] { reader.next(); }),
              "a.classes:1:3: found a support of 0; expected 1 at least");
    ASSERT_TRUE(reader.next());
    EXPECT_EQ(reader.closed_itemset(), (Itemset{2, 3}));
    EXPECT_EQ(reader.support(), 5U);
    ASSERT_EQ(reader.essentials().size(), 1U);
    EXPECT_EQ(reader.essentials()[0][0], 3U);
    EXPECT_EQ(reader.line(), 2U);
    EXPECT_EQ(reader.line_begin(), 8U);
    EXPECT_EQ(
        complaint_of([&reader] { reader.next(); }),
        "a.classes:3:2: found a line without a tab; expected a tab before the support, and one behind it");
    EXPECT_EQ(complaint_of([&reader] { reader.next(); }),
              "a.classes:4:8: found the end of the file; expected an end of the line behind the last comma");
    EXPECT_FALSE(reader.next());
}

/// The text of some classes, in any order.
std::string random_text(std::mt19937& random) {
    const std::set<test::Bits> family = test::random_family(6, 12, random);
    std::vector<test::Bits> lines(family.begin(), family.end());
    std::ranges::shuffle(lines, random);
    std::string text;
    for (const test::Bits bits : lines) {
        const Itemset closed_itemset = test::itemset_of(bits);
        std::vector<Itemset> essentials;
        for (test::Bits part = (bits - 1) & bits; part != 0; part = (part - 1) & bits) {
            if (random() % 4 == 0) {
                essentials.push_back(test::itemset_of(part));
            }
        }
        if (essentials.empty()) {
            essentials.push_back(closed_itemset);
        }
        append_class_record(closed_itemset, 1 + test::random_below(100, random), essentials, text);
    }
    return text;
}

TEST(ClassFile, IsReadAsKorvReadsIt) {
    std::mt19937 random(20);
    for (int i = 0; i < 5000; ++i) {
        const std::string text = random_text(random);
        std::istringstream input(text);
        const ClassMap expected = read_classes(input);

        const ClassFile file = read(text);

        ASSERT_EQ(file.classes.size(), expected.size()) << text;
        auto line = file.lines.begin();
        for (const auto& [closed_itemset, of_class] : expected) {
            ASSERT_TRUE(file.classes.contains(closed_itemset)) << text;
            const data& found = file.classes.at(closed_itemset);
            ASSERT_EQ(found.support, of_class.support) << text;
            ASSERT_EQ(found.essentials, of_class.essentials) << text;
            // The line of the class begins with it.
            std::istringstream lines(text);
            std::string record;
            for (std::uint32_t number = 0; number < *line; ++number) {
                std::getline(lines, record);
            }
            std::string beginning;
            for (const Item item : closed_itemset) {
                beginning += (beginning.empty() ? "" : " ") + std::to_string(item);
            }
            ASSERT_TRUE(record.starts_with(beginning + '\t')) << text;
            ++line;
        }
    }
}

TEST(ClassFile, OneDamagedByteIsAFaultOfItsLineOrAnotherValidFile) {
    std::mt19937 random(21);
    constexpr std::string_view bytes = "0 \t,\n\rx";
    int faults = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text = random_text(random);
        const std::size_t position = random() % text.size();
        const auto line =
            1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(position), '\n');
        text[position] = bytes[random() % bytes.size()];
        const std::string found = complaint(text);
        if (found.empty()) {
            continue;
        }
        ++faults;
        // What is wrong is seen in this line, in the next one (where it took a line end away), or in a later
        // line with the same closed itemset.
        const auto at = std::stol(found.substr(found.find(':') + 1));
        const bool names_two_lines = found.find("found the closed itemset of line") != std::string::npos;
        ASSERT_TRUE(at == line || at == line + 1 || (names_two_lines && at > line)) << text << found;
    }
    EXPECT_GT(faults, 10000);
}

TEST(LooksLikeClassFile, SeesRecordsInTheFirstLines) {
    EXPECT_TRUE(looks_like_class_file("1 2\t5\t 1,\n"));
    EXPECT_TRUE(looks_like_class_file("1 2\t5\t 1,\r\n"));
    EXPECT_TRUE(looks_like_class_file("1 2\t5\t 1"));
    EXPECT_TRUE(looks_like_class_file("# classes\n1 2\t5\t 1,\n"));
    EXPECT_FALSE(looks_like_class_file(""));
    EXPECT_FALSE(looks_like_class_file("1 2 5\n3 4\n"));
    EXPECT_FALSE(looks_like_class_file("1 2\t5\n3 4\t6\n"));
    EXPECT_FALSE(looks_like_class_file("1\t5\t1\n"));
    EXPECT_FALSE(looks_like_class_file("bread,butter\n1 2\t5\t 1,\nmilk\n"));
}

}  // namespace
}  // namespace korv::tools
