// Writes made rules between items of awkward names, for what reads them back: rules.csv, rules.tsv and
// rules.jsonl into the directory that is given.

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "made_rules.h"

namespace {

using namespace korv;
using namespace korv::tools;

const std::vector<std::string> names = {
    "bread",
    "bread or butter",
    "a, b",
    "\"quoted\"",
    "\"",
    "'",
    "'s-Hertogenbosch",
    "=1+1",
    "'=1+1",
    "''=2",
    "+49 30",
    "-5",
    "@SUM(A1:A9)",
    R"(=HYPERLINK("https://example.org","x"))",
    "\t=tab",
    "tab\tinside",
    "line\nend",
    "carriage\rreturn",
    "both\r\nof them",
    "\n=1",
    "\r=1",
    "back\\slash",
    "\\t",
    "לחם, חמאה",
    "خبز",
    "\xE2\x80\xAEoverride\xE2\x80\xAC",
    "Käse",
    "e\xCC\x81",
    "パン",
    "🍞",
    "👩‍👩‍👧",
    "blank at the end ",
    " =after a blank",
    "semi;colon",
    "NULL",
    "17",
    "colour=red",
    "colour={green}",
    "colour==blue",
    "=not a column=x",
    "+sum=1",
    "+sum=2",
    "empty=",
    "empty=full",
};

Itemset random_items(std::mt19937& random) {
    Itemset items;
    for (Item item = 1; item <= names.size() + 3; ++item) {  // some without a name
        if (random() % 16 == 0) {
            items.push_back(item);
        }
    }
    return items.empty() ? Itemset{static_cast<Item>(1 + random() % names.size())} : items;
}

Contingency random_counts(Count transactions, std::mt19937& random) {
    const auto premise = static_cast<Count>(random() % (transactions + 1));
    const auto conclusion = static_cast<Count>(random() % (transactions + 1));
    const Count least = premise + conclusion > transactions ? premise + conclusion - transactions : 0;
    return {premise, conclusion,
            least + static_cast<Count>(random() % (std::min(premise, conclusion) - least + 1))};
}

FoundRule random_rule(MadeRules& rules, Count transactions, std::mt19937& random) {
    const auto side = [&](const Itemset& items) {
        return random() % 2 == 0 ? rules.any(items) : rules.none(items);
    };
    const Side premise = side(random_items(random));
    const Side conclusion = side(random_items(random));
    FoundRule rule = known_rule(premise, conclusion, random_counts(transactions, random),
                                static_cast<Form>(random() % rule_catalogue.size()));
    if (random() % 4 == 0) {
        rule.at_high = random_counts(transactions, random);
    }
    rule.wordings = 1 + static_cast<Count>(random() % 3);
    return rule;
}

void write_file(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

void write_all(const std::filesystem::path& directory) {
    std::map<Item, std::string> by_item;
    for (std::size_t i = 0; i < names.size(); ++i) {
        by_item.emplace(static_cast<Item>(i + 1), names[i]);
    }
    MadeRules rules(by_item);
    std::mt19937 random(20250119);
    constexpr Count transactions = 60;
    std::vector<FoundRule> all;
    for (Item item = 1; item <= names.size(); ++item) {
        // Each name alone, as it is.
        all.push_back(known_rule(rules.any({item}), rules.none({item}), random_counts(transactions, random)));
    }
    for (int i = 0; i < 3000; ++i) {
        all.push_back(random_rule(rules, transactions, random));
    }
    const RuleBook book = rules.book(
        transactions, {Measure::conviction, Measure::jaccard, Measure::recall, Measure::added_value});
    for (const auto& [format, name] : {std::pair{RuleFormat::csv, "rules.csv"},
                                       {RuleFormat::tsv, "rules.tsv"},
                                       {RuleFormat::jsonl, "rules.jsonl"}}) {
        write_file(directory / name, written(format, book, all));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: korv_write_rules DIRECTORY\n";
        return 2;
    }
    try {
        write_all(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
