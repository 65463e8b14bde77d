#include "check/support_bounds_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

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
    std::vector<std::size_t> more_lines = {};
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
                                 known_[parts[i]].line,
                                 {known_[alone].line}};
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
                                     known_[parts[i]].line,
                                     {known_[parts[j]].line, known_[both].line}};
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

/// The unions of classes that no bound on keys covers.
class UnionsOfClasses {
public:
    explicit UnionsOfClasses(const KnownSupports& known) : known_(known), is_open_(known.size(), false) {
        for (Position position = 0; position < known.size() && known.is_closed(position); ++position) {
            classes_.push_back(position);
            is_open_[position] = true;
        }
        for (Position key = 0; key < known.size(); ++key) {
            const std::span<const Position> parts = known.parts(key);
            const bool is_bounded = known[key].itemset->size() == 1 ||
                                    (!parts.empty() && std::ranges::find(parts, unknown) == parts.end());
            if (known.is_key(key) && is_bounded) {
                is_open_[known[key].closed] = false;
            }
        }
    }

    /// The classes, by position.
    const std::vector<Position>& classes() const { return classes_; }

    /// Two classes within another one, which is the closure of their union, whose supports add up to less
    /// than its support.
    std::optional<std::pair<Position, Position>> too_small_parts(Position whole) {
        if (!is_open_[whole] || asked_ > most_asked) {
            return std::nullopt;
        }
        find_within(whole);
        const std::uint64_t support = known_[whole].support();
        for (std::size_t i = 0; i < within_.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                const std::uint64_t sum =
                    std::uint64_t{known_[within_[i]].support()} + known_[within_[j]].support();
                if (sum >= support) {
                    break;  // the classes within are by support
                }
                if (is_closure(whole, within_[j], within_[i])) {
                    return std::pair(within_[j], within_[i]);
                }
            }
        }
        return std::nullopt;
    }

private:
    static constexpr std::size_t most_asked = 20'000'000;
    static constexpr std::size_t most_within = 1'000;

    /// Finds the classes within another one, the smallest supports first.
    void find_within(Position whole) {
        within_.clear();
        asked_ += classes_.size();
        for (const Position each : classes_) {
            if (each != whole && is_contained(*known_[each].itemset, *known_[whole].itemset)) {
                within_.push_back(each);
            }
        }
        std::ranges::stable_sort(within_, {}, [this](Position each) { return known_[each].support(); });
        within_.resize(std::min(within_.size(), most_within));
    }

    /// Whether a class is the closure of the union of two classes within it: the union is all of it, or holds
    /// one of its essential itemsets.
    bool is_closure(Position whole, Position one, Position other) {
        const auto& [closed_itemset, of_class] = *known_[whole].node;
        union_.clear();
        std::ranges::set_union(*known_[one].itemset, *known_[other].itemset, std::back_inserter(union_));
        return union_.size() == closed_itemset.size() ||
               std::ranges::any_of(of_class.essentials, [this](const Itemset& essential) {
                   return is_contained(essential, union_);
               });
    }

    const KnownSupports& known_;
    std::vector<Position> classes_;
    std::vector<bool> is_open_;  ///< by position
    std::size_t asked_ = 0;      ///< how often a class was asked whether it lies within another one
    std::vector<Position> within_;
    Itemset union_;
};

void add_finding(const KnownSupports& known, Position position, Violation violation, Findings& findings) {
    std::string items;
    append_items(*known[position].itemset, items);
    findings.add({.kind = violation.kind,
                  .severity = Severity::warning,
                  .place = {known[position].line, 1},
                  .found = "the support " + std::to_string(known[position].support()) + " of " + shown(items),
                  .expected = std::move(violation.expected),
                  .other_line = violation.other_line,
                  .more_lines = std::move(violation.more_lines)});
}

void check_keys(const KnownSupports& known, Findings& findings) {
    BoundsOfParts bounds(known);
    for (Position key = 0; key < known.size(); ++key) {
        if (known.parts(key).empty()) {
            continue;
        }
        if (std::optional<Violation> violation = bounds.violation(key)) {
            add_finding(known, key, std::move(*violation), findings);
        }
    }
}

void check_unions_of_classes(const KnownSupports& known, Findings& findings) {
    UnionsOfClasses unions(known);
    for (const Position whole : unions.classes()) {
        const auto parts = unions.too_small_parts(whole);
        if (!parts) {
            continue;
        }
        const auto& [one, other] = *parts;
        const std::uint64_t sum = std::uint64_t{known[one].support()} + known[other].support();
        add_finding(known, whole,
                    {FindingKind::union_above_sum,
                     "at most " + std::to_string(sum) + ", the sum of the supports of lines " +
                         std::to_string(known[one].line) + " and " + std::to_string(known[other].line),
                     known[one].line,
                     {known[other].line}},
                    findings);
    }
}

}  // namespace

void check_support_bounds(const KnownSupports& known, Findings& findings) {
    check_keys(known, findings);
    check_unions_of_classes(known, findings);
}

}  // namespace korv::tools
