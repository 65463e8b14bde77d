#include "common/quantity.h"

#include <sys/resource.h>

#include <array>
#include <cstdio>
#include <string_view>

namespace korv::tools {

namespace {

std::string with_decimals(double number, int decimals) {
    std::array<char, 64> text = {};
    const int size = std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
    return {text.data(), static_cast<std::size_t>(size)};
}

}  // namespace

std::string with_commas(std::size_t number) {
    std::string text = std::to_string(number);
    for (std::size_t end = text.size(); end > 3; end -= 3) {
        text.insert(end - 3, 1, ',');
    }
    return text;
}

std::string size_text(std::size_t bytes) {
    constexpr std::array<std::string_view, 4> units = {" kB", " MB", " GB", " TB"};
    constexpr double step = 1000;
    if (bytes < 1000) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
    double number = static_cast<double>(bytes) / step;
    std::size_t unit = 0;
    // What would be written as 1000.0 belongs to the next unit.
    while (number >= step - 0.05 && unit + 1 < units.size()) {
        number /= step;
        ++unit;
    }
    return with_decimals(number, 1).append(units.at(unit));
}

std::string seconds_text(double seconds) {
    return with_decimals(seconds, 2) + " s";
}

std::size_t peak_memory() {
    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) / 1024;  // given in KiB
}

}  // namespace korv::tools
