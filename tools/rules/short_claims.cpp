#include "rules/short_claims.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace korv::tools {

namespace {

std::uint64_t mixed(ItemsetId first, ItemsetId second) {
    std::uint64_t value = (std::uint64_t{first} << 32 | second) * 0x9E3779B97F4A7C15;
    value = (value ^ value >> 32) * 0xFF51AFD7ED558CCD;
    return value ^ value >> 29;
}

}  // namespace

/// A number for pairs of itemsets: a hash table with open addressing.
class ShortClaims::Table {
public:
    explicit Table(std::size_t most_pairs)
        : slots_(std::bit_ceil(most_pairs + most_pairs / 2 + 1)), mask_(slots_.size() - 1) {}

    /// The number of a pair, 0 at first. There must be room for it.
    std::uint32_t& operator()(ItemsetId first, ItemsetId second) {
        Slot& slot = slots_[position(first, second)];
        slot.first = first;
        slot.second = second;
        return slot.value;
    }

    /// The number of a pair; 0 when it is not there.
    std::uint32_t find(ItemsetId first, ItemsetId second) const {
        return slots_[position(first, second)].value;
    }

private:
    struct Slot {
        ItemsetId first = 0;
        ItemsetId second = 0;
        std::uint32_t value = 0;  ///< 0 in an empty slot, and there alone
    };

    std::size_t position(ItemsetId first, ItemsetId second) const {
        std::size_t i = mixed(first, second) & mask_;
        while (slots_[i].value != 0 && (slots_[i].first != first || slots_[i].second != second)) {
            i = (i + 1) & mask_;
        }
        return i;
    }

    std::vector<Slot> slots_;  ///< a power of 2, at most two thirds of them taken
    std::size_t mask_;
};

void ShortClaims::mark_outdone(std::span<const Claim> claims, Outdoing outdoing,
                               std::vector<char>& is_outdone) {
    is_second_equal_ = outdoing.second == Stand::equals;
    note_places(claims);
    if (outdoing.first == Stand::within) {
        mark_containing(claims, is_outdone);
    } else if (outdoing.second == Stand::within) {
        mark_half_way(claims, is_outdone);
    } else {
        mark_contained(claims, is_outdone);
    }
}

void ShortClaims::note_places(std::span<const Claim> claims) {
    is_first_.assign(itemsets_, 0);
    is_second_.assign(itemsets_, 0);
    for (const Claim& claim : claims) {
        is_first_[claim.first] = 1;
        is_second_[claim.second] = 1;
    }
}

/// Calls `visit` with the pairs of parts that can be claims, until it returns false.
template <typename Visit>
void ShortClaims::for_each_pair_of_parts(const Claim& claim, Visit visit) const {
    const std::span<const ItemsetId> seconds =
        is_second_equal_ ? std::span(&claim.second, 1) : parts_[claim.second];
    for (const ItemsetId first : parts_[claim.first]) {
        if (is_first_[first] == 0) {
            continue;
        }
        for (const ItemsetId second : seconds) {
            if (is_second_[second] != 0 && !visit(first, second)) {
                return;
            }
        }
    }
}

/// Where a claim outdoes those that lie within it.
void ShortClaims::mark_contained(std::span<const Claim> claims, std::vector<char>& is_outdone) const {
    Table numbers(claims.size());
    for (std::uint32_t i = 0; i < claims.size(); ++i) {
        numbers(claims[i].first, claims[i].second) = i + 1;
    }
    for (const Claim& claim : claims) {
        for_each_pair_of_parts(claim, [&](ItemsetId first, ItemsetId second) {
            const std::uint32_t number = numbers.find(first, second);
            if (number == 0) {
                return true;
            }
            const Claim& other = claims[number - 1];
            if (&other != &claim && claim.low >= other.high) {
                is_outdone[other.rule] = 1;
            }
            return true;
        });
    }
}

/// Where a claim outdoes those that it lies within.
void ShortClaims::mark_containing(std::span<const Claim> claims, std::vector<char>& is_outdone) const {
    Table lows(claims.size());
    for (const Claim& claim : claims) {
        Rank& low = lows(claim.first, claim.second);
        low = std::max(low, claim.low);
    }
    for (const Claim& claim : claims) {
        if (claim.high == unreachable || is_outdone[claim.rule] != 0) {
            continue;
        }
        for_each_pair_of_parts(claim, [&](ItemsetId first, ItemsetId second) {
            const bool is_itself = first == claim.first && second == claim.second;
            const bool outdoes = !is_itself && lows.find(first, second) >= claim.high;
            if (outdoes) {
                is_outdone[claim.rule] = 1;
            }
            return !outdoes;
        });
    }
}

/// Where a claim outdoes those whose first itemset lies within its own, and whose second contains its own.
void ShortClaims::mark_half_way(std::span<const Claim> claims, std::vector<char>& is_outdone) const {
    const auto count_pairs = [&](auto is_wanted) {
        std::size_t pairs = 0;
        for (const Claim& claim : claims) {
            pairs += static_cast<std::size_t>(std::ranges::count_if(parts_[claim.first], is_wanted));
        }
        return pairs;
    };
    const auto is_first = [this](ItemsetId part) { return is_first_[part] != 0; };
    const std::size_t passes = count_pairs(is_first) / pairs_of_a_pass_ + 1;
    for (std::size_t pass = 0; pass < passes; ++pass) {
        const auto is_of_pass = [&](ItemsetId part) {
            return is_first(part) && (passes == 1 || mixed(part, 0) % passes == pass);
        };
        Table lows(count_pairs(is_of_pass));
        meet_half_way(claims, lows, is_of_pass, is_outdone);
    }
}

/// One pass over the claims: the pairs whose first itemset is of the pass.
///
/// A claim must not meet itself, which it would at the pair of its own two itemsets alone. So it asks there
/// when only claims of larger first itemsets have left their strength, and at other pairs when all have.
template <typename IsOfPass>
void ShortClaims::meet_half_way(std::span<const Claim> claims, Table& lows, IsOfPass is_of_pass,
                                std::vector<char>& is_outdone) const {
    const auto leave = [&](ItemsetId first, const Claim& claim) {
        Rank& low = lows(first, claim.second);
        low = std::max(low, claim.low);
    };
    const auto ask = [&](const Claim& claim, ItemsetId second) {
        if (lows.find(claim.first, second) >= claim.high) {
            is_outdone[claim.rule] = 1;
        }
    };
    std::vector<const Claim*> of_pass;
    for (const Claim& claim : claims) {
        if (is_of_pass(claim.first)) {
            of_pass.push_back(&claim);
        }
        for (const ItemsetId first : parts_[claim.first]) {
            if (first != claim.first && is_of_pass(first)) {
                leave(first, claim);
            }
        }
    }
    for (const Claim* claim : of_pass) {
        ask(*claim, claim->second);
    }
    for (const Claim* claim : of_pass) {
        leave(claim->first, *claim);
    }
    for (const Claim* claim : of_pass) {
        if (claim->high == unreachable || is_outdone[claim->rule] != 0) {
            continue;
        }
        for (const ItemsetId second : parts_[claim->second]) {
            if (second != claim->second && is_second_[second] != 0) {
                ask(*claim, second);
            }
        }
    }
}

}  // namespace korv::tools
