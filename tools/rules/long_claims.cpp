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
        blocks_.push_back(block_of(begin, std::min(begin + block_claims, claims_.size())));
    }
}

/// Brings the claims into the order of their signatures: first by the itemset that must lie within that of
/// another claim, since what all claims of a block have of it says most.
void LongClaims::sort_by_signature() {
    const std::size_t major = stands_[1] == Stand::within ? 1 : 0;
    std::ranges::sort(claims_, [&](const Claim& a, const Claim& b) {
        const auto order = signatures_[itemset(a, major)] <=> signatures_[itemset(b, major)];
        return order != 0 ? order < 0
                          : signatures_[itemset(a, 1 - major)] < signatures_[itemset(b, 1 - major)];
    });
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
    std::array<Bits, Signature::columns> bits = {};
    std::array<std::size_t, Signature::columns> frequencies = {};
    for (std::size_t i = 0; i < claims.size(); ++i) {
        const Signature& signature = signatures_[itemset(claims[i], number)];
        place.all.intersect(signature);
        place.some.unite(signature);
        signature.for_each([&](std::size_t column) {
            bits[column][i / 64] |= std::uint64_t{1} << i % 64;
            ++frequencies[column];
            return true;
        });
    }
    place.some.for_each([&](std::size_t column) {
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
    return std::ranges::any_of(
        blocks_, [&](const Block& block) { return may_outdo(block, claim) && outdoes(block, claim); });
}

/// Whether one of a block may outdo a claim, as far as its strength and what is common to its claims tell.
bool LongClaims::may_outdo(const Block& block, const Claim& claim) const {
    if (claims_[block.begin].low < claim.high) {
        return false;
    }
    for (std::size_t i = 0; i < stands_.size(); ++i) {
        if (!may_stand(stands_[i], block.places[i], signatures_[itemset(claim, i)])) {
            return false;
        }
    }
    return true;
}

/// Whether the itemset of one of a block may stand to one of this signature as asked.
bool LongClaims::may_stand(Stand stand, const Place& place, const Signature& signature) {
    switch (stand) {
        case Stand::contains:
            return signature.is_within(place.some);
        case Stand::within:
            return place.all.is_within(signature);
        case Stand::equals:
            break;
    }
    return true;
}

/// Whether one of a block outdoes a claim.
bool LongClaims::outdoes(const Block& block, const Claim& claim) const {
    Bits left = strong_enough(block, claim.high);
    for (std::size_t i = 0; i < stands_.size(); ++i) {
        const Signature& signature = signatures_[itemset(claim, i)];
        const Place& place = block.places[i];
        if ((stands_[i] == Stand::contains && !keep_those_with(place, signature, left)) ||
            (stands_[i] == Stand::within && !keep_those_within(place, signature, left))) {
            return false;
        }
    }
    for (std::size_t word = 0; word < block_words; ++word) {
        for (std::uint64_t rest = left[word]; rest != 0; rest &= rest - 1) {
            const std::size_t i = 64 * word + static_cast<std::size_t>(std::countr_zero(rest));
            if (is_outdone_by(claim, claims_[block.begin + i])) {
                return true;
            }
        }
    }
    return false;
}

/// The claims of a block whose `low` is at least `high`.
LongClaims::Bits LongClaims::strong_enough(const Block& block, Rank high) const {
    const std::span claims = std::span(claims_).subspan(block.begin, block.end - block.begin);
    const auto weak =
        std::ranges::partition_point(claims, [=](const Claim& claim) { return claim.low >= high; });
    const auto strong = static_cast<std::size_t>(weak - claims.begin());
    Bits bits = {};
    for (std::size_t word = 0; 64 * word < strong; ++word) {
        const std::size_t count = strong - 64 * word;
        bits[word] = count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
    }
    return bits;
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
