#include "rules/long_claims.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace korv::tools {

namespace {

ItemsetId itemset(const Claim& claim, std::size_t place) {
    return place == 0 ? claim.first : claim.second;
}

}  // namespace

LongClaims::LongClaims(const ItemsetPool& itemsets, const ItemsetSignatures& signatures,
                       std::span<const Claim> claims, Outdoing outdoing)
    : itemsets_(itemsets),
      signatures_(signatures),
      stands_({outdoing.first, outdoing.second}),
      claims_(claims.begin(), claims.end()) {
    if (claims_.size() <= few_claims) {
        return;
    }
    sort_by_signature();
    for (std::size_t begin = 0; begin < claims_.size(); begin += block_claims) {
        const std::size_t end = std::min(begin + block_claims, claims_.size());
        blocks_.push_back(block_of(begin, end));
        const Limits limits = limits_of(begin, end);
        if (limits_.size() % group_blocks == 0) {
            group_limits_.push_back(limits);
        } else {
            widen(group_limits_.back(), limits);
        }
        limits_.push_back(limits);
    }
}

/// Brings the claims into the order of their signatures: first by the itemset that must lie within that of
/// another claim, since what all claims of a block have of it says most.
void LongClaims::sort_by_signature() {
    const std::size_t major = stands_[1] == Stand::within ? 1 : 0;
    std::ranges::sort(claims_, [&](const Claim& a, const Claim& b) {
        const Signature& of_a = signatures_[itemset(a, major)];
        const Signature& of_b = signatures_[itemset(b, major)];
        return of_a != of_b ? of_a < of_b
                            : signatures_[itemset(a, 1 - major)] < signatures_[itemset(b, 1 - major)];
    });
}

/// What the claims of a block have in common.
LongClaims::Limits LongClaims::limits_of(std::size_t begin, std::size_t end) const {
    const auto limits_of_one = [this](const Claim& claim) {
        return Limits{claim.low, {signatures_[claim.first], signatures_[claim.second]}};
    };
    Limits limits = limits_of_one(claims_[begin]);
    for (std::size_t i = begin + 1; i < end; ++i) {
        widen(limits, limits_of_one(claims_[i]));
    }
    return limits;
}

/// Makes limits hold for other claims, too.
void LongClaims::widen(Limits& limits, const Limits& others) const {
    limits.largest_low = std::max(limits.largest_low, others.largest_low);
    for (std::size_t i = 0; i < stands_.size(); ++i) {
        if (stands_[i] == Stand::contains) {
            limits.places[i].unite(others.places[i]);
        } else {
            limits.places[i].intersect(others.places[i]);
        }
    }
}

/// A block of the claims from `begin` to `end` - 1, which it sorts by `low`, descending.
LongClaims::Block LongClaims::block_of(std::size_t begin, std::size_t end) {
    Block block = {begin, end, {}};
    const std::span claims = std::span(claims_).subspan(begin, end - begin);
    std::ranges::stable_sort(claims, std::greater(), &Claim::low);
    for (std::size_t place = 0; place < block.places.size(); ++place) {
        fill(block.places[place], place, claims);
    }
    return block;
}

void LongClaims::fill(Place& place, std::size_t number, std::span<const Claim> claims) const {
    Signature some;
    std::array<Bits, Signature::columns> bits = {};
    std::array<std::size_t, Signature::columns> frequencies = {};
    for (std::size_t i = 0; i < claims.size(); ++i) {
        const Signature& signature = signatures_[itemset(claims[i], number)];
        some.unite(signature);
        signature.for_each([&](std::size_t column) {
            bits[column][i / 64] |= std::uint64_t{1} << i % 64;
            ++frequencies[column];
            return true;
        });
    }
    some.for_each([&](std::size_t column) {
        place.present.push_back(static_cast<std::uint8_t>(column));
        return true;
    });
    std::ranges::stable_sort(place.present, std::greater(),
                             [&](std::uint8_t column) { return frequencies[column]; });
    for (const std::uint8_t column : place.present) {
        place.position[column] = static_cast<std::uint8_t>(place.claims_with_column.size());
        place.claims_with_column.push_back(bits[column]);
    }
}

bool LongClaims::outdo(const Claim& claim) const {
    if (blocks_.empty()) {
        return std::ranges::any_of(claims_, [&](const Claim& other) {
            return other.low >= claim.high && is_outdone_by(claim, other);
        });
    }
    const std::array<const Signature*, 2> signatures = {&signatures_[claim.first],
                                                        &signatures_[claim.second]};
    for (std::size_t group = 0; group < group_limits_.size(); ++group) {
        if (!may_outdo(group_limits_[group], claim.high, signatures)) {
            continue;
        }
        const std::size_t end = std::min((group + 1) * group_blocks, blocks_.size());
        for (std::size_t i = group * group_blocks; i < end; ++i) {
            if (may_outdo(limits_[i], claim.high, signatures) && outdoes(blocks_[i], claim)) {
                return true;
            }
        }
    }
    return false;
}

/// Whether one of a block may outdo a claim of these signatures, as far as its limits tell.
bool LongClaims::may_outdo(const Limits& limits, Rank high,
                           const std::array<const Signature*, 2>& signatures) const {
    if (limits.largest_low < high) {
        return false;
    }
    for (std::size_t i = 0; i < stands_.size(); ++i) {
        const bool may = stands_[i] == Stand::contains ? signatures[i]->is_within(limits.places[i])
                                                       : limits.places[i].is_within(*signatures[i]);
        if (!may) {
            return false;
        }
    }
    return true;
}

/// Whether one of a block outdoes a claim.
bool LongClaims::outdoes(const Block& block, const Claim& claim) const {
    Bits left;
    left.fill(~std::uint64_t{0});
    for (std::size_t i = 0; i < stands_.size(); ++i) {
        const Signature& signature = signatures_[itemset(claim, i)];
        const Place& place = block.places[i];
        if ((stands_[i] == Stand::contains && !keep_those_with(place, signature, left)) ||
            (stands_[i] == Stand::within && !keep_those_within(place, signature, left))) {
            return false;
        }
    }
    const std::size_t strong = strong_enough(block, claim.high);
    for (std::size_t word = 0; 64 * word < strong; ++word) {
        for (std::uint64_t rest = left[word]; rest != 0; rest &= rest - 1) {
            const std::size_t i = 64 * word + static_cast<std::size_t>(std::countr_zero(rest));
            if (i >= strong) {
                return false;
            }
            if (is_outdone_by(claim, claims_[block.begin + i])) {
                return true;
            }
        }
    }
    return false;
}

/// How many claims of a block, the first ones, have a `low` of at least `high`.
std::size_t LongClaims::strong_enough(const Block& block, Rank high) const {
    const std::span claims = std::span(claims_).subspan(block.begin, block.end - block.begin);
    const auto weak =
        std::ranges::partition_point(claims, [=](const Claim& claim) { return claim.low >= high; });
    return static_cast<std::size_t>(weak - claims.begin());
}

/// Takes out of `left` the claims that lack a column of `signature`. Returns whether any is left.
bool LongClaims::keep_those_with(const Place& place, const Signature& signature, Bits& left) {
    bool is_any_left = true;
    signature.for_each([&](std::size_t column) {
        const Bits& with = place.claims_with_column[place.position[column]];
        std::uint64_t any = 0;
        for (std::size_t word = 0; word < block_words; ++word) {
            left[word] &= with[word];
            any |= left[word];
        }
        is_any_left = any != 0;
        return is_any_left;
    });
    return is_any_left;
}

/// Takes out of `left` the claims that have a column which is not in `signature`. Returns whether any is
/// left.
bool LongClaims::keep_those_within(const Place& place, const Signature& signature, Bits& left) {
    for (std::size_t i = 0; i < place.present.size(); ++i) {
        if (signature.has(place.present[i])) {
            continue;
        }
        const Bits& with = place.claims_with_column[i];
        std::uint64_t any = 0;
        for (std::size_t word = 0; word < block_words; ++word) {
            left[word] &= ~with[word];
            any |= left[word];
        }
        if (any == 0) {
            return false;
        }
    }
    return true;
}

/// Whether `other`, which is strong enough, outdoes a claim.
bool LongClaims::is_outdone_by(const Claim& claim, const Claim& other) const {
    if (other.first == claim.first && other.second == claim.second) {
        return false;
    }
    for (std::size_t i = 0; i < stands_.size(); ++i) {
        if (!stands(itemset(other, i), stands_[i], itemset(claim, i))) {
            return false;
        }
    }
    return true;
}

/// Whether an itemset stands to another one as asked.
bool LongClaims::stands(ItemsetId itemset, Stand stand, ItemsetId other) const {
    if (itemset == other || stand == Stand::equals) {
        return itemset == other;
    }
    const ItemsetId inner = stand == Stand::contains ? other : itemset;
    const ItemsetId outer = stand == Stand::contains ? itemset : other;
    return signatures_[inner].is_within(signatures_[outer]) &&
           is_contained(itemsets_[inner], itemsets_[outer]);
}

}  // namespace korv::tools
