// Any bytes as a condition: the parser ends with a condition or an Error. Of a condition and its negation
// never both hold, and one does where everything is known.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/error.h"
#include "rules/where.h"

namespace {

using korv::Count;
using korv::tools::Contingency;
using korv::tools::FoundRule;
using korv::tools::Side;
using korv::tools::Where;

constexpr std::size_t items = 3;
constexpr Count transactions = 10;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

FoundRule rule_of(const Contingency& low, const Contingency& high) {
    return {Side(0, false), Side(1, true), low, high, korv::Form::R311};
}

void require_opposite(const Where& where, const Where& opposite) {
    const FoundRule known = rule_of({4, 5, 3}, {4, 5, 3});
    require(where.holds(known, items, transactions) != opposite.holds(known, items, transactions));
    for (const FoundRule& rule : {rule_of({4, 5, 1}, {4, 7, 3}), rule_of({4, 0, 0}, {4, 3, 3}),
                                  rule_of({4, 5, 4}, {4, 5, 4}), rule_of({0, 0, 0}, {0, 0, 0})}) {
        require(!where.holds(rule, items, transactions) || !opposite.holds(rule, items, transactions));
    }
}

/// Whether a text is a condition.
bool is_condition(const std::string& text) {
    try {
        korv::tools::parse_where(text);
        return true;
    } catch (const korv::tools::Error&) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    const std::string negated = "not (" + text + ")";
    // One pair of parentheses more may be one too many. Parentheses around what is no condition may make one:
    // "lift > 1) or (lift < 1".
    if (is_condition(text) && is_condition(negated)) {
        require_opposite(korv::tools::parse_where(text), korv::tools::parse_where(negated));
    }
    return 0;
}
