#include "rules/bounded_mining.h"

#include <algorithm>
#include <cstddef>
#include <limits>
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

constexpr std::size_t any_number = std::numeric_limits<std::size_t>::max();

/// Why there are no classes where all of them were asked for.
enum class Excess { none, classes, essentials };

struct AllClasses {
    std::optional<MinedClasses> classes;  ///< nothing where they are too many
    Excess excess;
};

/// The classes, unless there are more than options.max_classes, or more essential itemsets than
/// `most_essentials`. Throws MiningStopped.
AllClasses all_classes(const Database& database, const MiningOptions& options, const GoOn& go_on,
                       std::size_t most_essentials = any_number) {
    bool is_stopped = false;
    MiningResult result = mine(database, options, [&](const MiningProgress& progress) {
        is_stopped = go_on && !go_on(progress);
        return !is_stopped && progress.essentials <= most_essentials;
    });
    if (is_stopped) {
        throw MiningStopped();
    }
    if (result.classes.figures().essentials > most_essentials) {
        return {std::nullopt, Excess::essentials};
    }
    if (!result.is_complete) {
        return {std::nullopt, Excess::classes};
    }
    return {std::move(result.classes), Excess::none};
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
        return all_classes(database, options, go_on).classes.has_value();
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

BoundedMining mine_bounded(const Database& database, const MiningOptions& options, const GoOn& go_on,
                           std::size_t most_essentials) {
    const bool is_small = options.max_size <= smallest_size;
    AllClasses all = all_classes(database, options, go_on, is_small ? any_number : most_essentials);
    if (all.classes) {
        require_classes(all.classes->figures(), database, options);
        return {std::move(*all.classes), options, false};
    }
    MiningOptions reduced = options;
    reduced.max_size = std::min(options.max_size, smallest_size);
    Excess excess = all.excess;
    all.classes = is_small ? std::nullopt : all_classes(database, reduced, go_on).classes;
    if (!all.classes) {
        refuse(database, reduced, go_on);
    }
    for (MiningOptions larger = reduced; ++larger.max_size < options.max_size;) {
        AllClasses more = all_classes(database, larger, go_on, most_essentials);
        if (!more.classes) {
            excess = more.excess;
            break;
        }
        all = std::move(more);
        reduced = larger;
    }
    return {std::move(*all.classes), reduced, true, excess == Excess::essentials};
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
