#include "mine/fimi.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/number_text.h"
#include "common/error.h"
#include "common/lines.h"
#include "mine/weighted_line.h"

namespace korv::tools {

namespace {

constexpr std::string_view blanks = " \t";

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// The number for which a word stands that the fast way did not read. Throws Error when it stands for none.
Item item_of(std::string_view word, const TextInput& input) {
    if (const auto item = parse_number<Item>(word)) {
        return *item;
    }
    const auto position = static_cast<std::size_t>(word.data() - input.text.data());
    const bool is_too_large = word.find_first_not_of("0123456789") == std::string_view::npos;
    throw FormError(input_error(input.name, place_of(input, position), shown(word),
                                is_too_large ? "an item number below 4294967296" : "an item number"));
}

/// Reads the word that begins at `begin`, and sets `begin` to its end.
Item next_item(const char*& begin, const char* end, const TextInput& input) {
    constexpr std::ptrdiff_t most_digits_read = 18;  // these fit into 64 bits
    std::uint64_t value = 0;
    const char* digit = begin;
    for (; digit != end && *digit >= '0' && *digit <= '9'; ++digit) {
        value = value * 10 + static_cast<std::uint64_t>(*digit - '0');
    }
    const bool is_whole_word = digit == end || is_blank(*digit);
    if (is_whole_word && digit - begin <= most_digits_read && value <= std::numeric_limits<Item>::max()) {
        begin = digit;
        return static_cast<Item>(value);
    }
    const std::string_view rest(digit, end);
    const std::string_view word(begin, digit + std::min(rest.find_first_of(blanks), rest.size()));
    begin += word.size();
    return item_of(word, input);
}

void add_items(std::string_view line, const TextInput& input, DatabaseBuilder& builder) {
    const char* next = line.data();
    const char* const end = next + line.size();
    for (;;) {
        while (next != end && is_blank(*next)) {
            ++next;
        }
        if (next == end) {
            return;
        }
        builder.add(next_item(next, end, input));
    }
}

}  // namespace

void FimiReader::add(const TextInput& input) {
    for_each_line(input.text, [&](std::string_view line) {
        builder_.begin_transaction(weighted_ ? take_weight(line, input) : 1);
        add_items(line, input, builder_);
    });
}

}  // namespace korv::tools
