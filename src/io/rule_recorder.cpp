#include "io/rule_recorder.h"

namespace korv {

RuleRecorder::RuleRecorder(Output_Manager& exact_out, Output_Manager& approx_out, double minconf,
                           RuleCounts& counts)
    : exact_out_(exact_out), approx_out_(approx_out), minconf_(minconf), counts_(counts) {}

void RuleRecorder::exact(Form form, const Side& premise, const Side& conclusion, Count support) {
    begin_record(Kind::exact, form, premise, conclusion, exact_out_);
    afficher_supp(support, exact_out_);
}

bool RuleRecorder::approximative(Form form, const Side& premise, const Side& conclusion, Count support,
                                 double confidence) {
    if (!suffices(confidence)) {
        return false;
    }
    begin_record(Kind::appro, form, premise, conclusion, approx_out_);
    afficher_supp(support, approx_out_);
    afficher_conf(confidence, approx_out_);
    return true;
}

bool RuleRecorder::by_confidence(Form form, const Side& premise, const Side& conclusion, Count support,
                                 double confidence) {
    return by_confidence({.exact = form, .approximative = form}, premise, conclusion, support, confidence);
}

bool RuleRecorder::by_confidence(CountedAs counted_as, const Side& premise, const Side& conclusion,
                                 Count support, double confidence) {
    if (confidence != 1.0) {
        return approximative(counted_as.approximative, premise, conclusion, support, confidence);
    }
    if (!suffices(confidence)) {
        return false;
    }
    exact(counted_as.exact, premise, conclusion, support);
    return true;
}

void RuleRecorder::approximated(Form form, const Side& premise, const Side& conclusion,
                                const SupportInterval& support, const ConfidenceInterval& confidence) {
    if (begin_approximated(form, premise, conclusion, confidence)) {
        afficher_supp_approx(support, approx_out_);
        afficher_conf_approx(confidence, approx_out_);
    }
}

void RuleRecorder::approximated(Form form, const Side& premise, const Side& conclusion, Count support,
                                const ConfidenceInterval& confidence) {
    if (begin_approximated(form, premise, conclusion, confidence)) {
        afficher_supp(support, approx_out_);
        afficher_conf_approx(confidence, approx_out_);
    }
}

void RuleRecorder::approximated_of_confidence_1(Form form, const Side& premise, const Side& conclusion,
                                                const SupportInterval& support) {
    begin_record(Kind::apped, form, premise, conclusion, exact_out_);
    afficher_supp_approx(support, exact_out_);
}

bool RuleRecorder::suffices(double confidence) const {
    return confidence >= minconf_;
}

/// Counts the rule and writes its rule line, with which every record begins.
void RuleRecorder::begin_record(Kind kind, Form form, const Side& premise, const Side& conclusion,
                                Output_Manager& out) {
    counts_.add(form, kind);
    afficher_regle(premise, conclusion, out);
}

/// Begins an approximated record if the confidence suffices; true when it does.
bool RuleRecorder::begin_approximated(Form form, const Side& premise, const Side& conclusion,
                                      const ConfidenceInterval& confidence) {
    if (!suffices(confidence.low)) {
        return false;
    }
    begin_record(Kind::apped, form, premise, conclusion, approx_out_);
    return true;
}

double ratio(Count numerator, Count denominator) {
    return static_cast<double>(numerator) / static_cast<double>(denominator);
}

}  // namespace korv
