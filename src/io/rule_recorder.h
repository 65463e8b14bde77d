#pragma once

#include "base/itemset.h"
#include "engine/rule_catalogue.h"
#include "io/Output_Manager.h"
#include "io/rule_printing.h"

namespace korv {

/// The form under which a rule is counted when it turns out exact and when it does not. The same form as a
/// rule; where the two differ, the counters have always been kept so.
struct CountedAs {
    Form exact;
    Form approximative;
};

/// Writes, counts and totals the rules of one family (intra-node or inter-node): one call for each rule that
/// is examined, in the order of the output.
///
/// A rule without a printed confidence goes to the exact file, one with a confidence to the approximate file.
/// Each call that takes a confidence drops the rule when it (of an interval the lower end) is below the
/// minimum confidence; NaN is below every minimum. Whether the support suffices is for the caller to test.
class RuleRecorder {
public:
    RuleRecorder(Output_Manager& exact_out, Output_Manager& approx_out, double minconf, RuleCounts& counts);

    /// A rule of confidence 1 by construction, so without a test: rule line and support.
    void exact(Form form, const Side& premise, const Side& conclusion, Count support);

    /// A rule that is approximative even if its confidence should be 1: rule line, support, confidence.
    /// True when it was written.
    bool approximative(Form form, const Side& premise, const Side& conclusion, Count support,
                       double confidence);

    /// A rule that is exact if its confidence is 1, approximative otherwise. True when it was written.
    bool by_confidence(Form form, const Side& premise, const Side& conclusion, Count support,
                       double confidence);
    bool by_confidence(CountedAs counted_as, const Side& premise, const Side& conclusion, Count support,
                       double confidence);

    /// An approximated rule: rule line, support (an interval or known), confidence interval. Stays
    /// approximated even if the ends of its intervals coincide.
    void approximated(Form form, const Side& premise, const Side& conclusion, const SupportInterval& support,
                      const ConfidenceInterval& confidence);
    void approximated(Form form, const Side& premise, const Side& conclusion, Count support,
                      const ConfidenceInterval& confidence);

    /// An approximated rule of confidence 1 by construction: rule line and support interval, among the exact
    /// rules.
    void approximated_of_confidence_1(Form form, const Side& premise, const Side& conclusion,
                                      const SupportInterval& support);

private:
    bool suffices(double confidence) const;
    bool begin_approximated(Form form, const Side& premise, const Side& conclusion,
                            const ConfidenceInterval& confidence);
    void begin_record(Kind kind, Form form, const Side& premise, const Side& conclusion, Output_Manager& out);

    Output_Manager& exact_out_;
    Output_Manager& approx_out_;
    double minconf_;
    RuleCounts& counts_;
};

/// The quotient of two numbers of transactions, in double precision: infinite, or NaN, when `denominator` is
/// 0.
double ratio(Count numerator, Count denominator);

}  // namespace korv
