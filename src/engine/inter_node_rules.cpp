#include "engine/rule_gate.h"
#include "engine/rule_makers.h"

namespace korv {

namespace {

/// The confidence if it is below 1, otherwise 1: infinity and NaN become 1 as well.
double capped(double confidence) {
    return confidence < 1.0 ? confidence : 1.0;
}

/// Chooses between the forms of a rule: that of a closed itemset f1 as base, and that of its essential
/// itemset e1.
class PairForms {
public:
    explicit PairForms(PairKind kind)
        : is_closed_(kind == PairKind::successor), counts_as_closed_(is_closed_) {}

    Form printed(Form of_closed, Form of_essential) const { return is_closed_ ? of_closed : of_essential; }

    CountedForm operator()(Form of_closed, Form of_essential) const {
        return {printed(of_closed, of_essential), counts_as_closed_ ? of_closed : of_essential};
    }

    /// From now on rules are counted under the form of a closed itemset.
    void count_as_closed() { counts_as_closed_ = true; }

private:
    const bool is_closed_;
    bool counts_as_closed_;
};

}  // namespace

void get_rules_inter_itemset(const Pair& pair, const RuleSettings& settings, RuleSink& sink) {
    const Count minsupp = settings.minsupp;
    const Count N = settings.transactions;
    const Count s1 = pair.base_support;
    const Count s2 = pair.support;
    const Count r = pair.difference_support.lower;
    const Count both = s1 + r - s2;         // transactions with an item of the base and one of the difference
    const Count neither = N - s2;           // with no item of f2
    const Count only_base = s2 - r;         // with an item of the base, but none of the difference
    const Count only_difference = s2 - s1;  // with an item of the difference, but none of the base
    PairForms form(pair.kind);
    RuleGate rules(settings.minconf, sink);

    if (both >= minsupp) {
        // Approximative even with a confidence of 1, as is not(B)-->not(D) below.
        rules.approximative(form(Form::R132, Form::R122), both, ratio(both, r));
        rules.by_confidence(form(Form::R131, Form::R121), both, ratio(both, s1));
    }
    if (neither >= minsupp) {
        rules.approximative(form(Form::R231, Form::R221), neither, ratio(neither, N - s1));
        // Counted as R232 for an essential itemset too; and once this rule is written, the rules below are
        // counted as those of a closed itemset. The printed rules are not affected.
        const CountedForm fourth = {form.printed(Form::R232, Form::R222), Form::R232};
        if (r != N && rules.by_confidence(fourth, neither, ratio(neither, N - r))) {
            form.count_as_closed();
        }
    }
    if (only_base >= minsupp) {
        rules.by_confidence(form(Form::R331, Form::R321), only_base, ratio(only_base, s1));
        if (r != N) {
            rules.by_confidence(form(Form::R432, Form::R421), only_base, ratio(only_base, N - r));
        }
    }
    if (only_difference >= minsupp) {
        rules.by_confidence(form(Form::R431, Form::R422), only_difference, ratio(only_difference, N - s1));
        rules.by_confidence(form(Form::R332, Form::R322), only_difference, ratio(only_difference, r));
    }
}

void get_rules_inter_supp_approx(const Pair& pair, const RuleSettings& settings, RuleSink& sink) {
    const Count minsupp = settings.minsupp;
    const Count N = settings.transactions;
    const Count s1 = pair.base_support;
    const Count s2 = pair.support;
    const auto [lo, hi] = pair.difference_support;
    const Estimate<Count> both = between(s1 + lo - s2, s1 + hi - s2);
    const Count neither = N - s2;
    const Estimate<Count> only_base = between(s2 - hi, s2 - lo);
    const Count only_difference = s2 - s1;
    const PairForms form(pair.kind);
    RuleGate rules(settings.minconf, sink);

    if (both.low >= minsupp) {
        // The lower support goes with the upper bound of the difference and the other way round: wider than
        // need be, and kept so.
        rules.approximated(form.printed(Form::R132, Form::R122), both,
                           {ratio(both.low, hi), capped(ratio(both.high, lo))});
        rules.approximated(form.printed(Form::R131, Form::R121), both,
                           {ratio(both.low, s1), ratio(both.high, s1)});
    }
    if (neither >= minsupp) {
        rules.approximative(form(Form::R231, Form::R221), neither, ratio(neither, N - s1));
        if (hi != N) {
            rules.approximated(form.printed(Form::R232, Form::R222), known(neither),
                               {ratio(neither, N - lo), ratio(neither, N - hi)});
        }
    }
    if (only_base.low >= minsupp) {
        // Capped before the lower end is compared with the minimum: 0/0 counts as 1, and passes any
        // minimum up to 1.
        rules.approximated(form.printed(Form::R331, Form::R321), only_base,
                           {capped(ratio(only_base.low, s1)), capped(ratio(only_base.high, s1))});
        if (hi != N) {
            // Both ends divide the lower support, so the upper end is the smallest true confidence and no
            // bound from above. Rule files are compared: it stays.
            rules.approximated(form.printed(Form::R432, Form::R421), only_base,
                               {ratio(only_base.low, N - lo), capped(ratio(only_base.low, N - hi))});
        }
    }
    if (only_difference >= minsupp) {
        // An exact not(B)-->D is counted as its mirror image D-->not(B). Reports are compared: it stays.
        const Form seventh = form.printed(Form::R431, Form::R422);
        const Form mirror_image = form.printed(Form::R332, Form::R322);
        rules.by_confidence({seventh, mirror_image, seventh}, only_difference,
                            ratio(only_difference, N - s1));
        rules.approximated(mirror_image, known(only_difference),
                           {ratio(only_difference, hi), ratio(only_difference, lo)});
    }
}

}  // namespace korv
