#include <algorithm>

#include "app/globals.h"
#include "app/lattice.h"

namespace korv {

namespace {

/// The rules of support 0 by construction: no transaction holds an item of the difference D and none of the
/// essential itemset E. Only thresholds of exactly 0 let them through.
void zero_support_pair(RuleRecorder& rules, const Sides& D, const Sides& E, Count minsupp, double minconf) {
    if (minsupp != 0 || minconf != 0.0) {
        return;
    }
    rules.approximative(Form::R411, E.negated, D.plain, 0, 0.0);
    rules.approximative(Form::R312, D.plain, E.negated, 0, 0.0);
}

}  // namespace

RuleRecorder Lattice::intra_node_rules() {
    return {intra_exact_out, intra_approx_out, minconf, rule_counts};
}

void Lattice::generate_intra_node_rules() {
    for (NodeRef node = dci_map.begin(); node != dci_map.end(); ++node) {
        const auto& essentials = node->second.essentials;
        if (essentials.size() == 2) {
            generer_regles_intra_noeud_deux_ess(node);
            continue;
        }
        for (const Itemset& essential : essentials) {
            generer_regles_intra_noeud(node, essential);
        }
    }
}

void Lattice::generer_regles_intra_noeud(NodeRef node, const Itemset& essential) {
    const Itemset rest = difference(node->first, essential);
    const Count s = node->second.support;
    Count lower = 0;
    Count upper = s;
    const Count r = support_of_difference(rest, lower, upper);
    if (r != 0) {
        get_rules_intra_node(rest, r, essential, s);
    } else {
        get_rules_intra_supp_approx(rest, essential, s, lower, upper);
    }
}

void Lattice::generer_regles_intra_noeud_deux_ess(NodeRef node) {
    const Itemset& first = node->second.essentials.front();
    const Itemset& second = node->second.essentials.back();
    const Itemset rest = difference(node->first, first);
    if (rest == second) {
        // Not asked for: the support of an essential itemset is that of its class, also where the classes
        // contradict each other and an answer would differ.
        const Count s = node->second.support;
        get_rules_intra_node(rest, s, first, s);
        return;
    }
    generer_regles_intra_noeud(node, first);
    generer_regles_intra_noeud(node, second);
}

void Lattice::get_rules_intra_node(const Itemset& difference, Count r, const Itemset& essential, Count s) {
    const Count N = nbrtransaction;
    const Count neither = N - s;         // transactions without an item of f1
    const Count only_essential = s - r;  // with an item of e1, but none of f1-e1
    const Sides D(difference);
    const Sides E(essential);
    RuleRecorder rules = intra_node_rules();

    if (r >= minsupp) {
        rules.exact(Form::R112, D.plain, E.plain, r);
        rules.by_confidence(Form::R111, E.plain, D.plain, r, ratio(r, s));
    }
    if (neither >= minsupp) {
        rules.exact(Form::R211, E.negated, D.negated, neither);
        if (r != N) {
            // The approximative R212 is counted with the R111. Reports are compared: it stays.
            const CountedAs counted_as = {.exact = Form::R212, .approximative = Form::R111};
            rules.by_confidence(counted_as, D.negated, E.negated, neither, ratio(neither, N - r));
        }
    }
    if (only_essential < minsupp) {
        return;
    }
    // Never exact, not even with a confidence of 1.
    rules.approximative(Form::R311, E.plain, D.negated, only_essential, ratio(only_essential, s));
    if (r != N) {
        rules.by_confidence(Form::R412, D.negated, E.plain, only_essential, ratio(only_essential, N - r));
    }
    zero_support_pair(rules, D, E, minsupp, minconf);
}

void Lattice::get_rules_intra_supp_approx(const Itemset& difference, const Itemset& essential, Count s,
                                          Count lo, Count hi) {
    const Count N = nbrtransaction;
    const Count neither = N - s;
    const SupportInterval both = {lo, hi};
    const SupportInterval only_essential = {s - hi, s - lo};
    const Sides D(difference);
    const Sides E(essential);
    RuleRecorder rules = intra_node_rules();

    if (both.low >= minsupp) {
        rules.approximated_of_confidence_1(Form::R112, D.plain, E.plain, both);
        rules.approximated(Form::R111, E.plain, D.plain, both, {ratio(lo, s), ratio(hi, s)});
    }
    if (neither >= minsupp) {
        rules.exact(Form::R211, E.negated, D.negated, neither);
        if (hi != N) {
            rules.approximated(Form::R212, D.negated, E.negated, neither,
                               {ratio(neither, N - lo), ratio(neither, N - hi)});
        }
    }
    if (only_essential.low < minsupp) {
        return;
    }
    rules.approximated(Form::R311, E.plain, D.negated, only_essential,
                       {ratio(only_essential.low, s), ratio(only_essential.high, s)});
    if (hi != N) {
        // Each numerator goes with the denominator of the other end: wider than need be, and kept so. With
        // 0.0 as the first operand of the maximum, a NaN becomes 0.
        rules.approximated(Form::R412, D.negated, E.plain, only_essential,
                           {std::max(0.0, ratio(only_essential.low, N - lo)),
                            std::min(1.0, ratio(only_essential.high, N - hi))});
    }
    zero_support_pair(rules, D, E, minsupp, minconf);
}

}  // namespace korv
