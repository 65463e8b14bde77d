#include "check/support_bounds_check.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

namespace {

using Position = KnownSupports::Position;

constexpr Position unknown = KnownSupports::unknown;

/// What the supports of parts say of the support of an itemset.
struct Violation {
    FindingKind kind;
    std::string expected;
    std::size_t other_line;
};

class BoundsOfParts {
public:
    explicit BoundsOfParts(const KnownSupports& known) : known_(known) {}

    /// The first bound that the support of a key violates; nothing where it is within all that are known.
    std::optional<Violation> violation(Position key) {
        std::optional<Violation> found = above_sum(key);
        if (!found && known_[key].itemset->size() > 2) {
            found = above_two_parts(key);
        }
        if (!found && known_[key].itemset->size() > 2) {
            found = below_pairs(key);
        }
        return found;
    }

private:
    std::int64_t support(Position position) const { return known_[position].support(); }

    std::string line_number(Position position) const { return std::to_string(known_[position].line); }

    /// What is known of a single item. Looked up once for each.
    Position item(Item item) {
        const auto [found, is_new] = by_item_.try_emplace(item, unknown);
        if (is_new) {
            found->second = known_.find({item});
        }
        return found->second;
    }

    /// What is known of two items. Looked up once for each pair.
    Position pair(Item one, Item other) {
        const auto [found, is_new] = by_pair_.try_emplace(std::uint64_t{one} << 32 | other, unknown);
        if (is_new) {
            found->second = known_.find({one, other});
        }
        return found->second;
    }

    std::optional<Violation> above_sum(Position key) {
        const std::span<const Position> parts = known_.parts(key);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const Position alone = item((*known_[key].itemset)[i]);
            if (alone == unknown || parts[i] == unknown) {
                continue;
            }
            const std::int64_t sum = support(alone) + support(parts[i]);
            if (support(key) > sum) {
                return Violation{FindingKind::union_above_sum,
                                 "at most " + std::to_string(sum) + ", the sum of the supports of lines " +
                                     line_number(parts[i]) + " and " + line_number(alone),
                                 known_[parts[i]].line};
            }
        }
        return std::nullopt;
    }

    std::optional<Violation> above_two_parts(Position key) const {
        const std::span<const Position> parts = known_.parts(key);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (parts[i] == unknown || known_.parts(parts[i]).empty()) {
                continue;
            }
            for (std::size_t j = i + 1; j < parts.size(); ++j) {
                const Position both = known_.parts(parts[i])[j - 1];  // without i, too
                if (parts[j] == unknown || both == unknown) {
                    continue;
                }
                const std::int64_t most = support(parts[i]) + support(parts[j]) - support(both);
                if (support(key) > most) {
                    return Violation{FindingKind::outside_pair_bounds,
                                     "at most " + std::to_string(most) + ", by the supports of lines " +
                                         line_number(parts[i]) + ", " + line_number(parts[j]) + " and " +
                                         line_number(both),
                                     known_[parts[i]].line};
                }
            }
        }
        return std::nullopt;
    }

    std::optional<Violation> below_pairs(Position key) {
        const Itemset& itemset = *known_[key].itemset;
        std::int64_t least = 0;
        for (std::size_t i = 0; i < itemset.size(); ++i) {
            const Position one = item(itemset[i]);
            if (one == unknown) {
                return std::nullopt;
            }
            least += support(one);
            for (std::size_t j = 0; j < i; ++j) {
                const Position two = pair(itemset[j], itemset[i]);
                if (two == unknown) {
                    return std::nullopt;
                }
                least -= support(one) + support(item(itemset[j])) - support(two);
            }
        }
        if (support(key) >= least) {
            return std::nullopt;
        }
        const Position first = item(itemset.front());
        return Violation{FindingKind::outside_pair_bounds,
                         "at least " + std::to_string(least) +
                             ", by the supports of its items and of their pairs, the first in line " +
                             line_number(first),
                         known_[first].line};
    }

    const KnownSupports& known_;
    std::unordered_map<Item, Position> by_item_;
    std::unordered_map<std::uint64_t, Position> by_pair_;
};

}  // namespace

void check_support_bounds(const KnownSupports& known, Findings& findings) {
    BoundsOfParts bounds(known);
    for (Position key = 0; key < known.size(); ++key) {
        std::optional<Violation> violation;
        if (!known.parts(key).empty()) {
            violation = bounds.violation(key);
        }
        if (!violation) {
            continue;
        }
        std::string items;
        append_items(*known[key].itemset, items);
        findings.add({.kind = violation->kind,
                      .severity = Severity::warning,
                      .place = {known[key].line, 1},
                      .found = "the support " + std::to_string(known[key].support()) + " of " + shown(items),
                      .expected = std::move(violation->expected),
                      .other_line = violation->other_line});
    }
}

}  // namespace korv::tools
