#include "mine/mining_arguments.h"

#include <CLI/CLI.hpp>
#include <limits>

#include "mine/argument_check.h"
#include "mine/threshold.h"

namespace korv::tools {

namespace {

constexpr const char* group = "What is mined";

/// Adds an option that is a number of transactions.
void add_threshold(CLI::App& app, const std::string& name, std::string& word, const std::string& text) {
    app.add_option(name, word, text)
        ->check(argument_check(parse_threshold, "a number of transactions, or a percentage such as 2.5%"))
        ->group(group);
}

template <typename Value>
std::optional<Value> if_given(const CLI::App& app, const std::string& option, const Value& value) {
    return app.count(option) > 0 ? std::optional(value) : std::nullopt;
}

std::optional<Threshold> threshold(const CLI::App& app, const std::string& option, const std::string& word) {
    return app.count(option) > 0 ? parse_threshold(word) : std::nullopt;
}

}  // namespace

void add_mining_options(CLI::App& app, MiningWords& words) {
    constexpr std::size_t most_items = 1'000'000'000;
    constexpr std::size_t most_classes = std::numeric_limits<std::uint32_t>::max() - 1;
    app.add_option("-s,--min-support", words.min_support,
                   "Smallest number of transactions that hold an item of an essential itemset: a count, or a "
                   "percentage of all transactions such as 2.5%")
        ->check(argument_check(parse_thresholds, "a number of transactions, or a percentage such as 2.5%"))
        ->group(group);
    add_threshold(
        app, "--min-joint", words.min_joint,
        "Smallest number of transactions that hold all items of an essential itemset of two or more; "
        "0 if they need not meet (default: --min-support)");
    add_threshold(app, "--min-own", words.min_own,
                  "Smallest number of transactions that hold an item of an essential itemset and none of its "
                  "others (default: 1)");
    app.add_option("--max-size", words.max_size, "Largest number of items of an essential itemset")
        ->check(CLI::Range(std::size_t{1}, most_items))
        ->group(group);
    app.add_option("--closure-items", words.closure_items,
                   "Items that a closed itemset can have: those in --min-support transactions, or all")
        ->check(CLI::IsMember({"frequent", "all"}))
        ->capture_default_str()
        ->group(group);
    app.add_option("--max-classes", words.max_classes, "Stop where there would be more classes")
        ->check(CLI::Range(std::size_t{1}, most_classes))
        ->group(group);
    app.add_option("--max-seconds", words.max_seconds, "Stop after so many seconds")
        ->check(CLI::Range(0.0, 1e9))
        ->group(group);
}

MiningRequest mining_request(const CLI::App& app, const MiningWords& words) {
    MiningRequest request;
    if (app.count("--min-support") > 0) {
        request.min_supports = *parse_thresholds(words.min_support);
    }
    request.min_joint = threshold(app, "--min-joint", words.min_joint);
    request.min_own = threshold(app, "--min-own", words.min_own);
    request.max_size = if_given(app, "--max-size", words.max_size);
    request.max_classes = if_given(app, "--max-classes", words.max_classes);
    request.max_seconds = if_given(app, "--max-seconds", words.max_seconds);
    request.closure_over_all = words.closure_items == "all";
    return request;
}

}  // namespace korv::tools
