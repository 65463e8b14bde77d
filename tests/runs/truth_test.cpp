// Counts the rules of small random databases again, in the transactions themselves.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "app/globals.h"
#include "app/lattice.h"
#include "support/files.h"
#include "support/rule_file.h"

namespace korv::test {
namespace {

constexpr std::uint64_t seed = 20240229;
constexpr Item most_items = 7;
constexpr std::uint64_t most_transactions = 25;

// Databases and their classes.

/// Items as bits: bit i is item i + 1.
using Bits = std::uint32_t;

/// The items of each transaction.
using Transactions = std::vector<Bits>;

constexpr Bits bit(Item item) {
    return Bits{1} << (item - 1);
}

Bits bits(const Itemset& itemset) {
    Bits held = 0;
    for (const Item item : itemset) {
        held |= bit(item);
    }
    return held;
}

Itemset items(Bits held) {
    Itemset itemset;
    for (Item item = 1; item <= most_items; ++item) {
        if ((held & bit(item)) != 0) {
            itemset.push_back(item);
        }
    }
    return itemset;
}

Bits all_items(const Transactions& transactions) {
    Bits all = 0;
    for (const Bits held : transactions) {
        all |= held;
    }
    return all;
}

/// How many transactions hold an item of `itemset`.
Count disjunctive_support(Bits itemset, const Transactions& transactions) {
    return static_cast<Count>(
        std::ranges::count_if(transactions, [itemset](Bits held) { return (held & itemset) != 0; }));
}

/// The items whose every transaction holds an item of `itemset`.
Bits closure(Bits itemset, const Transactions& transactions) {
    Bits closed = all_items(transactions);
    for (const Bits held : transactions) {
        if ((held & itemset) == 0) {
            closed &= ~held;
        }
    }
    return closed;
}

/// Whether without any one of its items the itemset has less support.
bool is_essential(Bits itemset, const Transactions& transactions) {
    const Count support = disjunctive_support(itemset, transactions);
    return std::ranges::none_of(items(itemset), [&](Item item) {
        return disjunctive_support(itemset & ~bit(item), transactions) == support;
    });
}

struct Class {
    Count support = 0;
    std::vector<Bits> essentials;
};

/// The classes of a database by closed itemset, found by trying every itemset.
std::map<Bits, Class> mine(const Transactions& transactions) {
    std::map<Bits, Class> classes;
    for (Bits itemset = 1; itemset < bit(most_items + 1); ++itemset) {
        if ((itemset & ~all_items(transactions)) == 0 && is_essential(itemset, transactions)) {
            Class& of_itemset = classes[closure(itemset, transactions)];
            of_itemset.support = disjunctive_support(itemset, transactions);
            of_itemset.essentials.push_back(itemset);
        }
    }
    return classes;
}

std::string words(Bits held) {
    std::ostringstream text;
    const char* before = "";
    for (const Item item : items(held)) {
        text << before << item;
        before = " ";
    }
    return text.str();
}

/// Chooses essential itemsets by chance, but always the same ones.
struct Choice {
    std::uint64_t tenths = 10;  ///< how many of them in ten
    std::uint64_t variant = 0;

    bool takes(Bits itemset) const {
        // Any odd 64-bit number without a pattern scatters the itemsets well enough.
        const std::uint64_t scattered = (variant * 131 + itemset) * 0x9E3779B97F4A7C15U;
        return (scattered >> 32) % 10 < tenths;
    }
};

/// The classes that have chosen essential itemsets, with these alone. What such a file leaves open, the rules
/// say in intervals: with all classes every support can be found.
std::string class_file(const Transactions& transactions, const Choice& choice) {
    std::ostringstream text;
    for (const auto& [closed, of_closed] : mine(transactions)) {
        std::ostringstream essentials;
        for (const Bits essential : of_closed.essentials) {
            if (choice.takes(essential)) {
                essentials << ' ' << words(essential) << ',';
            }
        }
        if (!essentials.str().empty()) {
            text << words(closed) << '\t' << of_closed.support << '\t' << essentials.str() << '\n';
        }
    }
    return text.str();
}

TEST(Mining, FindsClosuresSupportsAndEssentials) {
    // {1 2} {2} {}: all transactions of 1 hold 2, so 1 is in the closure of {2}.
    EXPECT_EQ(class_file({0b11, 0b10, 0b00}, {}), "1\t1\t 1,\n1 2\t2\t 2,\n");
    // {1} {1 2} {2} {2}: both items occur without the other.
    EXPECT_EQ(class_file({0b01, 0b11, 0b10, 0b10}, {}), "1\t2\t 1,\n2\t3\t 2,\n1 2\t4\t 1 2,\n");
    // {1 2} {1 3} {2 3}: any two items are met by every transaction, so all three are their closure.
    EXPECT_EQ(class_file({0b011, 0b101, 0b110}, {}),
              "1\t2\t 1,\n2\t2\t 2,\n3\t2\t 3,\n1 2 3\t3\t 1 2, 1 3, 2 3,\n");
}

// The rules of a database.

struct Thresholds {
    Count minsupp = 0;
    double minconf = 0.0;
};

/// How the rules of a database are made.
struct Settings {
    Choice choice;
    Thresholds thresholds;
};

enum class RuleFile : std::size_t { intra_exact, intra_approx, inter_exact, inter_approx };

constexpr std::array all_rule_files = {RuleFile::intra_exact, RuleFile::intra_approx, RuleFile::inter_exact,
                                       RuleFile::inter_approx};

constexpr std::array<const char*, all_rule_files.size()> rule_file_names = {"intra_exact", "intra_approx",
                                                                            "inter_exact", "inter_approx"};

/// The texts of the four rule files.
using RuleTexts = std::array<std::string, all_rule_files.size()>;

/// The program's rules. The class file must not be empty.
RuleTexts derive(const Transactions& transactions, const Settings& settings) {
    static const std::array names = {memory_file(), memory_file(), memory_file(), memory_file()};
    S1 = names[0];
    S2 = names[1];
    S3 = names[2];
    S4 = names[3];
    S5 = "/dev/null";
    S6 = "/dev/null";
    nbrtransaction = static_cast<Count>(transactions.size());
    std::istringstream input(class_file(transactions, settings.choice));
    {
        Lattice lattice(input, settings.thresholds.minconf, settings.thresholds.minsupp);
        lattice.Load_DCI();
        lattice.Load_Hash_table();
        lattice.build_lattice();
        lattice.index_supports();
        lattice.Output_Rules();
    }
    return {read_file(names[0]), read_file(names[1]), read_file(names[2]), read_file(names[3])};
}

// Record types.

enum class Shape {
    support,  ///< confidence 1
    support_confidence,
    intervals,  ///< of support and of confidence
    support_confidence_interval,
    support_interval,  ///< confidence 1
};

constexpr Mode plain = Mode::disjunction;
constexpr Mode negated = Mode::negation;

struct RecordType {
    RuleFile file;
    Shape shape;
    Mode premise;
    Mode conclusion;

    bool operator==(const RecordType&) const = default;
    bool operator<(const RecordType& other) const {
        return std::tie(file, shape, premise, conclusion) <
               std::tie(other.file, other.shape, other.premise, other.conclusion);
    }
};

/// The record types there are. E is an essential itemset of a class, D the rest of it; between nodes, B is a
/// closed itemset or an essential itemset of one, and D the rest of a larger closed itemset.
const std::vector<RecordType> record_types = {
    {RuleFile::intra_exact, Shape::support, plain, plain},           // D-->E, E-->D
    {RuleFile::intra_exact, Shape::support, negated, negated},       // not(E)-->not(D), not(D)-->not(E)
    {RuleFile::intra_exact, Shape::support, negated, plain},         // not(D)-->E
    {RuleFile::intra_exact, Shape::support_interval, plain, plain},  // D-->E

    {RuleFile::intra_approx, Shape::support_confidence, plain, plain},               // E-->D
    {RuleFile::intra_approx, Shape::support_confidence, negated, negated},           // not(D)-->not(E)
    {RuleFile::intra_approx, Shape::support_confidence, plain, negated},             // E-->not(D), D-->not(E)
    {RuleFile::intra_approx, Shape::support_confidence, negated, plain},             // not(D)-->E, not(E)-->D
    {RuleFile::intra_approx, Shape::intervals, plain, plain},                        // E-->D
    {RuleFile::intra_approx, Shape::support_confidence_interval, negated, negated},  // not(D)-->not(E)
    {RuleFile::intra_approx, Shape::intervals, plain, negated},                      // E-->not(D)
    {RuleFile::intra_approx, Shape::intervals, negated, plain},                      // not(D)-->E

    {RuleFile::inter_exact, Shape::support, plain, plain},      // B-->D
    {RuleFile::inter_exact, Shape::support, negated, negated},  // not(D)-->not(B)
    {RuleFile::inter_exact, Shape::support, plain, negated},    // B-->not(D), D-->not(B)
    {RuleFile::inter_exact, Shape::support, negated, plain},    // not(D)-->B, not(B)-->D

    {RuleFile::inter_approx, Shape::support_confidence, plain, plain},  // D-->B, B-->D
    {RuleFile::inter_approx, Shape::support_confidence, negated,
     negated},                                                            // not(B)-->not(D), not(D)-->not(B)
    {RuleFile::inter_approx, Shape::support_confidence, plain, negated},  // B-->not(D), D-->not(B)
    {RuleFile::inter_approx, Shape::support_confidence, negated, plain},  // not(D)-->B, not(B)-->D
    {RuleFile::inter_approx, Shape::intervals, plain, plain},             // D-->B, B-->D
    {RuleFile::inter_approx, Shape::support_confidence_interval, negated, negated},  // not(D)-->not(B)
    {RuleFile::inter_approx, Shape::intervals, plain, negated},                      // B-->not(D)
    {RuleFile::inter_approx, Shape::intervals, negated, plain},                      // not(D)-->B
    {RuleFile::inter_approx, Shape::support_confidence_interval, plain, negated},    // D-->not(B)
};

/// The only confidence interval that need not hold the confidence: both of its ends divide the lower end of
/// the support.
constexpr RecordType without_upper_bound = {RuleFile::inter_approx, Shape::intervals, negated, plain};

Shape shape_of(const ReadRule& rule) {
    if (!rule.confidence) {
        return rule.support.interval ? Shape::support_interval : Shape::support;
    }
    if (!rule.confidence->interval) {
        return Shape::support_confidence;
    }
    return rule.support.interval ? Shape::intervals : Shape::support_confidence_interval;
}

RecordType type_of(const ReadRule& rule, RuleFile file) {
    return {file, shape_of(rule), rule.premise.mode, rule.conclusion.mode};
}

std::ostream& operator<<(std::ostream& out, const RecordType& type) {
    return out << rule_file_names[static_cast<std::size_t>(type.file)] << " shape "
               << static_cast<int>(type.shape) << ' ' << static_cast<char>(type.premise) << "-->"
               << static_cast<char>(type.conclusion);
}

// Counting again.

/// A rule in the transactions.
struct Counted {
    Count premise = 0;  ///< transactions for which the premise is true
    Count both = 0;     ///< and the conclusion as well
};

bool is_true(const ReadSide& side, Bits held) {
    const bool holds_one = (held & bits(side.itemset)) != 0;
    return side.mode == Mode::disjunction ? holds_one : !holds_one;
}

Counted count(const ReadRule& rule, const Transactions& transactions) {
    Counted counted;
    for (const Bits held : transactions) {
        if (is_true(rule.premise, held)) {
            ++counted.premise;
            counted.both += is_true(rule.conclusion, held) ? 1 : 0;
        }
    }
    return counted;
}

double quotient(Count numerator, Count denominator) {
    return static_cast<double>(numerator) / static_cast<double>(denominator);
}

std::string printed(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g", value);
    return text.data();
}

double number(std::string_view text) {
    return std::stod(std::string(text));
}

/// What is wrong with the support; nothing: empty.
std::string complaint_about_support(const ReadRule& rule, const Counted& counted) {
    if (rule.support.low <= counted.both && counted.both <= rule.support.high) {
        return "";
    }
    return "the support is " + std::to_string(counted.both);
}

/// What is wrong with a record that says nothing of its confidence.
std::string complaint_about_confidence_1(const Counted& counted) {
    return counted.both == counted.premise ? "" : "the confidence is not 1";
}

std::string complaint_about_single_confidence(const ReadRule& rule, const Counted& counted) {
    if (counted.premise == 0) {
        // Only a pair of rules that are true nowhere, at thresholds of zero.
        return rule.confidence->low == "0" ? "" : "the premise is true nowhere";
    }
    if (counted.both == counted.premise) {
        return "the confidence is 1, and the rule not exact";
    }
    const std::string confidence = printed(quotient(counted.both, counted.premise));
    return rule.confidence->low == confidence ? "" : "the confidence is " + confidence;
}

std::string complaint_about_confidence_interval(const ReadRule& rule, const Counted& counted,
                                                bool has_upper_bound) {
    // Rounding keeps the order, so the digits can be compared.
    const std::string confidence = printed(quotient(counted.both, counted.premise));
    if (counted.premise != 0 && number(rule.confidence->low) <= number(confidence) &&
        (!has_upper_bound || number(confidence) <= number(rule.confidence->high))) {
        return "";
    }
    return "the confidence is " + confidence;
}

/// not(D)-->B, where the support of D is known to lie between lo and hi, prints LOW / (N - hi), at most 1, as
/// the upper end of its confidence, where LOW is the lower end of its support.
std::string complaint_about_missing_upper_bound(const ReadRule& rule, const Transactions& transactions) {
    const Bits both_sides = bits(rule.premise.itemset) | bits(rule.conclusion.itemset);
    const Count hi = disjunctive_support(both_sides, transactions) - rule.support.low;
    const auto N = static_cast<Count>(transactions.size());
    const std::string upper = printed(std::min(1.0, quotient(rule.support.low, N - hi)));
    return rule.confidence->high == upper ? "" : "the upper end is " + upper;
}

std::string complaint_about_confidence(const ReadRule& rule, RuleFile file, const Counted& counted) {
    if (!rule.confidence) {
        return complaint_about_confidence_1(counted);
    }
    if (!rule.confidence->interval) {
        return complaint_about_single_confidence(rule, counted);
    }
    return complaint_about_confidence_interval(rule, counted, type_of(rule, file) != without_upper_bound);
}

std::string complaint_about_thresholds(const ReadRule& rule, const Thresholds& thresholds) {
    if (rule.support.low < thresholds.minsupp) {
        return "the support is below the minimum";
    }
    if (rule.confidence && number(rule.confidence->low) < thresholds.minconf) {
        return "the confidence is below the minimum";
    }
    return "";
}

std::string complaint_about(const ReadRule& rule, RuleFile file, const Transactions& transactions,
                            const Thresholds& thresholds) {
    const Counted counted = count(rule, transactions);
    std::string complaint = complaint_about_support(rule, counted);
    if (complaint.empty()) {
        complaint = complaint_about_confidence(rule, file, counted);
    }
    if (complaint.empty() && type_of(rule, file) == without_upper_bound) {
        complaint = complaint_about_missing_upper_bound(rule, transactions);
    }
    return complaint.empty() ? complaint_about_thresholds(rule, thresholds) : complaint;
}

/// A record of a rule file, its separator left out, in the database {1} {1 2} {2} {2} {}.
struct Judged {
    RuleFile file;
    const char* record;
    bool refused;
};

class Judgement : public ::testing::TestWithParam<Judged> {};

TEST_P(Judgement, RefusesWhatIsNotSo) {
    const std::string record = GetParam().record;
    const bool has_confidence = record.find("confiance") != std::string::npos;
    const std::string text =
        "\t\t\t******************************************\n\t\t\tT\n"
        "\t\t\t******************************************\n" +
        record + (has_confidence ? "---------------------------\n" : "");
    const ReadRuleFile read = read_rule_file(text);
    const std::string complaint =
        complaint_about(read.rules.at(0), GetParam().file, {0b01, 0b11, 0b10, 0b10, 0b00}, {1, 0.3});
    EXPECT_EQ(!complaint.empty(), GetParam().refused) << complaint << "\n" << record;
}

INSTANTIATE_TEST_SUITE_P(
    Truth, Judgement,
    ::testing::Values(
        // Of 1-->2 the premise is true in two transactions, and both sides in one.
        Judged{RuleFile::intra_approx, "1-->2\nsupport:1\n\nconfiance:0.5\n", false},
        Judged{RuleFile::intra_approx, "1-->2\nsupport:2\n\nconfiance:0.5\n", true},
        Judged{RuleFile::intra_approx, "1-->2\nsupport:1\n\nconfiance:0.50\n", true},
        Judged{RuleFile::intra_exact, "1-->2\nsupport:1\n\n", true},
        // Of 2-->1 in three, and both sides in one.
        Judged{RuleFile::intra_approx, "2-->1\nsupport:1\n\nconfiance:0.333333\n", false},
        Judged{RuleFile::intra_approx, "2-->1\nsupport:1\n\nconfiance:0.33333\n", true},
        Judged{RuleFile::intra_approx, "2-->1\n0< support <1\n0.3< confiance <1\n", true},
        Judged{RuleFile::intra_approx, "2-->1\n1< support <1\n0.25< confiance <1\n", true},
        Judged{RuleFile::intra_approx, "2-->1\n1< support <1\n0.3< confiance <0.333333\n", false},
        Judged{RuleFile::intra_approx, "2-->1\n1< support <1\n0.3< confiance <0.333332\n", true},
        Judged{RuleFile::intra_approx, "2-->1\n1< support <1\n0.333334< confiance <1\n", true},
        Judged{RuleFile::intra_approx, "2-->1\n2< support <3\n0.3< confiance <1\n", true},
        // 1 v 2 is true wherever 1 is.
        Judged{RuleFile::intra_exact, "1-->1 v 2\nsupport:2\n\n", false},
        Judged{RuleFile::intra_exact, "1-->1 v 2\n2< support <3\n", false},
        Judged{RuleFile::intra_approx, "1-->1 v 2\nsupport:2\n\nconfiance:1\n", true},
        // Of not(1)-->2 the premise is true in three, and both sides in two; 1 v 2 is true in four. A lower
        // end of 1 means that 1 is true in at most three, so not(1) in at least two of the five.
        Judged{RuleFile::inter_approx, "not(1)-->2\n1< support <3\n0.3< confiance <0.5\n", false},
        Judged{RuleFile::inter_approx, "not(1)-->2\n1< support <3\n0.3< confiance <1\n", true},
        Judged{RuleFile::intra_approx, "not(1)-->2\n1< support <3\n0.3< confiance <0.5\n", true},
        Judged{RuleFile::inter_approx, "not(1)-->2\n1< support <3\n0.7< confiance <0.5\n", true},
        Judged{RuleFile::intra_approx, "not(1)-->2\nsupport:2\n\nconfiance:0.666667\n", false}));

// Random databases.

/// What is wrong with the rules of a database; nothing: empty.
using Complaint = std::function<std::string(const Transactions&)>;

/// The databases that are smaller by a transaction, or by an item in one or in all transactions.
std::vector<Transactions> smaller_databases(const Transactions& transactions) {
    std::vector<Transactions> smaller;
    for (std::size_t i = 0; i < transactions.size(); ++i) {
        smaller.push_back(transactions);
        smaller.back().erase(smaller.back().begin() + static_cast<std::ptrdiff_t>(i));
    }
    for (const Item item : items(all_items(transactions))) {
        smaller.push_back(transactions);
        std::ranges::for_each(smaller.back(), [item](Bits& held) { held &= ~bit(item); });
    }
    for (std::size_t i = 0; i < transactions.size(); ++i) {
        for (const Item item : items(transactions[i])) {
            smaller.push_back(transactions);
            smaller.back()[i] &= ~bit(item);
        }
    }
    return smaller;
}

/// A database with a complaint that none of the smaller databases has.
Transactions shrink(Transactions transactions, const Complaint& complaint) {
    for (;;) {
        const std::vector<Transactions> smaller = smaller_databases(transactions);
        const auto failing =
            std::ranges::find_if(smaller, [&](const Transactions& each) { return !complaint(each).empty(); });
        if (failing == smaller.end()) {
            return transactions;
        }
        transactions = *failing;
    }
}

TEST(Shrinking, KeepsWhatIsNeededForTheComplaint) {
    const Complaint two_hold_item_3 = [](const Transactions& transactions) {
        return disjunctive_support(bit(3), transactions) >= 2 ? "so it is" : "";
    };
    EXPECT_EQ(shrink({0b001, 0b101, 0b111, 0b000, 0b100}, two_hold_item_3), (Transactions{0b100, 0b100}));
}

class Random {
public:
    /// 0 to `limit` - 1.
    std::uint64_t below(std::uint64_t limit) { return generator_() % limit; }

    Transactions transactions() {
        const auto number_of_items = static_cast<Item>(1 + below(most_items));
        const std::uint64_t density = 1 + below(9);
        Transactions transactions(1 + below(most_transactions));
        for (Bits& held : transactions) {
            for (Item item = 1; item <= number_of_items; ++item) {
                held |= below(10) < density ? bit(item) : 0;
            }
        }
        return transactions;
    }

    Settings settings() {
        constexpr std::array minsupps = {0U, 0U, 1U, 2U, 3U, 5U, 8U};
        constexpr std::array minconfs = {0.0, 0.0, 0.1, 0.25, 0.5, 0.6, 0.75, 0.8, 1.0};
        constexpr std::array tenths = {10U, 10U, 9U, 7U, 5U, 3U};
        Settings settings;
        settings.choice = {tenths[below(tenths.size())], below(1000)};
        settings.thresholds = {minsupps[below(minsupps.size())], minconfs[below(minconfs.size())]};
        return settings;
    }

private:
    std::mt19937_64 generator_{seed};
};

std::string description(const Transactions& transactions, const Settings& settings) {
    std::ostringstream text;
    text << "minsupp " << settings.thresholds.minsupp << ", minconf " << settings.thresholds.minconf << ", "
         << transactions.size() << " transactions:";
    for (const Bits held : transactions) {
        text << " {" << words(held) << "}";
    }
    text << "\nclass file:\n" << class_file(transactions, settings.choice);
    return text.str();
}

/// Looks at random databases and stops at the first with a complaint.
template <typename ComplaintAt>
void expect_no_complaint(int number_of_databases, const ComplaintAt& complaint_at) {
    std::cout << "seed " << seed << '\n';
    Random random;
    for (int i = 0; i < number_of_databases; ++i) {
        const Transactions transactions = random.transactions();
        const Settings settings = random.settings();
        const Complaint complaint = [&](const Transactions& each) -> std::string {
            try {
                return class_file(each, settings.choice).empty() ? "" : complaint_at(each, settings);
            } catch (const std::exception& error) {
                return error.what();
            }
        };
        if (!complaint(transactions).empty()) {
            const Transactions shrunk = shrink(transactions, complaint);
            FAIL() << "seed " << seed << ", database " << i << ": " << complaint(shrunk) << "\n"
                   << description(shrunk, settings);
        }
    }
}

/// Records that were looked at.
using Tally = std::map<RecordType, std::size_t>;

/// What is wrong with the first wrong record of a database.
std::string complaint_about_rules(const Transactions& transactions, const Settings& settings, Tally& tally) {
    const RuleTexts texts = derive(transactions, settings);
    for (const RuleFile file : all_rule_files) {
        const std::string& text = texts[static_cast<std::size_t>(file)];
        for (const ReadRule& rule : read_rule_file(text).rules) {
            ++tally[type_of(rule, file)];
            if (const auto complaint = complaint_about(rule, file, transactions, settings.thresholds);
                !complaint.empty()) {
                return complaint + ", but " + rule_file_names[static_cast<std::size_t>(file)] + " says\n" +
                       std::string(rule.text);
            }
        }
    }
    return "";
}

TEST(Truth, OfEveryRuleCountedInTheTransactions) {
    Tally tally;
    expect_no_complaint(5000, [&tally](const Transactions& transactions, const Settings& settings) {
        return complaint_about_rules(transactions, settings, tally);
    });
    if (HasFatalFailure()) {
        return;
    }
    for (const RecordType& type : record_types) {
        EXPECT_GE(tally[type], 100U) << type;
    }
    EXPECT_EQ(tally.size(), record_types.size());
}

/// The records of a text that satisfy the thresholds.
std::vector<std::string> records_at(const std::string& text, const Thresholds& thresholds) {
    std::vector<std::string> records;
    for (const ReadRule& rule : read_rule_file(text).rules) {
        if (complaint_about_thresholds(rule, thresholds).empty()) {
            records.emplace_back(rule.text);
        }
    }
    return records;
}

std::string complaint_about_selection(const Transactions& transactions, const Settings& settings) {
    const RuleTexts all = derive(transactions, {settings.choice, {}});
    const RuleTexts some = derive(transactions, settings);
    for (const RuleFile file : all_rule_files) {
        const auto at = static_cast<std::size_t>(file);
        const std::vector<std::string> expected = records_at(all[at], settings.thresholds);
        const std::vector<std::string> actual = records_at(some[at], {});
        if (expected != actual) {
            const auto [first, other] = std::ranges::mismatch(expected, actual);
            return std::string(rule_file_names[at]) + ": expected\n" +
                   (first == expected.end() ? "no more record" : *first) + "but got\n" +
                   (other == actual.end() ? "no more record" : *other);
        }
    }
    return "";
}

/// Thresholds never change a record and never keep one back that satisfies them.
TEST(Thresholds, SelectFromTheRulesAtThresholdsOfZero) {
    expect_no_complaint(1000, complaint_about_selection);
}

}  // namespace
}  // namespace korv::test
