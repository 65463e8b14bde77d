#include "rules/outdone_claims.h"

#include <algorithm>

#include "rules/long_claims.h"
#include "rules/short_claims.h"

namespace korv::tools {

OutdoneClaims::OutdoneClaims(const ItemsetPool& itemsets, const std::vector<char>& is_wanted,
                             std::size_t threads)
    : itemsets_(itemsets),
      pairs_of_a_pass_(ShortClaims::default_pairs_of_a_pass / threads),
      parts_(itemsets, is_wanted),
      signatures_(itemsets, is_wanted) {}

void OutdoneClaims::mark(std::span<Claim> claims, Outdoing outdoing, std::vector<char>& is_outdone) const {
    const auto first_long = std::stable_partition(
        claims.begin(), claims.end(), [&](const Claim& claim) { return is_short(claim, outdoing); });
    const auto shorts = static_cast<std::size_t>(first_long - claims.begin());
    ShortClaims(parts_, itemsets_.size(), pairs_of_a_pass_)
        .mark_outdone(claims.first(shorts), outdoing, is_outdone);
    if (shorts == claims.size()) {
        return;
    }
    if (outdoing.second == Stand::equals) {
        mark_long_of_equal_second(claims, outdoing, is_outdone);
    } else {
        mark_long(claims, shorts, outdoing, is_outdone);
    }
}

/// Marks the claims that are outdone where one of the two is long. The first `shorts` claims are short.
void OutdoneClaims::mark_long(std::span<Claim> claims, std::size_t shorts, Outdoing outdoing,
                              std::vector<char>& is_outdone) const {
    const auto ask = [&](std::span<const Claim> stronger, std::span<const Claim> asking) {
        const LongClaims index(itemsets_, signatures_, stronger, outdoing);
        for (const Claim& claim : asking) {
            if (claim.high != unreachable && is_outdone[claim.rule] == 0 && index.outdo(claim)) {
                is_outdone[claim.rule] = 1;
            }
        }
    };
    ask(claims.first(shorts), claims.subspan(shorts));
    ask(claims.subspan(shorts), claims);
}

/// The same, for the claims of each second itemset by themselves.
void OutdoneClaims::mark_long_of_equal_second(std::span<Claim> claims, Outdoing outdoing,
                                              std::vector<char>& is_outdone) const {
    std::ranges::sort(claims, [&](const Claim& a, const Claim& b) {
        return a.second != b.second ? a.second < b.second : is_short(a, outdoing) && !is_short(b, outdoing);
    });
    for (std::size_t begin = 0; begin < claims.size();) {
        std::size_t end = begin;
        std::size_t shorts = 0;
        for (; end < claims.size() && claims[end].second == claims[begin].second; ++end) {
            shorts += is_short(claims[end], outdoing) ? 1 : 0;
        }
        if (shorts < end - begin) {
            mark_long(claims.subspan(begin, end - begin), shorts, outdoing, is_outdone);
        }
        begin = end;
    }
}

bool OutdoneClaims::is_short(const Claim& claim, Outdoing outdoing) const {
    const std::size_t firsts = parts_[claim.first].size();
    const std::size_t seconds = outdoing.second == Stand::equals ? 1 : parts_[claim.second].size();
    return firsts != 0 && seconds != 0 && firsts * seconds <= most_pairs_of_parts;
}

}  // namespace korv::tools
