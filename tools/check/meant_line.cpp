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

/// Takes a fault out of the line. Returns false where it is not clear what would be right.
bool take_out(FindingKind kind, std::size_t position, ChangedLine& line) {
    const std::string& text = line.text();
    switch (kind) {
        case FindingKind::carriage_return: {
            const std::size_t behind = std::min(text.find_first_not_of('\r', position), text.size());
            if (position > 0 && behind < text.size() && text[behind] != '\n') {
                return false;  // there are several lines
            }
            line.erase(position, behind - position);
            return true;
        }
        case FindingKind::extra_blank:
            line.erase(text[position] == ' ' ? position : position - 1);
            return true;
        case FindingKind::extra_tab:
        case FindingKind::doubled_comma:
            line.erase(position);
            return true;
        case FindingKind::blank_at_end:
            line.erase(position - 1);
            return true;
        case FindingKind::no_comma:
            if (text[position - 1] == ' ') {
                line.erase(position - 1);
            } else {
                line.insert(position, ',');
            }
            return true;
        case FindingKind::no_final_line_end:
            line.insert(position, '\n');
            return true;
        case FindingKind::repeated_essential:
        case FindingKind::needless_essential:
            // With the blank before it and the comma behind it.
            line.erase(position - 1, text.find(',', position) - position + 2);
            return true;
        default:
            return false;
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
            if (!take_out(fault.kind(), position, changed)) {
                break;
            }
        }
    }
    std::ranges::stable_sort(result.faults, {}, &LineFault::column);
    return result;
}

}  // namespace korv::tools
