#include "rules/rule_columns.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korv::tools {

namespace {

template <typename Number>
void append(Number number, std::string& text) {
    std::array<char, 32> digits;
    const char* const last = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text += std::string_view(digits.data(), last);
}

FurtherMeasure with_names(Measure measure) {
    const std::string name(name_of(measure));
    return {measure, name, name + "_max"};
}

}  // namespace

void append_shortest(double number, std::string& text) {
    append(number + 0.0, text);  // which takes the sign from -0
}

void append_shortest(std::uint64_t number, std::string& text) {
    append(number, text);
}

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
