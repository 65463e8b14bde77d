#include "common/class_file.h"

#include <algorithm>
#include <compare>
#include <limits>
#include <optional>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"
#include "io/class_loading.h"

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

/// The class of a record as korv stores it.
std::pair<Itemset, data> class_of(const ClassRecordReader& record) {
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

/// The numbers of the lines, from 0, by their closed itemsets; of equal ones the first line comes first.
std::vector<std::uint32_t> lines_in_order(const Records& records) {
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

/// Throws Error for the first line whose closed itemset an earlier line has.
void require_each_once(const Records& records, const std::vector<std::uint32_t>& in_order,
                       const std::string& name) {
    std::optional<std::pair<std::uint32_t, std::uint32_t>> first;  // the later line, and the earlier one
    for (std::size_t i = 1; i < in_order.size(); ++i) {
        const std::pair lines(in_order[i], in_order[i - 1]);
        if (records[lines.first].first == records[lines.second].first) {
            first = std::min(first.value_or(lines), lines);
        }
    }
    if (first) {
        throw input_error(name, {std::size_t{first->first} + 1, 1},
                          "the closed itemset of line " + std::to_string(first->second + 1) + " again",
                          "each closed itemset once");
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

bool ClassRecordReader::next() {
    position_ = next_line_;
    line_begin_ = next_line_;
    if (position_ == text_.size()) {
        return false;
    }
    next_line_ = std::min(text_.find('\n', position_), text_.size() - 1) + 1;
    ++line_;
    read_record();
    return true;
}

void ClassRecordReader::read_record() {
    read_itemset('\t', "a blank and another item, or a tab");
    closed_itemset_ = items_;
    const std::size_t support_begin = position_;
    support_ = read_number("a support");
    if (support_ == 0) {
        fail(support_begin, "a support of 0", "1 at least");
    }
    take('\t', "a digit, or a tab");
    read_essentials();
    if (position_ == text_.size()) {
        fail_here("an end of the line behind the last comma");
    }
    ++position_;
}

/// Reads the essential itemsets up to the end of the line.
void ClassRecordReader::read_essentials() {
    const std::size_t begin = position_;
    bool in_order = true;
    bool has_closed_itemset = false;
    essentials_.clear();
    do {
        take(' ', essentials_.size() == 0 ? "a blank and an essential itemset"
                                          : "a blank and another essential itemset, or the end of the line");
        const std::size_t itemset_begin = position_;
        read_itemset(',', "a blank and another item, or a comma");
        require_within_closed_itemset(itemset_begin);
        const std::size_t before = essentials_.size();
        in_order = in_order && (before == 0 || precedes(essentials_[before - 1], items_));
        has_closed_itemset = has_closed_itemset || items_.size() == closed_itemset_.size();
        essentials_.push_back(items_);
    } while (here() != '\n' && position_ < text_.size());
    if (!in_order) {
        require_different(begin);
    }
    if (has_closed_itemset && essentials_.size() > 1) {
        std::size_t number = 0;
        while (essentials_[number].size() != closed_itemset_.size()) {
            ++number;
        }
        fail(begin_of_essential(begin, number), "the closed itemset as one of several essential itemsets",
             "smaller ones, or it alone");
    }
}

/// Reads items with single blanks between them, and the byte behind them, which is to be `end`.
void ClassRecordReader::read_itemset(char end, std::string_view expected_behind_item) {
    const std::size_t begin = position_;
    bool is_ascending = true;
    items_.clear();
    items_.push_back(read_number("an item number"));
    while (here() == ' ') {
        ++position_;
        const Item item = read_number("an item number");
        is_ascending = is_ascending && items_.back() < item;
        items_.push_back(item);
    }
    if (!is_ascending) {
        std::ranges::sort(items_);
        require_each_item_once(begin);
    }
    take(end, expected_behind_item);
}

Count ClassRecordReader::read_number(std::string_view noun) {
    const std::size_t begin = position_;
    std::uint64_t value = 0;
    for (; is_digit(here()); ++position_) {
        value = value * 10 + static_cast<std::uint64_t>(here() - '0');
    }
    const std::size_t digits = position_ - begin;
    if (digits == 0) {
        fail_here(noun);
    }
    if (digits <= most_digits && value <= std::numeric_limits<Count>::max()) {
        return static_cast<Count>(value);
    }
    // Too large, unless it has zeros before it.
    const std::string_view text = text_.substr(begin, digits);
    const auto number = parse_number<Count>(text);
    if (!number) {
        fail(begin, shown(text), std::string(noun) + " below 4294967296");
    }
    return *number;
}

void ClassRecordReader::take(char byte, std::string_view expected) {
    if (here() != byte) {
        fail_here(expected);
    }
    ++position_;
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
            fail(item_begin, "the item " + std::to_string(item) + " again", "each item of an itemset once");
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
            fail(begin, "an essential itemset with the item " + std::to_string(item),
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
        fail(begin_of_essential(begin, first), "an essential itemset again", "each of them once");
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

void ClassRecordReader::fail_here(std::string_view expected) const {
    if (here() == '\r') {
        fail(position_, "CR", "lines that end with LF alone (tr -d '\\r' takes CR out)");
    }
    fail(position_, shown_at(position_), expected);
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

void ClassRecordReader::fail(std::size_t position, std::string_view found, std::string_view expected) const {
    throw input_error(input_.name, {line_, position - line_begin_ + 1}, found, expected);
}

ClassFile read_class_file(TextInput input) {
    ClassFile file = {input.name, {}, {}};
    Records records;
    records.reserve(static_cast<std::size_t>(std::ranges::count(input.text, '\n')));
    std::optional<Error> fault;
    try {
        for (ClassRecordReader reader(input); reader.next();) {
            records.push_back(class_of(reader));
        }
    } catch (const Error& error) {
        fault = error;
    }
    std::string().swap(input.text);  // an assignment would keep the memory
    file.lines = lines_in_order(records);
    require_each_once(records, file.lines, input.name);
    if (fault) {
        throw Error(*fault);
    }
    if (records.empty()) {
        throw input_error(input.name, {1, 1}, "an empty file",
                          "classes: items, a tab, a support, a tab, essential itemsets");
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
