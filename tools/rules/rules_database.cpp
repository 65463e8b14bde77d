#include "rules/rules_database.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

#include "common/utf8.h"
#include "rules/class_numbers.h"
#include "rules/item_supports.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"
#include "rules/sqlite_database.h"

namespace korv::tools {

namespace {

constexpr int schema_version = 1;  // to be raised when a program that reads the tables must change

/// The tables besides that of the rules, which depends on the measures.
constexpr const char* tables = R"(
CREATE TABLE meta(
    key TEXT PRIMARY KEY,
    value
) WITHOUT ROWID;
CREATE TABLE item(
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL,
    column_name TEXT,
    value TEXT,
    support INTEGER
);
CREATE TABLE side(
    id INTEGER PRIMARY KEY,
    negated INTEGER NOT NULL,
    wording TEXT NOT NULL,
    size INTEGER NOT NULL,
    support INTEGER NOT NULL,
    support_max INTEGER NOT NULL
);
CREATE TABLE side_item(
    side INTEGER NOT NULL REFERENCES side,
    item INTEGER NOT NULL REFERENCES item,
    PRIMARY KEY(side, item)
) WITHOUT ROWID;
CREATE TABLE class(
    id INTEGER PRIMARY KEY,
    support INTEGER NOT NULL
);
CREATE TABLE class_item(
    class INTEGER NOT NULL REFERENCES class,
    item INTEGER NOT NULL REFERENCES item,
    PRIMARY KEY(class, item)
) WITHOUT ROWID;
CREATE TABLE essential(
    id INTEGER PRIMARY KEY,
    class INTEGER NOT NULL REFERENCES class
);
CREATE TABLE essential_item(
    essential INTEGER NOT NULL REFERENCES essential,
    item INTEGER NOT NULL REFERENCES item,
    PRIMARY KEY(essential, item)
) WITHOUT ROWID;
CREATE TABLE edge(
    upper INTEGER NOT NULL REFERENCES class,
    lower INTEGER NOT NULL REFERENCES class,
    PRIMARY KEY(upper, lower)
) WITHOUT ROWID;
)";

/// For the rules of an item, those of a side, the strongest ones, and the way up in the lattice. There is
/// none for the items of classes, which are many: it would take longer to make than most questions without.
constexpr const char* indexes = R"(
CREATE INDEX item_name ON item(name);
CREATE INDEX side_item_item ON side_item(item);
CREATE INDEX rule_premise ON rule(premise);
CREATE INDEX rule_conclusion ON rule(conclusion);
CREATE INDEX rule_confidence ON rule(confidence);
CREATE INDEX rule_lift ON rule(lift);
CREATE INDEX essential_class ON essential(class);
CREATE INDEX edge_lower ON edge(lower);
)";

/// Appends the definitions of the columns of the table of rules.
class Definitions {
public:
    explicit Definitions(std::string& text) : text_(text) {}

    template <typename Value>
    void one(std::string_view name, const Value& /*value*/) {
        using Result = std::invoke_result_t<Value, const NumberedRule&>;
        add(name, name == "id"                  ? "INTEGER PRIMARY KEY"
                  : std::integral<Result>       ? "INTEGER NOT NULL"
                  : std::floating_point<Result> ? "REAL"
                                                : "TEXT NOT NULL");
    }

    template <typename Value>
    void range(std::string_view name, std::string_view name_of_most, const Value& /*value*/) {
        constexpr bool is_count = std::same_as<std::invoke_result_t<Value, const NumberedRule&>, CountRange>;
        for (const std::string_view each : {name, name_of_most}) {
            add(each, is_count ? "INTEGER NOT NULL" : "REAL");
        }
    }

    template <typename Value>
    void side(std::string_view name, const Value& /*value*/) {
        add(name, "INTEGER NOT NULL REFERENCES side");
    }

private:
    void add(std::string_view name, std::string_view type) {
        text_.append(text_.empty() ? "\n    " : ",\n    ").append(name).append(" ").append(type);
    }

    std::string& text_;
};

/// Appends the columns of the view in which the sides are in words.
class ViewColumns {
public:
    explicit ViewColumns(std::string& text) : text_(text) {}

    template <typename Value>
    void one(std::string_view name, const Value& /*value*/) {
        add("rule.", name);
    }

    template <typename Value>
    void range(std::string_view name, std::string_view name_of_most, const Value& /*value*/) {
        add("rule.", name);
        add("rule.", name_of_most);
    }

    template <typename Value>
    void side(std::string_view name, const Value& /*value*/) {
        add(name, "_side.wording AS ");
        text_ += name;
    }

private:
    void add(std::string_view table, std::string_view name) {
        text_.append(text_.empty() ? "\n    " : ",\n    ").append(table).append(name);
    }

    std::string& text_;
};

/// The sides of rules, numbered from 1 in the order in which they come, with their supports.
class NumberedSides {
public:
    struct NumberedSide {
        Side side;
        CountRange support;  ///< as close as the rules tell
    };

    explicit NumberedSides(std::size_t itemsets) : numbers_(2 * itemsets) {}

    void add(Side side, const CountRange& support) {
        std::uint32_t& number = numbers_[position(side)];
        if (number == 0) {
            sides_.push_back({side, support});
            number = static_cast<std::uint32_t>(sides_.size());
            return;
        }
        CountRange& known = sides_[number - 1].support;
        known = {std::max(known.low, support.low), std::min(known.high, support.high)};
    }

    std::uint32_t number(Side side) const { return numbers_[position(side)]; }

    const std::vector<NumberedSide>& all() const { return sides_; }

private:
    static std::size_t position(Side side) {
        return 2 * std::size_t{side.itemset()} + (side.is_negated() ? 1 : 0);
    }

    std::vector<std::uint32_t> numbers_;  ///< 0: the side is in no rule
    std::vector<NumberedSide> sides_;
};

NumberedSides numbered_sides(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets) {
    NumberedSides sides(itemsets.size());
    for (const FoundRule& rule : rules) {
        sides.add(rule.premise, range_of(rule, &Contingency::premise));
        sides.add(rule.conclusion, range_of(rule, &Contingency::conclusion));
    }
    return sides;
}

/// Gives the values of a rule to a statement.
class RuleRow {
public:
    RuleRow(const NumberedRule& rule, const NumberedSides& sides, SqliteStatement& statement)
        : rule_(rule), sides_(sides), statement_(statement) {}

    template <typename Value>
    void one(std::string_view /*name*/, const Value& value) {
        statement_.add(value(rule_));
    }

    template <typename Value>
    void range(std::string_view /*name*/, std::string_view /*name_of_most*/, const Value& value) {
        const auto [low, high] = value(rule_);
        add(low);
        add(high);
    }

    template <typename Value>
    void side(std::string_view /*name*/, const Value& value) {
        statement_.add(sides_.number(value(rule_)));
    }

private:
    void add(Count number) { statement_.add(number); }
    void add(double number) { statement_.add(number + 0.0); }  // which takes the sign from -0

    const NumberedRule& rule_;
    const NumberedSides& sides_;
    SqliteStatement& statement_;
};

/// All items of names, classes and transactions, ascending.
Itemset items_of(const RuleInput& input) {
    std::unordered_set<Item> found;
    for (const auto& [item, name] : input.names.all()) {
        found.insert(item);
    }
    for (const auto& [itemset, of_class] : input.classes) {
        found.insert(itemset.begin(), itemset.end());
    }
    if (input.database) {
        for (const Database::ItemColumn& column : input.database->items) {
            found.insert(column.item);
        }
    }
    Itemset items(found.begin(), found.end());
    std::ranges::sort(items);
    return items;
}

std::string_view name_of(Prune prune) {
    switch (prune) {
        case Prune::none:
            return "none";
        case Prune::same:
            return "same";
        case Prune::full:
            return "full";
        case Prune::productive:
            break;
    }
    return "productive";
}

/// Fills the tables, one after the other.
class TableWriter {
public:
    TableWriter(const SearchResult& found, const RuleBook& book, const RulesOrigin& origin,
                const SqliteDatabase& database)
        : found_(found),
          book_(book),
          origin_(origin),
          database_(database),
          further_(further_measures(book)) {}

    void write() const {
        create_tables();
        write_meta();
        write_items();
        const NumberedSides sides = numbered_sides(found_.rules, book_.itemsets);
        write_sides(sides);
        write_rules(sides);
        write_classes();
        write_edges();
        database_.run(indexes);
    }

private:
    void create_tables() const {
        std::string definitions;
        for_each_column(further_, book_, Definitions(definitions));
        std::string columns;
        for_each_column(further_, book_, ViewColumns(columns));
        database_.run("PRAGMA user_version = " + std::to_string(schema_version) + ';' + tables +
                      "CREATE TABLE rule(" + definitions + "\n);\nCREATE VIEW rules AS SELECT" + columns +
                      "\nFROM rule\n"
                      "JOIN side AS premise_side ON premise_side.id = rule.premise\n"
                      "JOIN side AS conclusion_side ON conclusion_side.id = rule.conclusion");
    }

    void write_meta() const {
        SqliteStatement statement(database_, insertion("meta", 2));
        const auto add = [&statement](std::string_view key, const auto& value) {
            statement.insert_row(key, value);
        };
        const std::string inputs = valid_utf8(origin_.names_of_inputs);
        const std::string options = valid_utf8(origin_.options);
        add("program", std::string_view("korv-rules"));
        add("version", std::string_view(KORV_VERSION));
        add("input", std::string_view(inputs));
        add("options", std::string_view(options));
        add("transactions", book_.transactions);
        add("classes", found_.accounting.classes);
        add("derived", found_.accounting.derived);
        add("prune", name_of(found_.accounting.prune));
        add("rules", found_.rules.size());
    }

    void write_items() const {
        const ItemSupports supports = origin_.input.database ? supports_of_items(*origin_.input.database)
                                                             : supports_of_items(origin_.input.classes);
        SqliteStatement statement(database_, insertion("item", 5));
        for (const Item item : items_of(origin_.input)) {
            const std::string name = valid_utf8(book_.names.name(item));
            std::optional<std::string> column;
            std::optional<std::string> value;
            if (const ItemNames::Column* const of_item = book_.names.column_of(item)) {
                column = valid_utf8(of_item->name);
                value = valid_utf8(book_.names.value(item));
            }
            const auto support = supports.find(item);
            statement.insert_row(item, std::string_view(name), column, value,
                                 support == supports.end() ? std::nullopt : std::optional(support->second));
        }
    }

    void write_sides(const NumberedSides& sides) const {
        SqliteStatement side_rows(database_, insertion("side", 6));
        SqliteLinks items_of_sides(database_, "side_item");
        std::int64_t number = 0;
        for (const auto& [side, support] : sides.all()) {
            ++number;
            const ItemSpan items = book_.itemsets[side.itemset()];
            const std::string wording = side_text(side, book_, {});
            side_rows.insert_row(number, side.is_negated(), std::string_view(wording), items.size(),
                                 support.low, support.high);
            for (const Item item : items) {
                items_of_sides.add(number, item);
            }
        }
        items_of_sides.finish();
    }

    void write_rules(const NumberedSides& sides) const {
        std::string columns;
        for_each_column(further_, book_, ViewColumns(columns));
        const auto commas = static_cast<std::size_t>(std::ranges::count(columns, ','));
        SqliteStatement statement(database_, insertion("rule", commas + 1));
        std::uint64_t id = 0;
        for (const FoundRule& rule : found_.rules) {
            for_each_column(further_, book_, RuleRow({++id, rule, book_}, sides, statement));
            statement.insert();
        }
    }

    void write_classes() const {
        SqliteStatement class_rows(database_, insertion("class", 2));
        SqliteLinks items_of_classes(database_, "class_item");
        SqliteStatement essential_rows(database_, insertion("essential", 2));
        SqliteLinks items_of_essentials(database_, "essential_item");
        std::int64_t number = 0;
        std::int64_t number_of_essential = 0;
        for (const LatticeEntry& entry : found_.lattice) {
            class_rows.insert_row(++number, entry.support());
            for (const Item item : entry.itemset()) {
                items_of_classes.add(number, item);
            }
            for (const Itemset& essential : entry.essentials()) {
                essential_rows.insert_row(++number_of_essential, number);
                for (const Item item : essential) {
                    items_of_essentials.add(number_of_essential, item);
                }
            }
        }
        items_of_classes.finish();
        items_of_essentials.finish();
    }

    void write_edges() const {
        const ClassNumbers numbers(found_.lattice);
        SqliteLinks links(database_, "edge");
        std::vector<std::int64_t> lower;
        std::int64_t upper = 0;
        for (const LatticeEntry& entry : found_.lattice) {
            ++upper;
            lower.clear();
            std::ranges::transform(
                entry.successors, std::back_inserter(lower),
                [&numbers](NodeRef successor) { return static_cast<std::int64_t>(numbers.of(successor)); });
            std::ranges::sort(lower);  // rows in their order are inserted faster
            for (const std::int64_t number : lower) {
                links.add(upper, number);
            }
        }
        links.finish();
    }

    const SearchResult& found_;
    const RuleBook& book_;
    const RulesOrigin& origin_;
    const SqliteDatabase& database_;
    const std::vector<FurtherMeasure> further_;
};

}  // namespace

void require_rules_database() {}

void write_rules_database(const SearchResult& found, const RuleBook& book, const RulesOrigin& origin,
                          const AtomicOutput& output) {
    const SqliteDatabase database(output.temporary_path(), output.name());
    database.run("BEGIN");
    TableWriter(found, book, origin, database).write();
    database.run("COMMIT");
}

}  // namespace korv::tools
