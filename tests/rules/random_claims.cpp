#include "rules/random_claims.h"

#include <algorithm>
#include <set>
#include <utility>

namespace korv::test {

using tools::Claim;
using tools::ItemsetId;
using tools::Outdoing;
using tools::Rank;
using tools::Stand;

namespace {

std::uint32_t below(std::size_t bound, std::mt19937& random) {
    return static_cast<std::uint32_t>(random() % bound);
}

Itemset random_itemset(const ClaimSetShape& shape, std::mt19937& random) {
    std::set<Item> chosen;
    for (std::size_t size = 1 + below(shape.most_items, random); size > 0; --size) {
        chosen.insert(1 + below(shape.items, random));
    }
    return {chosen.begin(), chosen.end()};
}

/// The itemset of one of the claims, with one or two items less or more if it is large enough.
Itemset related_itemset(const ClaimSet& set, ItemsetId id, const ClaimSetShape& shape, std::mt19937& random) {
    const ItemSpan earlier = set.itemsets[id];
    std::set<Item> chosen(earlier.begin(), earlier.end());
    for (std::uint32_t changes = below(3, random); changes > 0; --changes) {
        if (below(2, random) == 0 && chosen.size() < shape.most_items) {
            chosen.insert(1 + below(shape.items, random));
        } else if (chosen.size() > 1) {
            chosen.erase(chosen.begin());
        }
    }
    return {chosen.begin(), chosen.end()};
}

bool stands(ItemSpan a, Stand stand, ItemSpan b) {
    switch (stand) {
        case Stand::contains:
            return is_contained(b, a);
        case Stand::within:
            return is_contained(a, b);
        case Stand::equals:
            break;
    }
    return std::ranges::equal(a, b);
}

}  // namespace

ClaimSet random_claims(const ClaimSetShape& shape, std::mt19937& random) {
    ClaimSet set;
    std::set<std::pair<ItemsetId, ItemsetId>> seen;
    for (std::size_t i = 0; i < shape.claims; ++i) {
        const bool is_related = !set.claims.empty() && below(4, random) != 0;
        const Claim like = is_related ? set.claims[below(set.claims.size(), random)] : Claim{};
        const Itemset first =
            is_related ? related_itemset(set, like.first, shape, random) : random_itemset(shape, random);
        const Itemset second =
            is_related ? related_itemset(set, like.second, shape, random) : random_itemset(shape, random);
        const ItemsetId first_id = set.itemsets.intern(first);
        const ItemsetId second_id = set.itemsets.intern(second);
        if (!seen.emplace(first_id, second_id).second) {
            continue;
        }
        const Rank low = 1 + below(4, random);
        const Rank high = below(8, random) == 0 ? tools::unreachable : low + below(2, random);
        set.claims.push_back({first_id, second_id, low, high, static_cast<std::uint32_t>(set.claims.size())});
    }
    return set;
}

std::vector<char> outdone_by_definition(const ClaimSet& set, Outdoing outdoing) {
    std::vector<char> is_outdone;
    for (const Claim& claim : set.claims) {
        const bool is_one = std::ranges::any_of(set.claims, [&](const Claim& other) {
            return &other != &claim && other.low >= claim.high &&
                   stands(set.itemsets[other.first], outdoing.first, set.itemsets[claim.first]) &&
                   stands(set.itemsets[other.second], outdoing.second, set.itemsets[claim.second]);
        });
        is_outdone.push_back(is_one ? 1 : 0);
    }
    return is_outdone;
}

}  // namespace korv::test
