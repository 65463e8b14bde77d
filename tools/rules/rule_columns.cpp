#include "rules/rule_columns.h"

#include <algorithm>

namespace korv::tools {

namespace {

FurtherMeasure with_names(Measure measure) {
    const std::string name(name_of(measure));
    return {measure, name, name + "_max"};
}

}  // namespace

const std::vector<FurtherMeasure>& usual_measures() {
    static const std::vector<FurtherMeasure> usual = {
        with_names(Measure::confidence), with_names(Measure::lift), with_names(Measure::leverage)};
    return usual;
}

std::vector<FurtherMeasure> further_measures(const RuleBook& book) {
    const auto is_among = [](Measure measure, const std::vector<FurtherMeasure>& told) {
        return std::ranges::find(told, measure, &FurtherMeasure::measure) != told.end();
    };
    std::vector<FurtherMeasure> further;
    for (const Measure each : book.measures) {
        if (each != Measure::support && !is_among(each, usual_measures()) && !is_among(each, further)) {
            further.push_back(with_names(each));
        }
    }
    return further;
}

}  // namespace korv::tools
