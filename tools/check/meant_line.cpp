#include "check/meant_line.h"

#include <algorithm>
#include <numeric>

#include "common/class_file.h"

namespace korv::tools {

namespace {

/// Faults of a line that are looked for at most.
constexpr std::size_t most_faults = 50;

constexpr const char* found_unordered = "an item that is smaller than the one before it";
constexpr const char* expected_ascending = "ascending items";
constexpr const char* found_zeros = "zeros before a number";
constexpr const char* expected_no_zeros = "the number alone";

/// A line that is changed, and where its bytes stood before.
class ChangedLine {
public:
    explicit ChangedLine(std::string_view line) : input_{"", std::string(line)}, columns_(line.size() + 1) {
        std::iota(columns_.begin(), columns_.end(), 1);
    }

    const TextInput& input() const { return input_; }
    const std::string& text() const { return input_.text; }
    /// The column, before all changes, of what is at a position.
    std::size_t column(std::size_t position) const { return columns_[position]; }

    void erase(std::size_t position, std::size_t count = 1) {
        input_.text.erase(position, count);
        const auto begin = columns_.begin() + static_cast<std::ptrdiff_t>(position);
        columns_.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
    }

    void insert(std::size_t position, char byte) {
        input_.text.insert(position, 1, byte);
        columns_.insert(columns_.begin() + static_cast<std::ptrdiff_t>(position), columns_[position]);
    }

private:
    TextInput input_;
    std::vector<std::size_t> columns_;
};

/// Whether the line is what was meant once a fault is taken out.
enum class Repair {
    none,     ///< it is not clear what would be right
    guessed,  ///< if korv reads the same
    certain,
};

bool is_digit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Takes a run of blanks out, or all but one of them. `position`: within the run, or behind it.
void take_out_blanks(std::size_t position, ChangedLine& line) {
    const std::string& text = line.text();
    std::size_t begin = position;
    while (begin > 0 && text[begin - 1] == ' ') {
        --begin;
    }
    const std::size_t end = std::min(text.find_first_not_of(' ', position), text.size());
    const bool is_needed = begin > 0 && end < text.size() && text[end] != '\n' &&
                           (is_digit(text[end]) || !is_digit(text[begin - 1]));
    const std::size_t first = is_needed ? begin + 1 : begin;
    line.erase(first, end - first);
}

Repair take_out_carriage_return(std::size_t position, ChangedLine& line) {
    const std::string& text = line.text();
    const std::size_t behind = std::min(text.find_first_not_of('\r', position), text.size());
    if (position > 0 && behind < text.size() && text[behind] != '\n') {
        return Repair::none;  // there are several lines
    }
    line.erase(position, behind - position);
    return Repair::certain;
}

/// Makes a tab, and a blank behind it, of what stands behind the support: a blank or a comma instead of the
/// tab, a blank before it, or a fraction of zeros.
Repair put_second_tab(std::size_t position, ChangedLine& line) {
    const std::string& text = line.text();
    const std::size_t end = text.find_first_not_of(text[position] == '.' ? ".0" : " ", position);
    if (end != std::string::npos && text[end] == '\t') {
        line.erase(position, end - position);
        if (text[position + 1] != ' ') {
            line.insert(position + 1, ' ');
        }
        return Repair::guessed;
    }
    const bool is_separator = text[position] == ' ' || text[position] == ',' || text[position] == ';';
    if (!is_separator || text.find(' ', position + 1) != position + 1) {
        return Repair::none;
    }
    line.erase(position);
    line.insert(position, '\t');
    return Repair::guessed;
}

/// Makes a blank of separators that stand where one should, as in "1, 2" or "1;2"; takes a byte-order mark
/// out.
Repair replace_stray_bytes(std::size_t position, ChangedLine& line) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    const std::string& text = line.text();
    if (position == 0 && text.starts_with(byte_order_mark)) {
        line.erase(0, byte_order_mark.size());
        return Repair::guessed;
    }
    // Within an essential itemset, a semicolon may stand for the comma between two of them.
    const bool is_in_essential = position > 0 && is_digit(text[position - 1]) &&
                                 std::ranges::count(text.substr(0, position), '\t') > 1;
    const std::size_t end = text.find_first_not_of(is_in_essential ? " \t" : " ,;\t", position);
    if (end == position || end == std::string::npos || !is_digit(text[end])) {
        return Repair::none;
    }
    line.erase(position, end - position);
    if (position > 0 && text[position - 1] != ' ') {
        line.insert(position, ' ');
    }
    return Repair::guessed;
}

/// Takes a fault out of the line.
Repair take_out(FindingKind kind, std::size_t position, ChangedLine& line) {
    const std::string& text = line.text();
    switch (kind) {
        case FindingKind::carriage_return:
            return take_out_carriage_return(position, line);
        case FindingKind::stray_byte:
            return replace_stray_bytes(position, line);
        case FindingKind::no_second_tab:
            return put_second_tab(position, line);
        case FindingKind::extra_blank:
        case FindingKind::blank_at_end:
            take_out_blanks(position, line);
            return Repair::certain;
        case FindingKind::extra_tab: {
            const bool lacks_blank = is_digit(text[position + 1]);
            line.erase(position);
            if (lacks_blank) {
                line.insert(position, ' ');
            }
            return Repair::certain;
        }
        case FindingKind::doubled_comma:
            line.erase(position);
            return Repair::certain;
        case FindingKind::no_comma:
            line.insert(position, ',');
            if (text[position - 1] == ' ') {
                line.erase(position - 1);
            }
            return Repair::certain;
        case FindingKind::no_final_line_end:
            line.insert(position, '\n');
            return Repair::certain;
        case FindingKind::repeated_essential:
        case FindingKind::needless_essential:
            // With the blank before it and the comma behind it.
            line.erase(position - 1, text.find(',', position) - position + 2);
            return Repair::certain;
        default:
            return Repair::none;
    }
}

void add_oddities(const ClassRecordReader& reader, const ChangedLine& line, std::vector<LineFault>& faults) {
    if (const auto position = reader.unordered()) {
        faults.push_back(
            {FindingKind::unordered_items, line.column(*position), found_unordered, expected_ascending});
    }
    if (const auto position = reader.leading_zeros()) {
        faults.push_back(
            {FindingKind::leading_zeros, line.column(*position), found_zeros, expected_no_zeros});
    }
}

}  // namespace

MeantLine meant_line(std::string_view line) {
    MeantLine result;
    ChangedLine changed(line);
    while (result.faults.size() < most_faults) {
        ClassRecordReader reader(changed.input());
        try {
            if (!reader.next()) {
                result.is_skipped = true;
                return result;
            }
            result.meant = stored_class(reader);
            add_oddities(reader, changed, result.faults);
            break;
        } catch (const ClassLineFault& fault) {
            const std::size_t position = fault.place().column - 1;
            result.faults.push_back(
                {fault.kind(), changed.column(position), fault.found(), fault.expected()});
            result.is_skipped =
                fault.kind() == FindingKind::empty_line || fault.kind() == FindingKind::comment;
            if (fault.kind() == FindingKind::zero_support) {
                result.meant = stored_class(reader);
                add_oddities(reader, changed, result.faults);
            }
            const Repair repair = take_out(fault.kind(), position, changed);
            if (repair == Repair::none) {
                break;
            }
            result.is_guess = result.is_guess || repair == Repair::guessed;
        }
    }
    std::ranges::stable_sort(result.faults, {}, &LineFault::column);
    return result;
}

}  // namespace korv::tools
