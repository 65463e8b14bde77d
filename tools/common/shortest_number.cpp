#include "common/shortest_number.h"

#include <array>
#include <charconv>
#include <string_view>

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

}  // namespace korv::tools
