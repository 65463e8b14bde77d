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

}  // namespace

void append_shortest(double number, std::string& text) {
    append(number + 0.0, text);  // which takes the sign from -0
}

void append_shortest(std::uint64_t number, std::string& text) {
    append(number, text);
}

std::vector<FurtherMeasure> further_measures(const RuleBook& book) {
    constexpr std::array told_anyway = {Measure::support, Measure::confidence, Measure::lift,
                                        Measure::leverage};
    std::vector<FurtherMeasure> further;
    for (const Measure each : book.measures) {
        if (std::ranges::find(told_anyway, each) != told_anyway.end() ||
            std::ranges::find(further, each, &FurtherMeasure::measure) != further.end()) {
            continue;
        }
        const std::string name(name_of(each));
        further.push_back({each, name, name + "_max"});
    }
    return further;
}

}  // namespace korv::tools
