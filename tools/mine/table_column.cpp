#include "mine/table_column.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <iterator>
#include <limits>
#include <set>
#include <unordered_map>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"
#include "mine/column_bins.h"
#include "mine/named_items.h"

namespace korv::tools {

namespace {

constexpr std::uint32_t no_item = 0xFFFFFFFF;
constexpr double no_number = std::numeric_limits<double>::quiet_NaN();

double number_in(std::string_view text) {
    const auto number = parse_number<double>(text);
    return number && std::isfinite(*number) ? *number : no_number;
}

/// What a cell of yes or no says, in any case; nothing for anything else.
std::optional<bool> truth_of(std::string_view text) {
    constexpr std::array<std::string_view, 6> yes = {"1", "yes", "true", "y", "t", "x"};
    constexpr std::array<std::string_view, 5> no = {"0", "no", "false", "n", "f"};
    const auto is_text = [text](std::string_view word) {
        return std::ranges::equal(text, word, {}, [](unsigned char c) { return std::tolower(c); });
    };
    if (std::ranges::any_of(yes, is_text)) {
        return true;
    }
    return std::ranges::any_of(no, is_text) ? std::optional(false) : std::nullopt;
}

/// Whether people would take a text for a number: "1,5", "5%" or "$ 7", but no date, time or range.
bool looks_like_number(std::string_view text) {
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    return std::ranges::any_of(text, [](unsigned char c) { return std::isdigit(c) != 0; }) &&
           std::ranges::none_of(text, [](unsigned char c) { return std::isalpha(c) != 0; }) &&
           text.find_first_of("-/:") == std::string_view::npos;
}

std::string_view without_blanks(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

/// Calls `visit` with each answer in a cell, without blanks around it; some may be empty.
template <typename Visit>
void for_each_answer(std::string_view cell, std::string_view separator, Visit visit) {
    for (;;) {
        const std::size_t end = cell.find(separator);
        visit(without_blanks(cell.substr(0, end)));
        if (end == std::string_view::npos) {
            return;
        }
        cell.remove_prefix(end + separator.size());
    }
}

std::string item_name(const std::string& column, std::string_view value) {
    std::string name = column;
    name.append("=").append(value);
    return name;
}

/// Each value has one item, or none.
ColumnItems one_for_each(std::vector<std::string> names, const std::vector<std::uint32_t>& item_of) {
    ColumnItems items = {std::move(names), {0}, {}};
    for (const std::uint32_t item : item_of) {
        if (item != no_item) {
            items.of_values.push_back(item);
        }
        items.begins.push_back(static_cast<std::uint32_t>(items.of_values.size()));
    }
    return items;
}

/// The transactions of each of so many items, where `numbers` has the value of each line and `values` is how
/// many there are.
template <typename Number>
std::vector<std::vector<Transaction>> transactions_of(const std::vector<Number>& numbers, std::size_t values,
                                                      const ColumnItems& items, std::size_t number_of_items) {
    std::vector<std::size_t> lines(values);
    for (const Number value : numbers) {
        ++lines[value];
    }
    std::vector<std::size_t> sizes(number_of_items);
    for (std::size_t value = 0; value < values; ++value) {
        for (std::uint32_t i = items.begins[value]; i < items.begins[value + 1]; ++i) {
            sizes[items.of_values[i]] += lines[value];
        }
    }
    std::vector<std::vector<Transaction>> transactions(number_of_items);
    std::vector<Transaction*> next(number_of_items);
    for (std::size_t item = 0; item < sizes.size(); ++item) {
        transactions[item].resize(sizes[item]);
        next[item] = transactions[item].data();
    }
    Transaction line = 0;
    for (const Number value : numbers) {
        for (std::uint32_t i = items.begins[value]; i < items.begins[value + 1]; ++i) {
            *next[items.of_values[i]]++ = line;
        }
        ++line;
    }
    return transactions;
}

}  // namespace

TableColumn::TableColumn(std::string name, const TableOptions& options)
    : name_(std::move(name)), options_(&options) {
    const auto bins = std::ranges::find(options.bins, name_, &BinRule::column);
    const auto bins_for_all = std::ranges::find(options.bins, "", &BinRule::column);
    const auto split = std::ranges::find(options.splits, name_, &SplitRule::column);
    if (bins != options.bins.end()) {
        meaning_ = Meaning::number;
        bins_ = &*bins;
    } else if (split != options.splits.end()) {
        meaning_ = Meaning::answers;
        separator_ = split->separator;
    } else if (options.only_true) {
        meaning_ = Meaning::flag;
    } else if (bins_for_all != options.bins.end()) {
        meaning_ = Meaning::number_or_values;
        bins_ = &*bins_for_all;
    }
}

std::uint32_t TableColumn::add_value(std::string_view text) {
    const auto [number, is_new] = dictionary_.number_of(text);
    if (is_new) {
        const TextInput part = {};
        examine({text, 0}, part);
    }
    return number;
}

std::size_t TableColumn::lines() const {
    std::size_t lines = 0;
    lines_.visit([&lines](const auto& numbers) { lines = numbers.size(); });
    return lines;
}

bool TableColumn::is_missing(std::string_view text) const {
    return text.empty() || std::ranges::find(options_->missing, text) != options_->missing.end();
}

/// Looks at a cell with a text that is new.
void TableColumn::examine(const CsvCell& cell, const TextInput& input) {
    const bool missing = is_missing(cell.text);
    if (bins_ != nullptr) {
        numbers_.push_back(missing ? no_number : number_in(cell.text));
    }
    if (missing) {
        return;
    }
    if (meaning_ == Meaning::answers) {
        for_each_answer(cell.text, separator_,
                        [&](std::string_view answer) { require_name(answer, cell, input); });
        return;
    }
    require_name(cell.text, cell, input);
    if (bins_ != nullptr) {
        examine_number(cell, input);
    }
    if (meaning_ == Meaning::flag && !truth_of(cell.text)) {
        throw input_error(
            input.name, place_of(input, cell.position), shown(cell.text),
            "1, yes, true, y, t or x, or 0, no, false, n or f, since --only-true is given" + way_out());
    }
}

/// What the person can do about a column whose cells cannot be read.
std::string TableColumn::way_out() const {
    return "; --ignore leaves the column " + shown(name_) + " out";
}

/// Throws Error when a cell, or an answer in it, cannot be part of a name.
void TableColumn::require_name(std::string_view text, const CsvCell& cell, const TextInput& input) const {
    try {
        check_name(text, cell.position, input);
    } catch (const Error& error) {
        throw Error(error.what() + way_out());
    }
}

void TableColumn::examine_number(const CsvCell& cell, const TextInput& input) {
    if (!std::isnan(numbers_.back())) {
        has_numbers_ = true;
        return;
    }
    if (meaning_ == Meaning::number) {
        throw input_error(input.name, place_of(input, cell.position), shown(cell.text),
                          "a number such as 1234.5, since --bins cuts the column " + shown(name_));
    }
    has_numbers_ = has_numbers_ || looks_like_number(cell.text);
    if (!other_position_) {
        other_position_ = cell.position;
        other_ = dictionary_.size() - 1;
    }
}

/// The number of distinct cells that are not missing.
std::size_t TableColumn::distinct_values() const {
    std::size_t values = 0;
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        values += is_missing(dictionary_.text(value)) ? 0 : 1;
    }
    return values;
}

bool TableColumn::has_more_values_than_bins() const {
    return bins_ != nullptr && distinct_values() > bins_->most_uncut();
}

bool TableColumn::is_identifier(std::size_t lines,
                                const std::function<std::vector<std::uint64_t>()>& cells) const {
    constexpr std::size_t most_values_of_a_kind = 20;
    constexpr std::size_t lines_for_a_missing_cell = 20;
    const bool makes_items_of_values = meaning_ == Meaning::value || meaning_ == Meaning::number_or_values;
    if (!makes_items_of_values || is_cut()) {
        return false;
    }
    const std::size_t values = distinct_values();
    if (values <= most_values_of_a_kind || (lines - values) * lines_for_a_missing_cell > lines) {
        return false;
    }
    const std::vector<std::uint64_t> lines_of_values = cells();
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        if (lines_of_values[value] > 1 && !is_missing(dictionary_.text(value))) {
            return false;
        }
    }
    return true;
}

bool TableColumn::holds_whole_numbers() const {
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        if (!parse_number<std::uint32_t>(std::string(dictionary_.text(value)))) {
            return false;
        }
    }
    return true;
}

void TableColumn::mix_into(std::vector<std::uint64_t>& hashes) const {
    lines_.visit([&hashes](const auto& numbers) {
        std::ranges::transform(hashes, numbers, hashes.begin(), [](std::uint64_t hash, std::uint32_t number) {
            hash = (hash ^ (number + 1)) * 0x9E3779B97F4A7C15;
            return hash ^ (hash >> 32U);
        });
    });
}

std::size_t TableColumn::distinct_numbers() const {
    std::vector<double> numbers;
    std::ranges::copy_if(numbers_, std::back_inserter(numbers), [](double n) { return !std::isnan(n); });
    std::ranges::sort(numbers);
    return static_cast<std::size_t>(std::unique(numbers.begin(), numbers.end()) - numbers.begin());
}

bool TableColumn::is_cut() const {
    if (meaning_ == Meaning::number_or_values) {
        return !other_position_ && distinct_numbers() > bins_->most_uncut();
    }
    return meaning_ == Meaning::number;
}

std::vector<std::uint64_t> TableColumn::cells_of_values(const std::vector<Count>& weights) const {
    std::vector<std::uint64_t> cells(dictionary_.size());
    lines_.visit([&](const auto& values) {
        for (std::size_t line = 0; line < values.size(); ++line) {
            cells[values[line]] += weights.empty() ? 1 : weights[line];
        }
    });
    return cells;
}

ColumnItems TableColumn::bin_items(const std::vector<std::uint64_t>& cells) const {
    std::vector<NumberText> numbers;
    std::vector<std::uint32_t> values;
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        if (!std::isnan(numbers_[value])) {
            numbers.push_back({dictionary_.text(value), numbers_[value], cells[value]});
            values.push_back(value);
        }
    }
    const Bins bins =
        bins_->points.empty() ? quantile_bins(numbers, bins_->bins) : point_bins(numbers, bins_->points);
    std::vector<std::string> names;
    for (const std::string& label : bins.labels) {
        names.push_back(item_name(name_, label));
    }
    std::vector<std::uint32_t> item_of(dictionary_.size(), no_item);
    for (std::size_t i = 0; i < values.size(); ++i) {
        item_of[values[i]] = bins.bin_of[i];
    }
    return one_for_each(std::move(names), item_of);
}

ColumnItems TableColumn::value_items() const {
    std::vector<std::string> names;
    std::vector<std::uint32_t> item_of(dictionary_.size(), no_item);
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        if (!is_missing(dictionary_.text(value))) {
            item_of[value] = static_cast<std::uint32_t>(names.size());
            names.push_back(item_name(name_, dictionary_.text(value)));
        }
    }
    return one_for_each(std::move(names), item_of);
}

ColumnItems TableColumn::answer_items() const {
    ColumnItems items = {{}, {0}, {}};
    std::unordered_map<std::string_view, std::uint32_t> item_of;
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        std::set<std::uint32_t> here;
        for_each_answer(dictionary_.text(value), separator_, [&](std::string_view answer) {
            if (is_missing(answer)) {
                return;
            }
            const auto [item, is_new] =
                item_of.try_emplace(answer, static_cast<std::uint32_t>(items.names.size()));
            if (is_new) {
                items.names.push_back(item_name(name_, answer));
            }
            here.insert(item->second);
        });
        items.of_values.insert(items.of_values.end(), here.begin(), here.end());
        items.begins.push_back(static_cast<std::uint32_t>(items.of_values.size()));
    }
    return items;
}

ColumnItems TableColumn::flag_items() const {
    std::vector<std::uint32_t> item_of(dictionary_.size(), no_item);
    for (std::uint32_t value = 0; value < dictionary_.size(); ++value) {
        const std::string_view text = dictionary_.text(value);
        item_of[value] = !is_missing(text) && truth_of(text) == true ? 0 : no_item;
    }
    const bool occurs = std::ranges::find(item_of, 0U) != item_of.end();
    return one_for_each(occurs ? std::vector<std::string>{name_} : std::vector<std::string>{}, item_of);
}

ColumnItems TableColumn::items(const std::vector<std::uint64_t>& cells) const {
    if (is_cut()) {
        return bin_items(cells);
    }
    switch (meaning_) {
        case Meaning::answers:
            return answer_items();
        case Meaning::flag:
            return flag_items();
        default:
            return value_items();
    }
}

void TableColumn::move_to(Database& database) {
    ColumnItems items =
        this->items(is_cut() ? cells_of_values(database.weights) : std::vector<std::uint64_t>());
    const auto first = static_cast<Item>(database.items.size() + 1);
    const std::size_t number_of_items = items.names.size();
    std::ranges::move(items.names, std::back_inserter(database.names));
    move_to(database, first, std::move(items), number_of_items);
}

void TableColumn::move_to(Database& database, Item first, ColumnItems items, std::size_t number_of_items) {
    const std::size_t values = dictionary_.size();
    dictionary_ = {};
    numbers_ = {};
    std::vector<std::vector<Transaction>> transactions;
    lines_.visit(
        [&](const auto& lines) { transactions = transactions_of(lines, values, items, number_of_items); });
    lines_ = {};
    for (std::size_t item = 0; item < number_of_items; ++item) {
        if (!transactions[item].empty()) {
            database.items.push_back({first + static_cast<Item>(item), std::move(transactions[item])});
        }
    }
}

}  // namespace korv::tools
