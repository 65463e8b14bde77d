#include "app/globals.h"
#include "app/lattice.h"

namespace korv {

namespace {

/// The confidence if it is below 1, otherwise 1: infinity and NaN become 1 as well.
double capped(double confidence) {
    return confidence < 1.0 ? confidence : 1.0;
}

/// Chooses between the forms of a rule: that of a closed itemset f1 as base, and that of its essential
/// itemset e1.
struct PairForms {
    bool closed;

    Form operator()(Form of_closed, Form of_essential) const { return closed ? of_closed : of_essential; }
};

}  // namespace

RuleRecorder Lattice::inter_node_rules() {
    return {inter_exact_out, inter_approx_out, minconf, rule_counts};
}

void Lattice::generate_inter_node_rules() {
    for (const LatticeEntry& entry : hash_table) {
        if (entry.successors.size() == 2) {
            generer_regles_inter_IFD_deux_succ(entry);
        } else {
            generer_regles_tous_succ(entry);
        }
    }
}

/// The rules between the node of an entry and each of its successors, one after the other.
void Lattice::generer_regles_tous_succ(const LatticeEntry& entry) {
    for (const NodeRef successor : entry.successors) {
        generer_regles_inter_IFD(entry.node, successor);
        generer_regles_itemset_ess(entry.node, successor);
    }
}

void Lattice::generer_regles_inter_IFD(NodeRef node, NodeRef successor) {
    generer_regles_paire(node, successor->first, successor->second.support, true);
}

void Lattice::generer_regles_itemset_ess(NodeRef node, NodeRef successor) {
    for (const Itemset& essential : successor->second.essentials) {
        generer_regles_paire(node, essential, successor->second.support, false);
    }
}

void Lattice::generer_regles_inter_IFD_deux_succ(const LatticeEntry& entry) {
    const NodeRef first = entry.successors.front();
    const NodeRef second = entry.successors.back();
    const Itemset rest = difference(entry.itemset(), first->first);
    if (rest != second->first) {
        generer_regles_tous_succ(entry);
        return;
    }
    // Not asked for: the rest is the second successor, and a support of 0 counts as known here.
    get_rules_inter_itemset(rest, second->second.support, first->first, first->second.support,
                            entry.node->second.support, true);
    generer_regles_itemset_ess(entry.node, first);
    generer_regles_itemset_ess(entry.node, second);
}

/// The rules between the closed itemset f2 of `node` and a base within it: its successor f1, or an essential
/// itemset of that, either of support s1.
void Lattice::generer_regles_paire(NodeRef node, const Itemset& base, Count s1, bool ifd_pair) {
    const Itemset rest = difference(node->first, base);
    const Count s2 = node->second.support;
    // Every transaction with an item of f2 but none of the base holds an item of the difference.
    Count lower = s2 - s1;
    Count upper = s2;
    const Count r = support_of_difference(rest, lower, upper);
    if (r != 0) {
        get_rules_inter_itemset(rest, r, base, s1, s2, ifd_pair);
    } else {
        get_rules_inter_supp_approx(rest, base, s1, s2, lower, upper, ifd_pair);
    }
}

void Lattice::get_rules_inter_itemset(const Itemset& difference, Count r, const Itemset& base, Count s1,
                                      Count s2, bool ifd_pair) {
    const Count N = nbrtransaction;
    const Count both = s1 + r - s2;         // transactions with an item of the base and one of the difference
    const Count neither = N - s2;           // with no item of f2
    const Count only_base = s2 - r;         // with an item of the base, but none of the difference
    const Count only_difference = s2 - s1;  // with an item of the difference, but none of the base
    const Sides D(difference);
    const Sides B(base);
    PairForms form = {ifd_pair};
    RuleRecorder rules = inter_node_rules();

    if (both >= minsupp) {
        // Approximative even with a confidence of 1, as is not(B)-->not(D) below.
        rules.approximative(form(Form::R132, Form::R122), D.plain, B.plain, both, ratio(both, r));
        rules.by_confidence(form(Form::R131, Form::R121), B.plain, D.plain, both, ratio(both, s1));
    }
    if (neither >= minsupp) {
        rules.approximative(form(Form::R231, Form::R221), B.negated, D.negated, neither,
                            ratio(neither, N - s1));
        // Counted as R232 for an essential itemset too; and once this rule is written, the rules below are
        // counted as those of a closed itemset. The printed rules are not affected.
        if (r != N && rules.by_confidence(Form::R232, D.negated, B.negated, neither, ratio(neither, N - r))) {
            form.closed = true;
        }
    }
    if (only_base >= minsupp) {
        rules.by_confidence(form(Form::R331, Form::R321), B.plain, D.negated, only_base,
                            ratio(only_base, s1));
        if (r != N) {
            rules.by_confidence(form(Form::R432, Form::R421), D.negated, B.plain, only_base,
                                ratio(only_base, N - r));
        }
    }
    if (only_difference >= minsupp) {
        rules.by_confidence(form(Form::R431, Form::R422), B.negated, D.plain, only_difference,
                            ratio(only_difference, N - s1));
        rules.by_confidence(form(Form::R332, Form::R322), D.plain, B.negated, only_difference,
                            ratio(only_difference, r));
    }
}

void Lattice::get_rules_inter_supp_approx(const Itemset& difference, const Itemset& base, Count s1, Count s2,
                                          Count lo, Count hi, bool ifd_pair) {
    const Count N = nbrtransaction;
    const SupportInterval both = {s1 + lo - s2, s1 + hi - s2};
    const Count neither = N - s2;
    const SupportInterval only_base = {s2 - hi, s2 - lo};
    const Count only_difference = s2 - s1;
    const Sides D(difference);
    const Sides B(base);
    const PairForms form = {ifd_pair};
    RuleRecorder rules = inter_node_rules();

    if (both.low >= minsupp) {
        // The lower support goes with the upper bound of the difference and the other way round: wider than
        // need be, and kept so.
        rules.approximated(form(Form::R132, Form::R122), D.plain, B.plain, both,
                           {ratio(both.low, hi), capped(ratio(both.high, lo))});
        rules.approximated(form(Form::R131, Form::R121), B.plain, D.plain, both,
                           {ratio(both.low, s1), ratio(both.high, s1)});
    }
    if (neither >= minsupp) {
        rules.approximative(form(Form::R231, Form::R221), B.negated, D.negated, neither,
                            ratio(neither, N - s1));
        if (hi != N) {
            rules.approximated(form(Form::R232, Form::R222), D.negated, B.negated, neither,
                               {ratio(neither, N - lo), ratio(neither, N - hi)});
        }
    }
    if (only_base.low >= minsupp) {
        // Capped before the lower end is compared with the minimum: 0/0 counts as 1 and passes.
        rules.approximated(form(Form::R331, Form::R321), B.plain, D.negated, only_base,
                           {capped(ratio(only_base.low, s1)), capped(ratio(only_base.high, s1))});
        if (hi != N) {
            // Both ends divide the lower support, so the upper end is the smallest true confidence and no
            // bound from above. Rule files are compared: it stays.
            rules.approximated(form(Form::R432, Form::R421), D.negated, B.plain, only_base,
                               {ratio(only_base.low, N - lo), capped(ratio(only_base.low, N - hi))});
        }
    }
    if (only_difference >= minsupp) {
        // An exact not(B)-->D is counted as its mirror image D-->not(B). Reports are compared: it stays.
        const CountedAs counted_as = {.exact = form(Form::R332, Form::R322),
                                      .approximative = form(Form::R431, Form::R422)};
        rules.by_confidence(counted_as, B.negated, D.plain, only_difference, ratio(only_difference, N - s1));
        rules.approximated(form(Form::R332, Form::R322), D.plain, B.negated, only_difference,
                           {ratio(only_difference, hi), ratio(only_difference, lo)});
    }
}

}  // namespace korv
