#include "rules/base64.h"

#include <algorithm>

namespace korv::tools {

namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t most_kept = std::size_t{1} << 16;

}  // namespace

void Base64Text::add(std::string_view bytes) {
    if (!begun_.empty()) {
        const std::size_t missing = std::min(group - begun_.size(), bytes.size());
        begun_ += bytes.substr(0, missing);
        bytes.remove_prefix(missing);
        if (begun_.size() < group) {
            return;
        }
        add_group(begun_);
        begun_.clear();
    }
    for (; bytes.size() >= group; bytes.remove_prefix(group)) {
        add_group(bytes.substr(0, group));
        if (text_.size() >= most_kept) {
            pass_on();
        }
    }
    begun_ = bytes;
}

void Base64Text::finish() {
    if (!begun_.empty()) {
        const std::size_t digits_needed = begun_.size() + 1;
        begun_.resize(group, '\0');
        add_group(begun_);
        std::fill(text_.end() - static_cast<std::ptrdiff_t>(group + 1 - digits_needed), text_.end(), '=');
        begun_.clear();
    }
    pass_on();
}

void Base64Text::add_group(std::string_view bytes) {
    constexpr unsigned bits_of_a_byte = 8;
    constexpr unsigned bits_of_a_digit = 6;
    unsigned number = 0;
    for (const char byte : bytes) {
        number = number << bits_of_a_byte | static_cast<unsigned char>(byte);
    }
    for (unsigned i = group + 1; i-- > 0;) {
        text_ += digits[number >> i * bits_of_a_digit & (digits.size() - 1)];
    }
}

void Base64Text::pass_on() {
    sink_(text_);
    text_.clear();
}

}  // namespace korv::tools
