#include "rules/exclusion_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <map>
#include <span>
#include <utility>

#include "mine/threshold.h"
#include "rules/fisher.h"

namespace korv::tools {

namespace {

/// The number of an item among those that are frequent, from 0 in the order of items.
using Position = std::uint32_t;

/// No column that excludes.
constexpr std::size_t no_column = std::numeric_limits<std::size_t>::max();

/// The frequent items of each line, ascending, with the weight of the line.
class FrequentLines {
public:
    FrequentLines(const Database& database, const std::vector<const Database::ItemColumn*>& columns)
        : database_(database), begins_(std::size_t{database.lines} + 1) {
        for (const Database::ItemColumn* column : columns) {
            for (const Transaction line : column->transactions) {
                ++begins_[std::size_t{line} + 1];
            }
        }
        for (std::size_t line = 0; line < database.lines; ++line) {
            begins_[line + 1] += begins_[line];
        }
        items_.resize(begins_.back());
        std::vector<std::size_t> ends(begins_.begin(), begins_.end() - 1);
        for (Position position = 0; position < columns.size(); ++position) {
            for (const Transaction line : columns[position]->transactions) {
                items_[ends[line]++] = position;
            }
        }
    }

    std::span<const Position> items(Transaction line) const {
        return std::span(items_).subspan(begins_[line], begins_[std::size_t{line} + 1] - begins_[line]);
    }

    Count weight(Transaction line) const { return database_.weights.empty() ? 1 : database_.weights[line]; }

private:
    const Database& database_;
    std::vector<std::size_t> begins_;  ///< by line, in `items_`; then the end
    std::vector<Position> items_;
};

/// Goes through the lines of one item after the other, in the order of items, and knows for each line how
/// many of its items have been gone through.
class LaterItems {
public:
    LaterItems(const FrequentLines& lines, Count number_of_lines) : lines_(lines), done_(number_of_lines) {}

    /// The items of a line of the next item that come behind it. To be called for each of its lines.
    std::span<const Position> next(Transaction line) { return lines_.items(line).subspan(++done_[line]); }

private:
    const FrequentLines& lines_;
    std::vector<Position> done_;
};

/// Keeps the first ones in the order of exclusions.
class FirstExclusions {
public:
    /// `most`: 0 for all.
    explicit FirstExclusions(std::size_t most) : most_(most) {}

    void add(const Exclusion& exclusion) {
        ++added_;
        kept_.push_back(exclusion);
        constexpr std::size_t slack = 16;
        if (most_ > 0 && kept_.size() >= 2 * most_ + slack) {
            std::ranges::nth_element(kept_, kept_.begin() + static_cast<std::ptrdiff_t>(most_), comes_before);
            kept_.resize(most_);
        }
    }

    /// The first ones in order, and how many others there were.
    std::pair<std::vector<Exclusion>, std::uint64_t> take() {
        std::ranges::sort(kept_, comes_before);
        if (most_ > 0 && kept_.size() > most_) {
            kept_.resize(most_);
        }
        return {std::move(kept_), added_ - kept_.size()};
    }

private:
    std::size_t most_;
    std::uint64_t added_ = 0;
    std::vector<Exclusion> kept_;
};

/// A later item that is together with one in enough transactions.
struct Neighbour {
    Position item;
    Count together;
};

/// The later items of the transactions that hold an item, as far as they are its neighbours.
class Projection {
public:
    void clear() {
        items_.clear();
        rows_.clear();
    }

    void add(std::span<const Position> later, const std::vector<Count>& together_with, Count weight) {
        const std::size_t begin = items_.size();
        std::ranges::copy_if(later, std::back_inserter(items_),
                             [&](Position item) { return together_with[item] > 0; });
        constexpr std::size_t fewest = 2;  // for a triple
        if (items_.size() - begin < fewest) {
            items_.resize(begin);
            return;
        }
        rows_.push_back({begin, items_.size(), weight});
    }

    /// Sorts what was added by item. `items`: how many frequent ones there are.
    void index(std::size_t items) {
        begins_.assign(items + 1, 0);
        for (const Position item : items_) {
            ++begins_[std::size_t{item} + 1];
        }
        for (std::size_t item = 0; item < items; ++item) {
            begins_[item + 1] += begins_[item];
        }
        places_.resize(items_.size());
        std::vector<std::size_t> ends(begins_.begin(), begins_.end() - 1);
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            for (std::size_t place = rows_[row].begin; place < rows_[row].end; ++place) {
                places_[ends[items_[place]]++] = {row, place};
            }
        }
    }

    /// Adds, for each item behind `item`, the transactions that hold both.
    void count_with(Position item, std::vector<Count>& counts) const {
        for (std::size_t i = begins_[item]; i < begins_[std::size_t{item} + 1]; ++i) {
            const Row& row = rows_[places_[i].row];
            for (std::size_t place = places_[i].place + 1; place < row.end; ++place) {
                counts[items_[place]] += row.weight;
            }
        }
    }

private:
    struct Row {
        std::size_t begin;
        std::size_t end;
        Count weight;
    };

    struct Place {
        std::size_t row;
        std::size_t place;
    };

    std::vector<Position> items_;  ///< row by row
    std::vector<Row> rows_;
    std::vector<std::size_t> begins_;  ///< by item, in `places_`; then the end
    std::vector<Place> places_;
};

class Search {
public:
    Search(const Database& database, const ItemChoice& choice, const RuleRequest& request,
           const ExclusionRequest& exclusions, const ExclusionProgress& progress)
        : database_(database),
          choice_(choice),
          exclusions_(exclusions),
          progress_(progress),
          min_support_(in_transactions(request.min_support, "--min-support", 1, database.transactions)),
          columns_(frequent_columns()),
          lines_(database, columns_),
          first_(request.top) {
        for (const Database::ItemColumn* column : columns_) {
            items_.push_back(column->item);
            counts_.push_back(count(*column));
        }
        accounting_.items = items_.size();
        accounting_.transactions = database.transactions;
        accounting_.pairs = pairs_of(items_.size());
    }

    ExclusionResult found(const ItemNames& names, const ColumnFacts& columns) {
        find_excluding_columns(names, columns);
        find_pairs();
        if (wants_triples()) {
            find_triples();
        }
        auto [exclusions, beyond] = first_.take();
        accounting_[ExclusionStep::top] = beyond;
        return {std::move(exclusions), accounting_};
    }

private:
    static std::uint64_t pairs_of(std::uint64_t items) { return items < 2 ? 0 : items * (items - 1) / 2; }

    Count count(const Database::ItemColumn& column) const {
        if (database_.weights.empty()) {
            return static_cast<Count>(column.transactions.size());
        }
        Count sum = 0;
        for (const Transaction line : column.transactions) {
            sum += database_.weights[line];
        }
        return sum;
    }

    std::vector<const Database::ItemColumn*> frequent_columns() const {
        std::vector<const Database::ItemColumn*> columns;
        for (const Database::ItemColumn& column : database_.items) {
            if (count(column) >= min_support_) {
                columns.push_back(&column);
            }
        }
        return columns;
    }

    /// Numbers the columns whose values exclude each other, and counts their pairs.
    void find_excluding_columns(const ItemNames& names, const ColumnFacts& facts) {
        std::map<const ItemNames::Column*, std::vector<Position>> by_column;
        for (Position position = 0; position < items_.size(); ++position) {
            if (const ItemNames::Column* column = names.column_of(items_[position]); column != nullptr) {
                by_column[column].push_back(position);
            }
        }
        excluding_column_.assign(items_.size(), no_column);
        for (const auto& [column, positions] : by_column) {
            // What the facts say of two values of a column holds for all of them.
            if (positions.size() < 2 || !facts.imply({ItemSpan(&items_[positions[0]], 1), false},
                                                     {ItemSpan(&items_[positions[1]], 1), true})) {
                continue;
            }
            for (const Position position : positions) {
                excluding_column_[position] = positions.front();
            }
            accounting_[ExclusionStep::columns] += pairs_of(positions.size());
        }
    }

    bool exclude_by_column(Position one, Position other) const {
        return excluding_column_[one] != no_column && excluding_column_[one] == excluding_column_[other];
    }

    /// The least surprise that remains when `number` of them are looked at.
    double least_surprise(std::uint64_t number) const {
        if (exclusions_.alpha == 1) {
            return 0;
        }
        constexpr double rounding = 1e-12;  // so that what is equal to alpha passes
        return std::log10(static_cast<double>(number) / exclusions_.alpha) * (1 - rounding);
    }

    void find_pairs() {
        const std::uint64_t pairs = accounting_.pairs - accounting_[ExclusionStep::columns];
        least_ = least_surprise(pairs);
        LaterItems later(lines_, database_.lines);
        std::vector<Count> together(items_.size());
        neighbours_.resize(exclusions_.max_items == 2 ? 0 : items_.size());
        std::uint64_t done = 0;
        for (Position one = 0; one < items_.size(); ++one) {
            std::fill(together.begin() + one, together.end(), 0);
            for (const Transaction line : columns_[one]->transactions) {
                const Count weight = lines_.weight(line);
                for (const Position other : later.next(line)) {
                    together[other] += weight;
                }
            }
            for (Position other = one + 1; other < items_.size(); ++other) {
                look_at_pair(one, other, together[other]);
            }
            done += items_.size() - 1 - one;
            progress_(ExclusionPhase::pairs, accounting_, done, accounting_.pairs);
        }
    }

    void look_at_pair(Position one, Position other, Count together) {
        if (exclude_by_column(one, other)) {
            return;
        }
        if (together >= min_support_ && !neighbours_.empty()) {
            neighbours_[one].push_back({other, together});
        }
        const std::array<Contingency, 1> way = {{{counts_[one], counts_[other], together}}};
        Exclusion pair = {.size = 2,
                          .numbers = {items_[one], items_[other], 0},
                          .counts = {counts_[one], counts_[other], 0},
                          .together = together,
                          .covered = counts_[one] + (counts_[other] - together),
                          .expected_times_all = 0,
                          .p = 0};
        judge(way, pair);
    }

    /// Keeps an exclusion whose items meet by chance in one of some ways, or accounts for it.
    void judge(std::span<const Contingency> ways, Exclusion& exclusion) {
        std::uint64_t smallest = std::numeric_limits<std::uint64_t>::max();
        for (const Contingency& way : ways) {
            smallest = std::min(smallest, std::uint64_t{way.premise} * way.conclusion);
        }
        if (std::uint64_t{exclusion.together} * database_.transactions >= smallest) {
            ++accounting_[ExclusionStep::chance];
            return;
        }
        exclusion.expected_times_all = smallest;
        exclusion.p = least_surprise_of(ways);
        if (exclusion.p < least_) {
            ++accounting_[ExclusionStep::uncertain];
        } else if (!choice_.holds(exclusion.items(), {})) {
            ++accounting_[ExclusionStep::items];
        } else {
            ++accounting_.kept;
            first_.add(exclusion);
        }
    }

    /// The smallest surprise of some tables; any number below the least one that is asked for where it is
    /// below that.
    double least_surprise_of(std::span<const Contingency> ways) const {
        constexpr double too_small = -1;
        double smallest = std::numeric_limits<double>::infinity();
        for (const Contingency& way : ways) {
            if (most_surprise(way, database_.transactions) < least_) {
                return too_small;
            }
        }
        for (const Contingency& way : ways) {
            smallest = std::min(smallest, surprise(Tail::fewer, way, database_.transactions));
            if (smallest < least_) {
                return too_small;
            }
        }
        return smallest;
    }

    /// Whether triples are asked for, or else whether they take no more than seconds.
    bool wants_triples() {
        if (exclusions_.max_items) {
            return *exclusions_.max_items == most_excluding_items;
        }
        accounting_.has_too_many_triples = steps_for_triples() > most_steps_for_triples;
        return !accounting_.has_too_many_triples;
    }

    /// About how many steps it takes to find and to count all triples.
    std::uint64_t steps_for_triples() const {
        double steps = 0;  // which do not fit 64 bits for long transactions
        for (const std::vector<Neighbour>& each : neighbours_) {
            for (const Neighbour& neighbour : each) {
                steps += static_cast<double>(neighbours_[neighbour.item].size());
            }
        }
        for (Transaction line = 0; line < database_.lines; ++line) {
            const auto items = static_cast<double>(lines_.items(line).size());
            steps += items * items * items / 6;
        }
        constexpr double largest = 1e18;
        return static_cast<std::uint64_t>(std::min(steps, largest));
    }

    void find_triples() {
        accounting_.triples = number_of_triples();
        least_ = least_surprise(accounting_.triples);
        LaterItems later(lines_, database_.lines);
        std::vector<Count> together(items_.size());
        with_both_.resize(items_.size());
        Projection projection;
        std::uint64_t done = 0;
        for (Position one = 0; one < items_.size(); ++one) {
            mark(neighbours_[one], together);
            projection.clear();
            for (const Transaction line : columns_[one]->transactions) {
                projection.add(later.next(line), together, lines_.weight(line));
            }
            projection.index(items_.size());
            for (const Neighbour& other : neighbours_[one]) {
                done += look_at_triples(one, other, together, projection);
            }
            unmark(neighbours_[one], together);
            progress_(ExclusionPhase::triples, accounting_, done, accounting_.triples);
        }
    }

    static void mark(const std::vector<Neighbour>& neighbours, std::vector<Count>& together) {
        for (const Neighbour& each : neighbours) {
            together[each.item] = each.together;
        }
    }

    static void unmark(const std::vector<Neighbour>& neighbours, std::vector<Count>& together) {
        for (const Neighbour& each : neighbours) {
            together[each.item] = 0;
        }
    }

    std::uint64_t number_of_triples() const {
        std::vector<Count> together(items_.size());
        std::uint64_t number = 0;
        for (const std::vector<Neighbour>& neighbours : neighbours_) {
            mark(neighbours, together);
            for (const Neighbour& each : neighbours) {
                number += static_cast<std::uint64_t>(std::ranges::count_if(
                    neighbours_[each.item],
                    [&together](const Neighbour& third) { return together[third.item] > 0; }));
            }
            unmark(neighbours, together);
        }
        return number;
    }

    /// Looks at all triples of two neighbours and a later one. `with_one`: how often an item is together with
    /// the first, 0 where that is too seldom. Returns how many there are.
    std::uint64_t look_at_triples(Position one, const Neighbour& other, const std::vector<Count>& with_one,
                                  const Projection& projection) {
        const auto is_common = [&with_one](const Neighbour& third) { return with_one[third.item] > 0; };
        if (std::ranges::none_of(neighbours_[other.item], is_common)) {
            return 0;
        }
        for (const Neighbour& each : neighbours_[one]) {
            with_both_[each.item] = 0;
        }
        projection.count_with(other.item, with_both_);
        std::uint64_t number = 0;
        for (const Neighbour& third : neighbours_[other.item]) {
            if (is_common(third)) {
                ++number;
                look_at_triple({one, other.item, third.item},
                               {other.together, with_one[third.item], third.together},
                               with_both_[third.item]);
            }
        }
        return number;
    }

    /// `pairs`: how often are together the first and the second item, the first and the third, the second and
    /// the third.
    void look_at_triple(const std::array<Position, 3>& positions, const std::array<Count, 3>& pairs,
                        Count together) {
        const auto [one, other, third] = positions;
        const std::array<Contingency, 3> ways = {{{counts_[third], pairs[0], together},
                                                  {counts_[other], pairs[1], together},
                                                  {counts_[one], pairs[2], together}}};
        const std::uint64_t singles = std::uint64_t{counts_[one]} + counts_[other] + counts_[third];
        const std::uint64_t twice = std::uint64_t{pairs[0]} + pairs[1] + pairs[2];
        Exclusion triple = {.size = 3,
                            .numbers = {items_[one], items_[other], items_[third]},
                            .counts = {counts_[one], counts_[other], counts_[third]},
                            .together = together,
                            .covered = static_cast<Count>(singles + together - twice),
                            .expected_times_all = 0,
                            .p = 0};
        judge(ways, triple);
    }

    const Database& database_;
    const ItemChoice& choice_;
    const ExclusionRequest& exclusions_;
    const ExclusionProgress& progress_;
    const Count min_support_;
    const std::vector<const Database::ItemColumn*> columns_;  ///< of the frequent items
    const FrequentLines lines_;
    Itemset items_;                              ///< by position
    std::vector<Count> counts_;                  ///< by position
    std::vector<std::size_t> excluding_column_;  ///< by position: a number of the column, or no_column
    double least_ = 0;                           ///< surprise of what is kept
    /// By position: the later items with which it is together in enough transactions, ascending; empty where
    /// there are to be no triples.
    std::vector<std::vector<Neighbour>> neighbours_;
    std::vector<Count> with_both_;  ///< working space
    FirstExclusions first_;
    ExclusionAccounting accounting_;
};

}  // namespace

ExclusionResult find_exclusions(const Database& database, const ItemNames& names, const ColumnFacts& columns,
                                const ItemChoice& choice, const RuleRequest& request,
                                const ExclusionRequest& exclusions, const ExclusionProgress& progress) {
    if (database.items.empty()) {
        return {{}, {.items = 0, .transactions = database.transactions}};
    }
    return Search(database, choice, request, exclusions, progress).found(names, columns);
}

}  // namespace korv::tools
