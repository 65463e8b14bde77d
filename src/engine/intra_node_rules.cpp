#include <algorithm>

#include "engine/rule_gate.h"
#include "engine/rule_makers.h"

namespace korv {

namespace {

/// The rules of support 0 by construction: no transaction holds an item of the difference and none of the
/// essential itemset. Only thresholds of exactly 0 let them through.
void zero_support_pair(RuleGate& rules, const RuleSettings& settings) {
    if (settings.minsupp != 0 || settings.minconf != 0.0) {
        return;
    }
    rules.approximative(Form::R411, 0, 0.0);
    rules.approximative(Form::R312, 0, 0.0);
}

}  // namespace

void get_rules_intra_node(const Pair& pair, const RuleSettings& settings, RuleSink& sink) {
    const Count minsupp = settings.minsupp;
    const Count N = settings.transactions;
    const Count s = pair.support;
    const Count r = pair.difference_support.lower;
    const Count neither = N - s;         // transactions without an item of f1
    const Count only_essential = s - r;  // with an item of e1, but none of f1-e1
    RuleGate rules(settings.minconf, sink);

    if (r >= minsupp) {
        rules.exact(Form::R112, r);
        rules.by_confidence(Form::R111, r, ratio(r, s));
    }
    if (neither >= minsupp) {
        rules.exact(Form::R211, neither);
        if (r != N) {
            // The approximative R212 is counted with the R111. Reports are compared: it stays.
            rules.by_confidence({Form::R212, Form::R212, Form::R111}, neither, ratio(neither, N - r));
        }
    }
    if (only_essential < minsupp) {
        return;
    }
    // Never exact, not even with a confidence of 1.
    rules.approximative(Form::R311, only_essential, ratio(only_essential, s));
    if (r != N) {
        rules.by_confidence(Form::R412, only_essential, ratio(only_essential, N - r));
    }
    zero_support_pair(rules, settings);
}

void get_rules_intra_supp_approx(const Pair& pair, const RuleSettings& settings, RuleSink& sink) {
    const Count minsupp = settings.minsupp;
    const Count N = settings.transactions;
    const Count s = pair.support;
    const auto [lo, hi] = pair.difference_support;
    const Count neither = N - s;
    const Estimate<Count> both = between(lo, hi);
    const Estimate<Count> only_essential = between(s - hi, s - lo);
    RuleGate rules(settings.minconf, sink);

    if (both.low >= minsupp) {
        rules.approximated_of_confidence_1(Form::R112, both);
        rules.approximated(Form::R111, both, {ratio(lo, s), ratio(hi, s)});
    }
    if (neither >= minsupp) {
        rules.exact(Form::R211, neither);
        if (hi != N) {
            rules.approximated(Form::R212, known(neither), {ratio(neither, N - lo), ratio(neither, N - hi)});
        }
    }
    if (only_essential.low < minsupp) {
        return;
    }
    rules.approximated(Form::R311, only_essential,
                       {ratio(only_essential.low, s), ratio(only_essential.high, s)});
    if (hi != N) {
        // Each numerator goes with the denominator of the other end: wider than need be, and kept so. With
        // 0.0 as the first operand of the maximum, a NaN becomes 0.
        rules.approximated(Form::R412, only_essential,
                           {std::max(0.0, ratio(only_essential.low, N - lo)),
                            std::min(1.0, ratio(only_essential.high, N - hi))});
    }
    zero_support_pair(rules, settings);
}

}  // namespace korv
