#include "mine/mining_arguments.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/number_text.h"
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

/// Adds an option that is a whole number from 1 to `most`.
void add_limit(CLI::App& app, const std::string& name, std::string& word, std::size_t most,
               const std::string& text) {
    const auto is_limit = [most](const std::string& typed) {
        const auto number = parse_number<std::size_t>(typed);
        return number && *number >= 1 && *number <= most;
    };
    app.add_option(name, word, text)
        ->check(argument_check(is_limit, "a whole number from 1 to " + std::to_string(most)))
        ->group(group);
}

/// Parses a finite number that is not negative. Returns nothing for anything else.
std::optional<double> parse_seconds(const std::string& text) {
    const auto seconds = parse_number<double>(text);
    return seconds && std::isfinite(*seconds) && *seconds >= 0 ? seconds : std::nullopt;
}

/// What an option says that was checked when it was parsed; nothing where it was not given.
template <typename Parse>
auto if_given(const CLI::App& app, const std::string& option, Parse parse, const std::string& word) {
    return app.count(option) > 0 ? parse(word) : std::nullopt;
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
    add_limit(app, "--max-size", words.max_size, most_items,
              "Largest number of items of an essential itemset");
    app.add_option("--closure-items", words.closure_items,
                   "Items that a closed itemset can have: those in --min-support transactions, or all")
        ->check(CLI::IsMember({"frequent", "all"}))
        ->capture_default_str()
        ->group(group);
    add_limit(app, "--max-classes", words.max_classes, most_classes,
              "Stop where there would be more classes");
    app.add_option("--max-seconds", words.max_seconds, "Stop after so many seconds")
        ->check(argument_check(parse_seconds, "a number of seconds such as 60 or 0.5"))
        ->group(group);
}

MiningRequest mining_request(const CLI::App& app, const MiningWords& words) {
    MiningRequest request;
    if (app.count("--min-support") > 0) {
        request.min_supports = *parse_thresholds(words.min_support);
    }
    request.min_joint = if_given(app, "--min-joint", parse_threshold, words.min_joint);
    request.min_own = if_given(app, "--min-own", parse_threshold, words.min_own);
    request.max_size = if_given(app, "--max-size", parse_number<std::size_t>, words.max_size);
    request.max_classes = if_given(app, "--max-classes", parse_number<std::size_t>, words.max_classes);
    request.max_seconds = if_given(app, "--max-seconds", parse_seconds, words.max_seconds);
    request.closure_over_all = words.closure_items == "all";
    return request;
}

}  // namespace korv::tools
