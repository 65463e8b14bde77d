// Damaged class files: what korv-check says becomes of them is what korv makes of them, and what changes the
// classes that korv reads is found.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "check/checked_classes.h"
#include "check/checked_lines.h"
#include "check/class_order_check.h"
#include "check/database_check.h"
#include "check/support_bounds_check.h"
#include "common/class_file.h"
#include "finding_words.h"
#include "io/class_loading.h"
#include "io/class_record.h"
#include "mine/miner.h"
#include "support/bits.h"
#include "support/files.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

/// The class file that korv-mine makes of a database.
std::string mined_text(const Database& database, const MiningOptions& options) {
    std::string text;
    mine(database, options).classes.for_each([&text](const MinedClass& each) {
        append_class_record(each.closure, each.support, each.essentials, text);
    });
    return text;
}

ClassMap read_by_korv(const std::string& text) {
    std::istringstream input(text);
    return read_classes(input);
}

/// Classes as text, for comparisons.
std::string printed(const ClassMap& classes) {
    std::string text;
    for (const auto& [closed_itemset, of_class] : classes) {
        text += ::testing::PrintToString(closed_itemset) + " " + std::to_string(of_class.support) + " " +
                ::testing::PrintToString(of_class.essentials) + "\n";
    }
    return text;
}

/// What korv stores, as korv-check says.
ClassMap predicted(const CheckedLines& lines) {
    Records stored;
    for (std::size_t i = 0; i < lines.records.size(); ++i) {
        if (lines.places[i].is_stored) {
            stored.push_back(lines.records[i]);
        }
    }
    return to_classes(stored);
}

/// A damage, and the lines that it touches.
struct Damage {
    std::string text;
    std::size_t first_line;
    std::size_t last_line;
};

std::size_t line_at(const std::string& text, std::size_t position) {
    return 1 + static_cast<std::size_t>(
                   std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(position), '\n'));
}

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
        lines.push_back(line + "\n");
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line;
    }
    return text;
}

Damage damaged_bytes(std::string text, std::mt19937& random) {
    constexpr std::string_view bytes = "0123456789 \t,\n\r-.x\xC3";
    const std::size_t position = random() % text.size();
    const std::size_t line = line_at(text, position);
    const char byte = bytes[random() % bytes.size()];
    switch (random() % 4) {
        case 0:
            text[position] = byte;
            break;
        case 1:
            text.erase(position, 1);
            break;
        case 2:
            text.insert(position, 1, byte);
            break;
        default:
            std::swap(text[position], text[std::min(position + 1, text.size() - 1)]);
            break;
    }
    return {text, line, line + 1};
}

Damage damaged_lines(const std::string& text, std::mt19937& random) {
    std::vector<std::string> lines = split(text);
    const std::size_t line = random() % lines.size();
    const auto here = lines.begin() + static_cast<std::ptrdiff_t>(line);
    switch (random() % 4) {
        case 0:
            std::swap(lines[line], lines[random() % lines.size()]);
            return {joined(lines), 1, lines.size()};
        case 1:
            lines.insert(here, lines[random() % lines.size()]);
            return {joined(lines), 1, lines.size()};
        case 2:
            lines.erase(here);
            return {joined(lines), line + 1, line + 1};
        default:
            return {text.substr(0, random() % text.size()), 1, lines.size()};
    }
}

bool is_valid(const std::string& text) {
    try {
        read_class_file({"", text});
        return true;
    } catch (const Error&) {
        return false;
    }
}

Findings all_findings(const std::string& text, CheckedClasses& checked) {
    Findings findings({"a.classes"}, 0, true);
    checked = check_class_file({"a.classes", text}, findings);
    check_order_of_classes(checked, KnownSupports(checked), std::nullopt, findings);
    check_support_bounds(KnownSupports(checked), findings);
    return findings;
}

/// Whether a finding names a line from `first` to `last`.
bool names_line(const Findings& findings, std::size_t first, std::size_t last) {
    const auto within = [&](std::size_t line) { return first <= line && line <= last; };
    const std::vector<Finding> all = findings.in_order();
    return std::ranges::any_of(
        all, [&](const Finding& each) { return within(each.place.line) || within(each.other_line); });
}

std::string random_mined_text(std::mt19937& random) {
    const Transactions transactions =
        random_transactions(2 + random() % 6, 12, 1 + test::random_below(3, random), random);
    return mined_text(database_of(transactions), {.min_support = 1 + test::random_below(2, random)});
}

/// Damages a file, and compares what is said with what korv reads. Returns whether something was found.
bool check_damage(const std::string& text, const Damage& damage) {
    Findings of_lines({"a.classes"}, 0, true);
    const CheckedLines lines = check_lines({"a.classes", damage.text}, of_lines);
    const ClassMap korv = read_by_korv(damage.text);
    EXPECT_EQ(printed(predicted(lines)), printed(korv)) << damage.text;

    CheckedClasses checked;
    const Findings findings = all_findings(damage.text, checked);
    EXPECT_EQ(checked.stored.classes, korv.size()) << damage.text;
    const bool is_found = names_line(findings, damage.first_line, damage.last_line);
    const bool is_changed = printed(korv) != printed(read_by_korv(text));
    // What is not found changes nothing, or leaves a file that is as valid as the one before.
    EXPECT_TRUE(is_found || !is_changed || is_valid(damage.text)) << damage.text;
    // What is no valid file is found.
    EXPECT_TRUE(is_found || is_valid(damage.text)) << damage.text;
    return is_found;
}

TEST(Mutation, OfRandomFilesIsToldAsKorvReadsIt) {
    std::mt19937 random(1);
    int found = 0;
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const std::string text = random_mined_text(random);
        if (text.empty()) {
            continue;
        }
        const Damage damage = random() % 3 == 0 ? damaged_lines(text, random) : damaged_bytes(text, random);
        found += check_damage(text, damage) ? 1 : 0;
    }
    EXPECT_GT(found, 10000);
}

TEST(Mutation, OfARealFileIsToldAsKorvReadsIt) {
    const std::string text = test::read_file(TITANIC_CLASSES);
    std::mt19937 random(2);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        check_damage(text, random() % 3 == 0 ? damaged_lines(text, random) : damaged_bytes(text, random));
    }
}

TEST(Mutation, OfSeveralPlacesIsToldAsKorvReadsIt) {
    std::mt19937 random(3);
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        std::string text = random_mined_text(random);
        for (std::size_t k = 0; k < 4 && !text.empty(); ++k) {
            text = damaged_bytes(text, random).text;
        }
        Findings findings({"a.classes"}, 0, true);
        const CheckedLines lines = check_lines({"a.classes", text}, findings);
        EXPECT_EQ(printed(predicted(lines)), printed(read_by_korv(text))) << text;
    }
}

/// Whether all that classes say is true of transactions: each by looking at each transaction.
bool is_true(const ClassMap& classes, const Transactions& transactions) {
    const auto set_of = [](const Itemset& itemset) {
        Set set = 0;
        for (const Item item : itemset) {
            set |= item >= 10 && item < 42 ? Set{1} << (item - 10) : Set{0};
        }
        return set;
    };
    const auto support = [&](Set set) {
        return std::ranges::count_if(transactions, [&](Set each) { return (each & set) != 0; });
    };
    Set of_file = 0;
    for (const auto& [closed_itemset, of_class] : classes) {
        of_file |= set_of(closed_itemset);
    }
    const auto is_class = [&](const auto& each) {
        const Set closed = set_of(each.first);
        const auto counted = support(closed);
        bool is_right = counted == each.second.support;
        for (Set item = 1; item != 0 && item <= of_file; item <<= 1U) {
            const bool is_item = (of_file & item) != 0;
            is_right = is_right && (!is_item || (closed & item) != 0 || support(closed | item) > counted);
            is_right = is_right && ((closed & item) == 0 || support(item) > 0);
        }
        std::vector<Itemset> keys = each.second.essentials;
        if (keys.empty()) {
            keys.push_back(each.first);
        }
        for (const Itemset& key : keys) {
            const Set set = set_of(key);
            is_right = is_right && support(set) == counted;
            for (Set item = 1; item != 0 && item <= set; item <<= 1U) {
                is_right = is_right && ((set & item) == 0 || support(set & ~item) < counted);
            }
        }
        return is_right && static_cast<std::size_t>(std::popcount(closed)) == each.first.size();
    };
    return std::ranges::all_of(classes, is_class);
}

TEST(Mutation, IsFoundInTheTransactionsUnlessAllThatIsLeftIsTrue) {
    std::mt19937 random(6);
    int untrue = 0;
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const Transactions transactions =
            random_transactions(2 + random() % 6, 12, 1 + test::random_below(3, random), random);
        const Database database = database_of(transactions);
        const std::string text = mined_text(database, {});
        if (text.empty()) {
            continue;
        }
        const Damage damage = random() % 3 == 0 ? damaged_lines(text, random) : damaged_bytes(text, random);
        CheckedClasses checked;
        Findings findings = all_findings(damage.text, checked);
        if (findings.count(Severity::error) > 0) {
            continue;
        }
        check_against_database(checked, database, "a.dat", {}, findings);
        const bool expected = !is_true(checked.classes, transactions);
        EXPECT_EQ(findings.count(Severity::error) > 0, expected) << damage.text;
        EXPECT_TRUE(!expected || names_line(findings, damage.first_line, damage.last_line)) << damage.text;
        untrue += expected ? 1 : 0;
    }
    EXPECT_GT(untrue, 500);
}

TEST(MinedFiles, HaveNoFinding) {
    std::mt19937 random(4);
    for (int i = 0; i < 10000 && !HasFailure(); ++i) {
        const Transactions transactions =
            random_transactions(1 + random() % 8, 30, 1 + test::random_below(4, random), random);
        const MiningOptions options = {.min_support = 1 + test::random_below(3, random),
                                       .min_joint = test::random_below(2, random),
                                       .closure_over_all = random() % 2 == 0};
        const std::string text = mined_text(database_of(transactions), options);
        if (text.empty()) {
            continue;
        }
        CheckedClasses checked;
        const Findings findings = all_findings(text, checked);
        EXPECT_EQ(findings.count(Severity::error) + findings.count(Severity::warning), 0U) << text;
    }
}

}  // namespace
}  // namespace korv::tools
