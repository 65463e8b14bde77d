#include "common/class_agreement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <set>

#include "common/class_file.h"
#include "engine/lattice_entries.h"
#include "io/class_record.h"
#include "support/bits.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// What contradicts each other in a class file.
std::string complaint(const std::string& text, Count transactions = 100) {
    const ClassFile file = read_class_file({"a.classes", text});
    const LatticeEntries entries = lattice_entries(file.classes);
    DifferenceSupports supports(entries);
    return complaint_of(
        [&] { require_agreement(file.classes, file.lines, file.name, transactions, supports); });
}

TEST(ClassAgreement, ClassesOfADatabaseAgree) {
    // 1 2, 2 and 3.
    EXPECT_EQ(complaint("1 2\t2\t 2,\n1\t1\t 1,\n3\t1\t 3,\n1 3\t2\t 1 3,\n1 2 3\t3\t 2 3,\n"), "");
}

TEST(ClassAgreement, SupportAboveTheTransactionsIsRefused) {
    EXPECT_EQ(complaint("2\t5\t 2,\n1\t6\t 1,\n3\t9\t 3,\n", 5),
              "a.classes:2:1: found the support 6; expected 5 at most, the number of transactions");
    EXPECT_EQ(complaint("2\t5\t 2,\n", 5), "");
}

TEST(ClassAgreement, ClosedItemsetWithinAnotherOfLessSupportIsRefused) {
    EXPECT_EQ(
        complaint("1\t6\t 1,\n1 2\t5\t 1 2,\n"),
        "a.classes:2:1: found the support 5; expected more than 6, the support of line 1, whose itemset "
        "\"1\" lies within the closed itemset");
}

TEST(ClassAgreement, ClosedItemsetWithinAnotherOfEqualSupportIsRefused) {
    EXPECT_EQ(
        complaint("1 2\t5\t 1 2,\n1\t5\t 1,\n"),
        "a.classes:1:1: found the support 5; expected more than 5, the support of line 2, whose itemset "
        "\"1\" lies within the closed itemset");
}

TEST(ClassAgreement, EssentialItemsetOfTwoClassesIsRefused) {
    EXPECT_EQ(
        complaint("1 2\t5\t 1,\n1 3\t5\t 1,\n"),
        "a.classes:2:1: found the essential itemset \"1\", which line 1 has, too; expected each essential "
        "itemset in one class");
    EXPECT_EQ(
        complaint("1 2\t6\t 1,\n1 3\t5\t 1,\n"),
        "a.classes:1:1: found the essential itemset \"1\", which line 2 has, too; expected each essential "
        "itemset in one class");
}

TEST(ClassAgreement, EssentialItemsetWithinAClassThatLacksItemsIsRefused) {
    EXPECT_EQ(
        complaint("1 3 4\t5\t 1 3,\n2\t1\t 2,\n1 3 2\t5\t 2 3,\n"),
        "a.classes:1:1: found the essential itemset \"1 3\"; expected classes around it that contain this "
        "one; line 3 does not");
}

TEST(ClassAgreement, LargerSupportOfAClassAroundIsAsItShouldBe) {
    EXPECT_EQ(complaint("1\t5\t 1,\n1 2\t6\t 1 2,\n1 2 3\t7\t 1 3, 2 3,\n"), "");
}

/// The keys of a class.
std::vector<Itemset> keys_of(const std::pair<const Itemset, data>& each) {
    return each.second.essentials.empty() ? std::vector<Itemset>{each.first} : each.second.essentials;
}

/// The lines of classes around another one of no smaller support, and of those of which a key lies within a
/// class of no larger support that does not contain theirs, by comparing each with each.
std::set<std::uint32_t> contradicted_lines(const ClassFile& file) {
    std::set<std::uint32_t> lines;
    auto line = file.lines.begin();
    for (const auto& each : file.classes) {
        auto other_line = file.lines.begin();
        for (const auto& other : file.classes) {
            const bool is_smaller = other.second.support < each.second.support;
            for (const Itemset& key : keys_of(other)) {
                if (&other != &each && !is_smaller && is_contained(key, each.first)) {
                    lines.insert(is_contained(other.first, each.first) ? *line : *other_line);
                }
            }
            ++other_line;
        }
        ++line;
    }
    return lines;
}

TEST(ClassAgreement, ContradictedLineIsFoundAmongRandomClasses) {
    std::mt19937 random(30);
    int contradictions = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        const std::set<test::Bits> family = test::random_family(5, 6, random);
        std::vector<test::Bits> order(family.begin(), family.end());
        std::ranges::shuffle(order, random);
        for (const test::Bits bits : order) {
            const auto size = static_cast<Count>(std::popcount(bits));
            const Count support = size * 4 + 1 + test::random_below(4, random) - (random() % 12 == 0 ? 4 : 0);
            std::vector<Itemset> essentials;
            for (test::Bits part = bits; part != 0; part = (part - 1) & bits) {
                const bool is_large = std::popcount(part) + 1 == std::popcount(bits);
                if (is_large && random() % 3 == 0) {
                    essentials.push_back(test::itemset_of(part));
                }
            }
            append_class_record(
                test::itemset_of(bits), support,
                essentials.empty() ? std::vector<Itemset>{test::itemset_of(bits)} : essentials, text);
        }
        const ClassFile file = read_class_file({"a.classes", text});
        const std::set<std::uint32_t> lines = contradicted_lines(file);

        const std::string found = complaint(text);

        ASSERT_EQ(found.empty(), lines.empty()) << text << found;
        if (!lines.empty()) {
            ++contradictions;
            const auto line = static_cast<std::uint32_t>(std::stoul(found.substr(found.find(':') + 1)));
            ASSERT_TRUE(lines.contains(line)) << text << found;
        }
    }
    EXPECT_GT(contradictions, 2000);
    EXPECT_LT(contradictions, 18000);
}

}  // namespace
}  // namespace korv::tools
