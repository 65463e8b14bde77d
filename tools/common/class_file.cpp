#include "common/class_file.h"

#include <algorithm>
#include <compare>
#include <limits>
#include <optional>
#include <utility>

#include "base/number_text.h"

namespace korv::tools {

namespace {

bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

/// By size, then lexicographically, which is the order in which essential itemsets are usually written.
bool precedes(ItemSpan a, ItemSpan b) {
    return a.size() != b.size() ? a.size() < b.size() : std::ranges::lexicographical_compare(a, b);
}

/// A byte as messages name it; empty for one that is shown as it is.
std::string_view name_of(char byte) {
    switch (byte) {
        case '\n':
            return "the end of the line";
        case '\r':
            return "CR";
        case '\t':
            return "a tab";
        case ' ':
            return "a blank";
        case ',':
            return "a comma";
        default:
            return "";
    }
}

/// Throws Error for the first line whose closed itemset an earlier line has.
void require_each_once(const Records& records, const std::vector<std::uint32_t>& positions,
                       const std::string& name) {
    std::optional<std::pair<std::uint32_t, std::uint32_t>> first;  // the later line, and the earlier one
    for (std::size_t i = 1; i < positions.size(); ++i) {
        const std::pair lines(positions[i], positions[i - 1]);
        if (records[lines.first].first == records[lines.second].first) {
            first = std::min(first.value_or(lines), lines);
        }
    }
    if (first) {
        throw input_error(name, {std::size_t{first->first} + 1, 1}, found_again(first->second + 1),
                          expected_once);
    }
}

/// Whether a line begins as a record does: items, a tab, a support, a tab, a blank and an item.
bool begins_as_record(std::string_view line) {
    const std::size_t tab = std::min(line.find('\t'), line.size());
    const std::string_view items = line.substr(0, tab);
    line.remove_prefix(tab);
    line.remove_prefix(line.empty() ? 0 : 1);
    const std::size_t digits = std::min(line.find_first_not_of("0123456789"), line.size());
    line.remove_prefix(digits);
    return !items.empty() && is_digit(items.front()) && is_digit(items.back()) &&
           items.find_first_not_of("0123456789 ") == std::string_view::npos && digits > 0 &&
           line.starts_with("\t ") && line.size() > 2 && is_digit(line[2]);
}

}  // namespace

ClassLineFault::ClassLineFault(FindingKind kind, std::string_view file, Place place, std::string_view found,
                               std::string_view expected)
    : Error(input_error(file, place, found, expected)),
      kind_(kind),
      place_(place),
      found_(found),
      expected_(expected) {}

std::pair<Itemset, data> stored_class(const ClassRecordReader& record) {
    std::pair<Itemset, data> result = {record.closed_itemset(), {record.support(), {}}};
    const ItemsetTable& essentials = record.essentials();
    if (essentials[0].size() == result.first.size()) {
        return result;
    }
    result.second.essentials.reserve(essentials.size());
    for (std::size_t i = 0; i < essentials.size(); ++i) {
        result.second.essentials.emplace_back(essentials[i].begin(), essentials[i].end());
    }
    return result;
}

std::vector<std::uint32_t> in_order(const Records& records) {
    constexpr unsigned item_bits = 16;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> keys;
    keys.reserve(records.size());
    for (std::size_t line = 0; line < records.size(); ++line) {
        keys.emplace_back(beginning(records[line].first, item_bits), static_cast<std::uint32_t>(line));
    }
    std::ranges::sort(keys, [&records](const auto& a, const auto& b) {
        if (a.first != b.first) {
            return a.first < b.first;
        }
        const auto order = records[a.second].first <=> records[b.second].first;
        return std::is_eq(order) ? a.second < b.second : std::is_lt(order);
    });
    std::vector<std::uint32_t> lines(keys.size());
    std::ranges::transform(keys, lines.begin(), &std::pair<std::uint64_t, std::uint32_t>::second);
    return lines;
}

std::string found_again(std::size_t earlier_line) {
    return "the closed itemset of line " + std::to_string(earlier_line) + " again";
}

bool ClassRecordReader::next() {
    position_ = next_line_;
    line_begin_ = next_line_;
    if (position_ == text_.size()) {
        return false;
    }
    next_line_ = std::min(text_.find('\n', position_), text_.size() - 1) + 1;
    ++line_;
    unordered_.reset();
    leading_zeros_.reset();
    is_in_essentials_ = false;
    read_record();
    return true;
}

void ClassRecordReader::read_record() {
    read_itemset('\t', "a blank and another item, or a tab");
    closed_itemset_ = items_;
    support_begin_ = position_;
    if (!is_digit(here())) {
        fail_here(here() == '\n' ? FindingKind::no_essentials : FindingKind::no_support, "a support");
    }
    support_ = read_number("a support");
    if (here() != '\t') {
        fail_here(here() == '\n' ? FindingKind::no_essentials : FindingKind::no_second_tab,
                  "a digit, or a tab");
    }
    ++position_;
    is_in_essentials_ = true;
    read_essentials();
    if (position_ == text_.size()) {
        fail_here(FindingKind::no_final_line_end, "an end of the line behind the last comma");
    }
    require_support();
    ++position_;
}

/// Throws when the support is 0: behind all other faults of the line, since korv reads that as it is.
void ClassRecordReader::require_support() const {
    if (support_ == 0) {
        fail(FindingKind::zero_support, support_begin_, "a support of 0", "1 at least");
    }
}

/// Reads the essential itemsets up to the end of the line.
void ClassRecordReader::read_essentials() {
    const std::size_t begin = position_;
    bool is_in_order = true;
    bool has_closed_itemset = false;
    essentials_.clear();
    do {
        if (here() != ' ') {
            fail_here(kind_before_essential(),
                      essentials_.size() == 0
                          ? "a blank and an essential itemset"
                          : "a blank and another essential itemset, or the end of the line");
        }
        const std::size_t itemset_begin = ++position_;
        read_itemset(',', "a blank and another item, or a comma");
        require_within_closed_itemset(itemset_begin);
        const std::size_t before = essentials_.size();
        is_in_order = is_in_order && (before == 0 || precedes(essentials_[before - 1], items_));
        has_closed_itemset = has_closed_itemset || items_.size() == closed_itemset_.size();
        essentials_.push_back(items_);
    } while (here() != '\n' && position_ < text_.size());
    if (!is_in_order) {
        require_different(begin);
    }
    if (has_closed_itemset && essentials_.size() > 1) {
        std::size_t number = 0;
        while (essentials_[number].size() != closed_itemset_.size()) {
            ++number;
        }
        fail(FindingKind::needless_essential, begin_of_essential(begin, number),
             "the closed itemset as one of several essential itemsets", "smaller ones, or it alone");
    }
}

/// Reads items with single blanks between them, and the byte behind them, which is to be `end`.
void ClassRecordReader::read_itemset(char end, std::string_view expected_behind_item) {
    const std::size_t begin = position_;
    bool is_ascending = true;
    items_.clear();
    items_.push_back(read_item(begin));
    while (here() == ' ') {
        const std::size_t item_begin = ++position_;
        const Item item = read_item(begin);
        if (item < items_.back() && !unordered_) {
            unordered_ = item_begin;
        }
        is_ascending = is_ascending && items_.back() < item;
        items_.push_back(item);
    }
    if (here() != end) {
        fail_here(kind_behind_item(), expected_behind_item);
    }
    if (!is_ascending) {
        std::ranges::sort(items_);
        require_each_item_once(begin);
    }
    ++position_;
}

Item ClassRecordReader::read_item(std::size_t itemset_begin) {
    constexpr std::string_view noun = "an item number";
    if (is_in_essentials_ && position_ == itemset_begin && here() == ' ') {
        skip_blanks_at_end();
    }
    if (!is_digit(here())) {
        fail_here(kind_at_item(itemset_begin), noun);
    }
    return read_number(noun);
}

/// Skips blanks that run to the end of the line.
void ClassRecordReader::skip_blanks_at_end() {
    const std::size_t behind = std::min(text_.find_first_not_of(' ', position_), text_.size());
    if (behind == text_.size() || text_[behind] == '\n') {
        position_ = behind;
    }
}

/// Which fault it is that here, where an item is expected, is none.
FindingKind ClassRecordReader::kind_at_item(std::size_t itemset_begin) const {
    const bool is_first = std::min(text_.find_first_not_of(' ', itemset_begin), text_.size()) == position_;
    const char end = is_in_essentials_ ? ',' : '\t';
    if (here() == ' ' && lacks_tab()) {
        return FindingKind::no_tab;
    }
    if (here() == ' ' || (here() == end && !is_first)) {
        return FindingKind::extra_blank;
    }
    if (!is_in_essentials_) {
        if (here() == '\n') {
            return is_first ? FindingKind::empty_line : FindingKind::no_tab;
        }
        if (here() == end) {
            return FindingKind::no_items;
        }
        return is_first && is_comment() ? FindingKind::comment : FindingKind::stray_byte;
    }
    if (here() == '\n') {
        return is_first ? FindingKind::blank_at_end : FindingKind::no_comma;
    }
    return here() == end ? FindingKind::empty_essential : FindingKind::stray_byte;
}

/// Which fault it is that here, behind an item, stands neither a blank nor the end of the itemset.
FindingKind ClassRecordReader::kind_behind_item() const {
    if (is_in_essentials_) {
        return here() == '\n' ? FindingKind::no_comma : FindingKind::stray_byte;
    }
    return lacks_tab() ? FindingKind::no_tab : FindingKind::stray_byte;
}

/// Which fault it is that here, before an essential itemset, stands no blank.
FindingKind ClassRecordReader::kind_before_essential() const {
    const bool is_first = essentials_.size() == 0;
    if (is_digit(here())) {
        return FindingKind::digit_lost;
    }
    if (here() == ',' && !is_first) {
        return FindingKind::doubled_comma;
    }
    if (here() == '\t' && is_first) {
        return FindingKind::extra_tab;
    }
    return here() == '\n' ? FindingKind::no_essentials : FindingKind::stray_byte;
}

/// Whether the line has neither a digit nor a tab, so that korv finds nothing in it.
bool ClassRecordReader::is_comment() const {
    const std::string_view line = text_.substr(line_begin_, next_line_ - line_begin_);
    return line.find_first_of("0123456789\t") == std::string_view::npos;
}

/// Whether the line has digits, but no tab.
bool ClassRecordReader::lacks_tab() const {
    const std::string_view line = text_.substr(line_begin_, next_line_ - line_begin_);
    return line.find('\t') == std::string_view::npos &&
           line.find_first_of("0123456789") != std::string_view::npos;
}

Count ClassRecordReader::read_number(std::string_view noun) {
    const std::size_t begin = position_;
    std::uint64_t value = 0;
    for (; is_digit(here()); ++position_) {
        value = value * 10 + static_cast<std::uint64_t>(here() - '0');
    }
    const std::size_t digits = position_ - begin;
    if (digits > 1 && text_[begin] == '0' && !leading_zeros_) {
        leading_zeros_ = begin;
    }
    if (digits <= most_digits && value <= std::numeric_limits<Count>::max()) {
        return static_cast<Count>(value);
    }
    // Too large, unless it has zeros before it.
    const std::string_view text = text_.substr(begin, digits);
    const auto number = parse_number<Count>(text);
    if (!number) {
        fail(FindingKind::number_too_large, begin, shown(text), std::string(noun) + " below 4294967296");
    }
    return *number;
}

/// Throws Error when the itemset that was just read, which begins at a position, has an item twice.
void ClassRecordReader::require_each_item_once(std::size_t begin) {
    if (std::ranges::adjacent_find(items_) == items_.end()) {
        return;
    }
    Itemset before;
    for (position_ = begin;; ++position_) {
        const std::size_t item_begin = position_;
        const Item item = read_number("an item number");
        if (std::ranges::find(before, item) != before.end()) {
            fail(FindingKind::repeated_item, item_begin, "the item " + std::to_string(item) + " again",
                 "each item of an itemset once");
        }
        before.push_back(item);
    }
}

/// Throws Error when the essential itemset that was just read, which begins at a position, has an item that
/// the closed itemset lacks.
void ClassRecordReader::require_within_closed_itemset(std::size_t begin) const {
    auto next = closed_itemset_.begin();
    for (const Item item : items_) {
        next = std::lower_bound(next, closed_itemset_.end(), item);
        if (next == closed_itemset_.end() || *next != item) {
            fail(items_.size() == closed_itemset_.size() ? FindingKind::dropped_essential
                                                         : FindingKind::foreign_item,
                 begin, "an essential itemset with the item " + std::to_string(item),
                 "items of the closed itemset alone");
        }
        ++next;
    }
}

/// Throws Error for the first essential itemset of the record that is there before. `begin`: of all of them.
void ClassRecordReader::require_different(std::size_t begin) const {
    std::vector<std::size_t> order(essentials_.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::ranges::stable_sort(
        order, [this](std::size_t a, std::size_t b) { return precedes(essentials_[a], essentials_[b]); });
    std::size_t first = order.size();
    for (std::size_t i = 1; i < order.size(); ++i) {
        if (std::ranges::equal(essentials_[order[i - 1]], essentials_[order[i]])) {
            first = std::min(first, order[i]);
        }
    }
    if (first < order.size()) {
        fail(FindingKind::repeated_essential, begin_of_essential(begin, first), "an essential itemset again",
             "each of them once");
    }
}

/// Where an essential itemset begins in the text, the first of which is number 0. `begin`: of all of them.
std::size_t ClassRecordReader::begin_of_essential(std::size_t begin, std::size_t number) const {
    std::size_t position = begin;
    for (; number > 0; --number) {
        position = text_.find(',', position) + 1;
    }
    return position + 1;
}

/// What to do about CR here, where it is a line end or a part of one; empty where it is a byte as any other.
std::string_view ClassRecordReader::cure_of_carriage_return() const {
    if (here() != '\r') {
        return "";
    }
    const std::size_t behind = std::min(text_.find_first_not_of('\r', position_), text_.size());
    if (behind == text_.size() || text_[behind] == '\n') {
        return R"(lines that end with LF alone (tr -d '\r' takes CR out))";
    }
    const bool is_line_end = position_ == line_begin_ || text_[position_ - 1] == ',';
    return is_line_end ? R"(lines that end with LF (tr '\r' '\n' makes LF of CR))" : "";
}

/// Fails at the byte here. CR as a line end and the end of the file are faults of their own, whatever is
/// expected.
void ClassRecordReader::fail_here(FindingKind kind, std::string_view expected) const {
    if (const std::string_view cure = cure_of_carriage_return(); !cure.empty()) {
        fail(FindingKind::carriage_return, position_, "CR", cure);
    }
    const bool is_at_end = position_ == text_.size() && kind != FindingKind::no_final_line_end;
    if (kind == FindingKind::no_tab && !is_at_end) {
        fail(kind, position_, "a line without a tab", "a tab before the support, and one behind it");
    }
    fail(is_at_end ? FindingKind::cut_off : kind, position_, shown_at(position_), expected);
}

/// What stands at a position, for messages.
std::string ClassRecordReader::shown_at(std::size_t position) const {
    if (position == text_.size()) {
        return "the end of the file";
    }
    const std::string_view name = name_of(text_[position]);
    if (!name.empty()) {
        return std::string(name);
    }
    const std::string_view rest = text_.substr(position);
    return shown(rest.substr(0, rest.find_first_of(" \t,\r\n")));
}

void ClassRecordReader::fail(FindingKind kind, std::size_t position, std::string_view found,
                             std::string_view expected) const {
    throw ClassLineFault(kind, input_.name, {line_, position - line_begin_ + 1}, found, expected);
}

ClassFile read_class_file(TextInput input) {
    ClassFile file = {input.name, {}, {}};
    Records records;
    records.reserve(static_cast<std::size_t>(std::ranges::count(input.text, '\n')));
    std::optional<Error> fault;
    try {
        for (ClassRecordReader reader(input); reader.next();) {
            records.push_back(stored_class(reader));
        }
    } catch (const Error& error) {
        fault = error;
    }
    std::string().swap(input.text);  // an assignment would keep the memory
    file.lines = in_order(records);
    require_each_once(records, file.lines, input.name);
    if (fault) {
        throw Error(*fault);
    }
    if (records.empty()) {
        throw input_error(input.name, {1, 1}, found_no_class, expected_classes);
    }
    // A map is filled fastest in its order, and read fastest afterwards.
    for (std::uint32_t& line : file.lines) {
        auto& [closed_itemset, of_class] = records[line];
        file.classes.emplace_hint(file.classes.end(), std::move(closed_itemset), std::move(of_class));
        ++line;  // lines are numbered from 1
    }
    return file;
}

bool looks_like_class_file(std::string_view text) {
    constexpr std::size_t most_lines = 10;
    std::size_t lines = 0;
    std::size_t records = 0;
    for (; !text.empty() && lines < most_lines; ++lines) {
        const std::string_view line = text.substr(0, text.find('\n'));
        records += begins_as_record(line) ? 1 : 0;
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return records > 0 && records * 2 >= lines;
}

}  // namespace korv::tools
