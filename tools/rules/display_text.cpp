#include "rules/display_text.h"

#include <utf8proc.h>

#include <algorithm>

#include "common/utf8.h"

namespace korv::tools {

namespace {

bool is_ascii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

/// Whether a text is ASCII, of which each byte takes a column.
bool is_all_ascii(std::string_view text) {
    return std::ranges::all_of(text, is_ascii);
}

/// A character as a reader sees it.
struct Glyph {
    std::size_t bytes;
    std::size_t columns;
};

/// The first of a text that is not empty.
Glyph first_glyph(std::string_view text) {
    if (is_ascii(text.front()) && (text.size() == 1 || is_ascii(text[1]))) {
        return {1, 1};  // the most frequent case; nothing that ASCII begins belongs to what is before
    }
    constexpr std::size_t widest = 2;
    Glyph glyph = {0, 0};
    utf8proc_int32_t state = 0;
    utf8proc_int32_t before = 0;
    while (glyph.bytes < text.size()) {
        const Character character = first_character(text.substr(glyph.bytes));
        if (character.bytes == 0) {
            return glyph.bytes == 0 ? Glyph{1, 1} : glyph;
        }
        const auto code = static_cast<utf8proc_int32_t>(character.code);
        if (glyph.bytes > 0 && utf8proc_grapheme_break_stateful(before, code, &state)) {
            break;
        }
        glyph.bytes += character.bytes;
        glyph.columns += static_cast<std::size_t>(std::max(utf8proc_charwidth(code), 0));
        before = code;
    }
    // The parts of an emoji or of a flag are shown as one.
    return {glyph.bytes, std::min(glyph.columns, widest)};
}

/// How many bytes of a text fit into `width` columns, in whole characters.
std::size_t fitting_bytes(std::string_view text, std::size_t width) {
    const std::size_t most = std::min(text.size(), width);
    if (is_all_ascii(text.substr(0, most + 1))) {
        return most;
    }
    std::size_t bytes = 0;
    for (std::size_t columns = 0; bytes < text.size();) {
        const Glyph glyph = first_glyph(text.substr(bytes));
        columns += glyph.columns;
        if (columns > width) {
            break;
        }
        bytes += glyph.bytes;
    }
    return bytes;
}

std::string_view without_blanks_at_end(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

std::size_t display_width(std::string_view text) {
    if (is_all_ascii(text)) {
        return text.size();
    }
    std::size_t columns = 0;
    while (!text.empty()) {
        const Glyph glyph = first_glyph(text);
        columns += glyph.columns;
        text.remove_prefix(glyph.bytes);
    }
    return columns;
}

std::string shortened(std::string_view text, std::size_t width) {
    if (display_width(text) <= width) {
        return std::string(text);
    }
    return std::string(text.substr(0, fitting_bytes(text, width - 1))) + "…";
}

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    text = without_blanks_at_end(text);
    do {
        std::size_t bytes = fitting_bytes(text, width);
        std::size_t next = bytes;
        if (bytes < text.size()) {
            // The blank may stand directly behind what fits.
            const std::size_t blank = text.rfind(' ', bytes);
            const bool has_word = blank != std::string_view::npos && text.find_first_not_of(' ') < blank;
            bytes = has_word ? blank : bytes != 0 ? bytes : first_glyph(text).bytes;
            next = std::min(text.find_first_not_of(' ', bytes), text.size());
        }
        lines.emplace_back(without_blanks_at_end(text.substr(0, bytes)));
        text.remove_prefix(next);
    } while (!text.empty());
    return lines;
}

void append_paragraph(const std::string& first, const std::string& indent, const std::string& text,
                      std::size_t width, std::string& out) {
    if (text.empty()) {
        return;
    }
    constexpr std::size_t least_width = 20;
    const std::size_t room = std::max(width, indent.size() + least_width) - indent.size();
    const std::string* before = &first;
    for (const std::string& line : wrapped(text, room)) {
        out.append(*before).append(line).append("\n");
        before = &indent;
    }
}

std::string right_aligned(std::string_view text, std::size_t width) {
    return std::string(width - std::min(display_width(text), width), ' ') + std::string(text);
}

std::string left_aligned(std::string_view text, std::size_t width) {
    return std::string(text) + std::string(width - std::min(display_width(text), width), ' ');
}

}  // namespace korv::tools
