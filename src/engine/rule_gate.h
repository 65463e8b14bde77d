#pragma once

#include "base/itemset.h"
#include "base/support_bounds.h"
#include "engine/rule.h"

namespace korv {

/// The form of a rule as printed, and the forms under which it is counted when it turns out exact and when it
/// does not. Mostly the same form; where they differ, a comment of the maker says so.
struct CountedForm {
    Form printed;
    Form if_exact;
    Form if_approximative;

    CountedForm(Form form) : CountedForm(form, form) {}  // NOLINT(google-explicit-constructor)
    CountedForm(Form as_printed, Form as_counted) : CountedForm(as_printed, as_counted, as_counted) {}
    CountedForm(Form as_printed, Form exact, Form approximative)
        : printed(as_printed), if_exact(exact), if_approximative(approximative) {}
};

/// Bounds on a confidence.
struct ConfidenceBounds {
    double lower;
    double upper;
};

/// Tells the kind of each rule that is examined, and hands it to a sink if its confidence suffices.
///
/// Each call that takes a confidence drops the rule when it (of bounds the lower one) is below the minimum;
/// NaN is below every minimum. Whether the support suffices is for the caller to test.
class RuleGate {
public:
    /// Refers to the sink.
    RuleGate(double minconf, RuleSink& sink) : minconf_(minconf), sink_(sink) {}

    /// A rule of confidence 1 by construction, so without a test.
    void exact(Form form, Count support);

    /// A rule that is approximative even if its confidence should be 1.
    void approximative(const CountedForm& form, Count support, double confidence);

    /// A rule that is exact if its confidence is 1, approximative otherwise. True when it passed.
    bool by_confidence(const CountedForm& form, Count support, double confidence);

    /// An approximated rule. It stays approximated even if its bounds meet.
    void approximated(Form form, const Estimate<Count>& support, const ConfidenceBounds& confidence);

    /// An approximated rule of confidence 1 by construction, so without a test.
    void approximated_of_confidence_1(Form form, const Estimate<Count>& support);

private:
    bool suffices(double confidence) const { return confidence >= minconf_; }

    const double minconf_;
    RuleSink& sink_;
};

/// The quotient of two numbers of transactions, in double precision: infinite, or NaN, when `denominator` is
/// 0.
double ratio(Count numerator, Count denominator);

}  // namespace korv
