#include "engine/rule_gate.h"

namespace korv {

void RuleGate::exact(Form form, Count support) {
    sink_.add({form, form, Kind::exact, known(support), std::nullopt});
}

void RuleGate::approximative(const CountedForm& form, Count support, double confidence) {
    if (suffices(confidence)) {
        sink_.add({form.printed, form.if_approximative, Kind::appro, known(support), known(confidence)});
    }
}

bool RuleGate::by_confidence(const CountedForm& form, Count support, double confidence) {
    if (!suffices(confidence)) {
        return false;
    }
    if (confidence == 1.0) {
        sink_.add({form.printed, form.if_exact, Kind::exact, known(support), std::nullopt});
    } else {
        sink_.add({form.printed, form.if_approximative, Kind::appro, known(support), known(confidence)});
    }
    return true;
}

void RuleGate::approximated(Form form, const Estimate<Count>& support, const ConfidenceBounds& confidence) {
    if (suffices(confidence.lower)) {
        sink_.add({form, form, Kind::apped, support, between(confidence.lower, confidence.upper)});
    }
}

void RuleGate::approximated_of_confidence_1(Form form, const Estimate<Count>& support) {
    sink_.add({form, form, Kind::apped, support, std::nullopt});
}

double ratio(Count numerator, Count denominator) {
    return static_cast<double>(numerator) / static_cast<double>(denominator);
}

}  // namespace korv
