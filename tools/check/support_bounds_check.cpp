#include "check/support_bounds_check.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
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
        items_.clear();
        parts_.clear();
        for (std::size_t i = 0; i < itemset.size(); ++i) {
            part_.assign(1, itemset[i]);
            items_.push_back(known_.find(part_));
            part_ = itemset;
            part_.erase(part_.begin() + static_cast<std::ptrdiff_t>(i));
            parts_.push_back(known_.find(part_));
        }
    }

    std::optional<Violation> above_sum(const Known& of) const {
        for (std::size_t i = 0; i < items_.size(); ++i) {
            const Known* const item = items_[i];
            const Known* const part = parts_[i];
            if (item == nullptr || part == nullptr) {
                continue;
            }
            const std::uint64_t sum = std::uint64_t{item->support} + part->support;
            if (of.support > sum) {
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
                part_ = *of.itemset;
                part_.erase(part_.begin() + static_cast<std::ptrdiff_t>(j));
                part_.erase(part_.begin() + static_cast<std::ptrdiff_t>(i));
                const Known* const both = known_.find(part_);
                const std::int64_t most =
                    both == nullptr ? std::int64_t{of.support}
                                    : std::int64_t{parts_[i]->support} + parts_[j]->support - both->support;
                if (of.support > most) {
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
            least += items_[i]->support;
            for (std::size_t j = 0; j < i; ++j) {
                part_ = {(*of.itemset)[j], (*of.itemset)[i]};
                const Known* const pair = known_.find(part_);
                if (pair == nullptr) {
                    return std::nullopt;
                }
                least -= std::int64_t{items_[i]->support} + items_[j]->support - pair->support;
            }
        }
        if (of.support >= least) {
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
    Itemset part_;                     ///< working space
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
                      .found = "the support " + std::to_string(each.support) + " of " + shown(items),
                      .expected = std::move(violation->expected),
                      .other_line = violation->other_line});
    }
}

}  // namespace korv::tools
