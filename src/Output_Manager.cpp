#include "Output_Manager.h"

#include <array>
#include <charconv>

namespace korv {

namespace {

constexpr std::streamsize buffer_bytes = 1 << 16;

}  // namespace

Output_Manager::Output_Manager(const std::string& file_name) : buffer_(buffer_bytes) {
    // A stream takes its buffer only before its file is open.
    rdbuf()->pubsetbuf(buffer_.data(), buffer_bytes);
    open(file_name, std::ios::out | std::ios::trunc);
}

Output_Manager::~Output_Manager() {
    // Before the members go: the stream still writes from the buffer.
    close();
}

Output_Manager& Output_Manager::put(std::string_view text) {
    rdbuf()->sputn(text.data(), static_cast<std::streamsize>(text.size()));
    return *this;
}

Output_Manager& Output_Manager::put(Count number) {
    std::array<char, 10> digits;
    const auto* const last = std::to_chars(digits.begin(), digits.end(), number).ptr;
    return put(std::string_view(digits.begin(), last));
}

Output_Manager& Output_Manager::put(double number) {
    // Six significant digits, sign, point and an exponent of three digits fit.
    std::array<char, 16> digits;
    const auto* const last =
        std::to_chars(digits.begin(), digits.end(), number, std::chars_format::general, 6).ptr;
    return put(std::string_view(digits.begin(), last));
}

void Output_Manager::write_out_basket(const Itemset& itemset) {
    for (const Item item : itemset) {
        put(item).put(" ");
    }
}

}  // namespace korv
