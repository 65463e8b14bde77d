#include "check/support_bounds_check.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

namespace {

using Known = KnownSupports::Known;

constexpr std::size_t most_items = 40;

/// What the supports of parts say of the support of an itemset.
struct Violation {
    FindingKind kind;
    std::string expected;
    std::size_t other_line;
};

std::string line_number(const Known& known) {
    return std::to_string(known.line);
}

class BoundsOfParts {
public:
    explicit BoundsOfParts(const KnownSupports& known) : known_(known) {}

    /// The first bound that a support violates; nothing where it is within all that are known.
    std::optional<Violation> violation(const Known& of) {
        find_parts(*of.itemset);
        std::optional<Violation> found = above_sum(of);
        if (!found && of.itemset->size() > 2) {
            found = above_two_parts(of);
        }
        if (!found && of.itemset->size() > 2) {
            found = below_pairs(of);
        }
        return found;
    }

private:
    /// Looks up the items, and the parts that lack one item.
    void find_parts(const Itemset& itemset) {
        hash_ = KnownSupports::hash_of_items(itemset);
        items_.clear();
        parts_.clear();
        for (std::size_t i = 0; i < itemset.size(); ++i) {
            items_.push_back(known_of_item(itemset[i]));
            parts_.push_back(known_.find_part(itemset, hash_, i));
        }
    }

    /// What is known of a single item. Looked up once for each.
    const Known* known_of_item(Item item) {
        const auto [found, is_new] = by_item_.try_emplace(item, nullptr);
        if (is_new) {
            found->second = known_.find({item});
        }
        return found->second;
    }

    /// What is known of two items. Looked up once for each pair.
    const Known* known_of_pair(Item one, Item other) {
        const std::uint64_t both = std::uint64_t{one} << 32 | other;
        const auto [found, is_new] = by_pair_.try_emplace(both, nullptr);
        if (is_new) {
            found->second = known_.find({one, other});
        }
        return found->second;
    }

    std::optional<Violation> above_sum(const Known& of) const {
        for (std::size_t i = 0; i < items_.size(); ++i) {
            const Known* const item = items_[i];
            const Known* const part = parts_[i];
            if (item == nullptr || part == nullptr) {
                continue;
            }
            const std::uint64_t sum = std::uint64_t{item->support()} + part->support();
            if (of.support() > sum) {
                return Violation{FindingKind::union_above_sum,
                                 "at most " + std::to_string(sum) + ", the sum of the supports of lines " +
                                     line_number(*part) + " and " + line_number(*item),
                                 part->line};
            }
        }
        return std::nullopt;
    }

    std::optional<Violation> above_two_parts(const Known& of) {
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            for (std::size_t j = i + 1; j < parts_.size() && parts_[i] != nullptr; ++j) {
                if (parts_[j] == nullptr) {
                    continue;
                }
                const Known* const both = known_.find_part(*of.itemset, hash_, i, j);
                const std::int64_t most = both == nullptr ? std::int64_t{of.support()}
                                                          : std::int64_t{parts_[i]->support()} +
                                                                parts_[j]->support() - both->support();
                if (of.support() > most) {
                    return Violation{FindingKind::outside_pair_bounds,
                                     "at most " + std::to_string(most) + ", by the supports of lines " +
                                         line_number(*parts_[i]) + ", " + line_number(*parts_[j]) + " and " +
                                         line_number(*both),
                                     parts_[i]->line};
                }
            }
        }
        return std::nullopt;
    }

    std::optional<Violation> below_pairs(const Known& of) {
        std::int64_t least = 0;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (items_[i] == nullptr) {
                return std::nullopt;
            }
            least += items_[i]->support();
            for (std::size_t j = 0; j < i; ++j) {
                const Known* const pair = known_of_pair((*of.itemset)[j], (*of.itemset)[i]);
                if (pair == nullptr) {
                    return std::nullopt;
                }
                least -= std::int64_t{items_[i]->support()} + items_[j]->support() - pair->support();
            }
        }
        if (of.support() >= least) {
            return std::nullopt;
        }
        return Violation{FindingKind::outside_pair_bounds,
                         "at least " + std::to_string(least) +
                             ", by the supports of its items and of their pairs, the first in line " +
                             line_number(*items_.front()),
                         items_.front()->line};
    }

    const KnownSupports& known_;
    std::vector<const Known*> items_;  ///< what is known of the items
    std::vector<const Known*> parts_;  ///< and of the itemset without each of them
    std::uint64_t hash_ = 0;           ///< of the itemset
    std::unordered_map<Item, const Known*> by_item_;
    std::unordered_map<std::uint64_t, const Known*> by_pair_;
};

}  // namespace

void check_support_bounds(const KnownSupports& known, Findings& findings) {
    BoundsOfParts bounds(known);
    for (const Known& each : known.all()) {
        if (each.itemset->size() < 2 || each.itemset->size() > most_items) {
            continue;
        }
        std::optional<Violation> violation = bounds.violation(each);
        if (!violation) {
            continue;
        }
        std::string items;
        append_items(*each.itemset, items);
        findings.add({.kind = violation->kind,
                      .severity = Severity::warning,
                      .place = {each.line, 1},
                      .found = "the support " + std::to_string(each.support()) + " of " + shown(items),
                      .expected = std::move(violation->expected),
                      .other_line = violation->other_line});
    }
}

}  // namespace korv::tools
