#include "mine/estimate.h"

#include <algorithm>
#include <iterator>

#include "common/quantity.h"
#include "common/right_aligned.h"
#include "mine/ranked_items.h"

namespace korv::tools {

namespace {

std::size_t items_in(const Database& database, Count min_support) {
    return static_cast<std::size_t>(std::ranges::count_if(
        database.items, [&](const auto& column) { return support_of(column, database) >= min_support; }));
}

/// Sets what the mining brings, or lower bounds.
void mine_for(std::chrono::duration<double> time, const Database& database, const MiningOptions& options,
              Estimate& estimate) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    const MiningResult result =
        mine(database, options, [&](const MiningProgress&) { return Clock::now() - start < time; });
    estimate.essentials = result.classes.figures().essentials;
    estimate.classes = result.classes.size();
    estimate.file_bytes = result.classes.figures().file_bytes;
    estimate.is_complete = result.is_complete;
}

/// Raises the numbers to those of a larger minimum support.
void raise_to(const Estimate& larger, Estimate& estimate) {
    estimate.essentials = std::max(estimate.essentials, larger.essentials);
    estimate.classes = std::max(estimate.classes, larger.classes);
    estimate.file_bytes = std::max(estimate.file_bytes, larger.file_bytes);
}

std::vector<std::string> row_of(const Estimate& estimate) {
    const std::string more = estimate.is_complete ? "" : "more than ";
    const std::string count = std::to_string(estimate.transactions);
    return {estimate.min_support.is_percentage ? text_of(estimate.min_support) + " (" + count + ")" : count,
            with_commas(estimate.frequent_items), more + with_commas(estimate.essentials),
            more + with_commas(estimate.classes), more + size_text(estimate.file_bytes)};
}

}  // namespace

std::vector<Estimate> estimates(const Database& database, const MiningRequest& request,
                                std::chrono::duration<double> time) {
    return estimates(
        {.transactions = database.transactions,
         .items_in = [&](Count min_support) { return items_in(database, min_support); },
         .mine_for = [&](std::chrono::duration<double> so_long, const MiningOptions& options,
                         Estimate& estimate) { mine_for(so_long, database, options, estimate); }},
        request, time);
}

std::vector<Estimate> estimates(const Estimated& database, const MiningRequest& request,
                                std::chrono::duration<double> time) {
    std::vector<Estimate> found;
    std::vector<MiningOptions> options;
    for (const Threshold& min_support : request.min_supports) {
        options.push_back(mining_options(request, min_support, database.transactions));
        found.push_back({.min_support = min_support,
                         .transactions = options.back().min_support,
                         .frequent_items = database.items_in(options.back().min_support)});
    }
    std::ranges::stable_sort(found, std::ranges::greater(), &Estimate::transactions);
    std::ranges::stable_sort(options, std::ranges::greater(), &MiningOptions::min_support);
    for (std::size_t i = 0; i < found.size(); ++i) {
        const bool goes_on = i == 0 || found[i - 1].is_complete;
        found[i].is_complete = goes_on;
        if (goes_on) {
            database.mine_for(time, options[i], found[i]);
        }
        if (!found[i].is_complete && i > 0) {
            raise_to(found[i - 1], found[i]);
        }
    }
    return found;
}

std::string estimate_table(const std::vector<Estimate>& estimates) {
    std::vector<std::vector<std::string>> rows = {
        {"min. support", "frequent items", "essential itemsets", "classes", "class file"}};
    std::ranges::transform(estimates, std::back_inserter(rows), row_of);
    return right_aligned(rows);
}

}  // namespace korv::tools
