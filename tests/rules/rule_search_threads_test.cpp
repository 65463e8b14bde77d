// What rule_search and rule_derivation find does not depend on the number of threads.

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "common/error.h"
#include "rules/bounded_mining.h"
#include "rules/rule_search.h"
#include "support/random_classes.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

constexpr std::array<std::size_t, 3> several = {2, 3, 7};

void append(const FoundRule& rule, const ItemsetPool& itemsets, std::string& text) {
    for (const Side side : {rule.premise, rule.conclusion}) {
        text += side.is_negated() ? "none of" : "";
        for (const Item item : itemsets[side.itemset()]) {
            text += ' ' + std::to_string(item);
        }
        text += "; ";
    }
    for (const Contingency& table : {rule.at_low, rule.at_high}) {
        text += std::to_string(table.premise) + ' ' + std::to_string(table.conclusion) + ' ' +
                std::to_string(table.both) + ", ";
    }
    text += std::string(description(rule.form).label) + ' ' + std::to_string(rule.wordings) + ' ' +
            std::to_string(rule.readings) + '\n';
}

/// All that a search finds, or its error.
std::string outcome(const RuleInput& input, RuleRequest request, std::size_t threads) {
    request.threads = threads;
    KorvOutput korv;
    std::string text;
    try {
        const RuleFilter filter = rule_filter(input, request);
        const SearchResult found =
            search_rules(input, request, filter,
                         {[](Phase) {}, [](const Accounting&, std::size_t, std::size_t) {}}, {.korv = &korv});
        const SearchResult without_korv = search_rules(
            input, request, filter, {[](Phase) {}, [](const Accounting&, std::size_t, std::size_t) {}});
        for (const SearchResult* const each : {&found, &without_korv}) {
            for (const FoundRule& rule : each->rules) {
                append(rule, each->itemsets, text);
            }
            text +=
                accounting_text(each->accounting, request) + std::to_string(each->accounting.pairs) + '\n';
        }
        return text + std::to_string(korv.rules.bytes());
    } catch (const Error& error) {
        return error.what();
    }
}

/// Some of the options, each way.
RuleRequest random_request(std::mt19937& random) {
    const auto one_of = [&random](unsigned number) { return random() % number == 0; };
    RuleRequest request;
    request.min_support = {1, false};
    request.min_confidence = one_of(2) ? 0.5 : 0.8;
    request.max_items = one_of(2) ? 0 : 6;
    request.max_premise_items = one_of(4) ? 2 : 0;
    request.min_lift = one_of(3) ? std::optional(0.0) : std::nullopt;
    request.is_tested = one_of(4);
    request.where = one_of(4) ? "support >= 3 and lift > 1.1" : "";
    request.wording = one_of(4) ? Wording::full : Wording::shortest;
    request.readings = one_of(2) ? Readings::all : Readings::one;
    request.prune = prunes[random() % prunes.size()].second;
    request.sort = one_of(2) ? Measure::leverage : Measure::confidence;
    request.is_ascending = one_of(3);
    request.top = one_of(3) ? 10 : 0;
    request.per_conclusion = one_of(3) ? 2 : 0;
    if (one_of(3)) {
        request.patterns = {{"--with", "#11", PatternPlace::either, true}};
    }
    return request;
}

/// Two columns, of three and two values, and items that are in none.
ItemNames names() {
    return ItemNames(std::map<Item, std::string>{
        {10, "a=1"}, {11, "a=2"}, {12, "a=3"}, {13, "b=1"}, {14, "b=2"}, {15, "c"}});
}

/// Transactions of twelve items, each of which has one value of each column.
Transactions table_like(std::mt19937& random) {
    Transactions transactions = random_transactions(12, 300, 2, random);
    for (Set& transaction : transactions) {
        transaction = (transaction & ~Set{0b11111}) | Set{1} << random() % 3 | Set{1} << (3 + random() % 2);
    }
    return transactions;
}

TEST(ThreadsOfASearch, FindTheSameInTransactions) {
    std::mt19937 random(61);
    std::size_t classes = 0;
    for (int round = 0; round < 12; ++round) {
        RuleInput input;
        input.database = database_of(table_like(random));
        input.transactions = input.database->transactions;
        input.names = names();
        input.classes = class_map(mine_bounded(*input.database, {.min_support = 1, .max_size = 4}).classes);
        classes += input.classes.size();
        if (round % 2 == 0) {
            input.database.reset();  // so that supports stay open
        }
        const RuleRequest request = random_request(random);
        const std::string of_one = outcome(input, request, 1);
        for (const std::size_t threads : several) {
            ASSERT_EQ(outcome(input, request, threads), of_one) << "round " << round << ", " << threads;
        }
    }
    EXPECT_GT(classes, 12 * 400U);  // several batches each
}

TEST(ThreadsOfASearch, FindTheSameContradiction) {
    std::mt19937 random(62);
    int contradictions = 0;
    for (int round = 0; round < 12; ++round) {
        // Of a database, but for a support.
        const Database database = database_of(table_like(random));
        RuleInput input;
        input.transactions = database.transactions;
        input.classes = class_map(mine_bounded(database, {.min_support = 1, .max_size = 4}).classes);
        for (int wrong = 0; wrong < 12; ++wrong) {
            const auto node = std::next(input.classes.begin(),
                                        static_cast<std::ptrdiff_t>(random() % input.classes.size()));
            node->second.support += static_cast<Count>(1 + random() % 3);
        }
        RuleRequest request;
        request.min_support = {1, false};
        const std::string of_one = outcome(input, request, 1);
        contradictions += of_one.find("; expected") != std::string::npos ? 1 : 0;
        for (const std::size_t threads : several) {
            ASSERT_EQ(outcome(input, request, threads), of_one) << "round " << round << ", " << threads;
        }
    }
    EXPECT_GT(contradictions, 3);
}

}  // namespace
}  // namespace korv::tools
