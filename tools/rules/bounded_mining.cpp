#include "rules/bounded_mining.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "common/quantity.h"
#include "io/class_loading.h"
#include "mine/mining_request.h"
#include "mine/ranked_items.h"

namespace korv::tools {

namespace {

/// What is left when the size is lowered as far as it goes: rules take two itemsets.
constexpr std::size_t smallest_size = 2;

/// The classes; nothing where there are more than options.max_classes. Throws MiningStopped.
std::optional<MinedClasses> all_classes(const Database& database, const MiningOptions& options,
                                        const GoOn& go_on) {
    bool is_stopped = false;
    MiningResult result = mine(database, options, [&](const MiningProgress& progress) {
        is_stopped = go_on && !go_on(progress);
        return !is_stopped;
    });
    if (is_stopped) {
        throw MiningStopped();
    }
    return result.is_complete ? std::optional(std::move(result.classes)) : std::nullopt;
}

Count largest_support(const Database& database) {
    Count largest = 0;
    for (const Database::ItemColumn& column : database.items) {
        largest = std::max(largest, support_of(column, database));
    }
    return largest;
}

/// A minimum support with which the classes are not too many, and of which nine tenths may not do; nothing
/// where no item reaches one. With options.min_support they are too many.
std::optional<Count> sufficient_min_support(const Database& database, MiningOptions options,
                                            const GoOn& go_on) {
    const Count largest = largest_support(database);
    const auto suffices = [&](Count min_support) {
        options.min_support = min_support;
        return all_classes(database, options, go_on).has_value();
    };
    Count too_small = options.min_support;
    Count sufficient = too_small;
    do {
        too_small = sufficient;
        if (too_small >= largest) {
            return std::nullopt;
        }
        sufficient = too_small > largest / 2 ? largest : too_small * 2;
    } while (!suffices(sufficient));
    while (sufficient - too_small > std::max<Count>(1, sufficient / 10)) {
        const Count middle = too_small + (sufficient - too_small) / 2;
        (suffices(middle) ? sufficient : too_small) = middle;
    }
    return sufficient;
}

[[noreturn]] void refuse(const Database& database, const MiningOptions& options, const GoOn& go_on) {
    const auto sufficient = sufficient_min_support(database, options, go_on);
    throw Error("--min-support: with " + std::to_string(options.min_support) + " there are more than " +
                with_commas(options.max_classes) + " classes, even of itemsets of at most " +
                std::to_string(options.max_size) + (options.max_size == 1 ? " item" : " items") +
                "; expected " + (sufficient ? "--min-support " + std::to_string(*sufficient) + ", or " : "") +
                "a higher --max-classes");
}

}  // namespace

BoundedMining mine_bounded(const Database& database, const MiningOptions& options, const GoOn& go_on) {
    if (auto classes = all_classes(database, options, go_on)) {
        require_classes(*classes, database, options);
        return {std::move(*classes), options, false};
    }
    MiningOptions reduced = options;
    reduced.max_size = std::min(options.max_size, smallest_size);
    auto classes = reduced.max_size < options.max_size ? all_classes(database, reduced, go_on) : std::nullopt;
    if (!classes) {
        refuse(database, reduced, go_on);
    }
    for (MiningOptions larger = reduced; ++larger.max_size < options.max_size;) {
        auto more = all_classes(database, larger, go_on);
        if (!more) {
            break;
        }
        classes = std::move(more);
        reduced = larger;
    }
    return {std::move(*classes), reduced, true};
}

ClassMap class_map(const MinedClasses& classes) {
    Records records;
    records.reserve(classes.size());
    classes.for_each([&records](const MinedClass& each) {
        const bool is_own_essential = each.essentials.front().size() == each.closure.size();
        records.push_back(
            {each.closure, {each.support, is_own_essential ? std::vector<Itemset>() : each.essentials}});
    });
    return to_classes(std::move(records));
}

}  // namespace korv::tools
