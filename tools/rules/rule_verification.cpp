#include "rules/rule_verification.h"

#include <string>

#include "common/error.h"
#include "rules/recount.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

std::string how_often(const Contingency& table) {
    return std::to_string(table.both) + " of " + std::to_string(table.premise);
}

}  // namespace

void verify(const std::vector<FoundRule>& rules, const RuleBook& book, const Database& database) {
    const auto items = [&book](Side side) {
        return WordedSide{book.itemsets[side.itemset()], side.is_negated()};
    };
    const auto words = [&book](Side side) { return side_text(side, book, {}); };
    Recount recount(database);
    for (const FoundRule& rule : rules) {
        const Contingency counted = recount.count(items(rule.premise), items(rule.conclusion));
        if (counted != rule.at_low || counted != rule.at_high) {
            throw Error("internal error: the rule " + words(rule.premise) + " => " + words(rule.conclusion) +
                        " holds for " + how_often(rule.at_low) + " transactions; counted again, for " +
                        how_often(counted));
        }
    }
}

}  // namespace korv::tools
