// The first fault that korv-rules meets in a class file is among those that korv-check tells, in the same
// words.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "check/checked_classes.h"
#include "check/class_order_check.h"
#include "common/class_agreement.h"
#include "common/class_file.h"
#include "engine/difference_supports.h"
#include "engine/lattice_entries.h"
#include "io/class_record.h"
#include "support/bits.h"
#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

constexpr Count transactions = 2201;

/// What korv-rules says of a text; empty where it is as it should be.
std::string complaint_of_rules(const std::string& text) {
    return complaint_of([&text] {
        const ClassFile file = read_class_file({"a.classes", text});
        const LatticeEntries entries = lattice_entries(file.classes);
        DifferenceSupports supports(entries);
        require_agreement(file.classes, file.lines, file.name, transactions, supports);
    });
}

/// Whether korv-check tells the same.
bool is_told(const std::string& complaint, const std::string& text) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    check_order_of_classes(checked, KnownSupports(checked), transactions, findings);
    const std::vector<Finding> all = findings.in_order();
    return std::ranges::any_of(all, [&complaint](const Finding& each) {
        return complaint == input_error("a.classes", each.place, each.found, each.expected).what();
    });
}

TEST(SameWords, AreSaidOfOneDamagedByte) {
    const std::string text = test::read_file(TITANIC_CLASSES);
    constexpr std::string_view bytes = "0123456789 \t,\n\rx";
    std::mt19937 random(1);
    int complaints = 0;
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        std::string damaged = text;
        damaged[random() % damaged.size()] = bytes[random() % bytes.size()];
        const std::string complaint = complaint_of_rules(damaged);
        if (!complaint.empty()) {
            ++complaints;
            EXPECT_TRUE(is_told(complaint, damaged)) << complaint;
        }
    }
    EXPECT_GT(complaints, 2000);
}

TEST(SameWords, AreSaidOfRandomClassesThatContradictEachOther) {
    std::mt19937 random(2);
    int complaints = 0;
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        const std::set<test::Bits> family = test::random_family(5, 6, random);
        std::vector<test::Bits> order(family.begin(), family.end());
        std::ranges::shuffle(order, random);
        std::string text;
        for (const test::Bits bits : order) {
            std::vector<Itemset> essentials;
            for (test::Bits part = (bits - 1) & bits; part != 0; part = (part - 1) & bits) {
                if (random() % 6 == 0) {
                    essentials.push_back(test::itemset_of(part));
                }
            }
            const Itemset closed_itemset = test::itemset_of(bits);
            const Count support =
                static_cast<Count>(closed_itemset.size()) * 2 + test::random_below(3, random);
            append_class_record(closed_itemset, support,
                                essentials.empty() ? std::vector<Itemset>{closed_itemset} : essentials, text);
        }
        const std::string complaint = complaint_of_rules(text);
        if (!complaint.empty()) {
            ++complaints;
            EXPECT_TRUE(is_told(complaint, text)) << text << complaint;
        }
    }
    EXPECT_GT(complaints, 500);
}

}  // namespace
}  // namespace korv::tools
