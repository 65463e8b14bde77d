#include "rules/rules_page.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "common/utf8.h"
#include "rules/base64.h"
#include "rules/deflation.h"
#include "rules/item_supports.h"
#include "rules/page_arrays.h"
#include "rules/page_classes.h"
#include "rules/page_header.h"
#include "rules/page_items.h"
#include "rules/page_program.h"
#include "rules/page_rules.h"

namespace korv::tools {

namespace {

/// What all of a page but its program may take, and what its classes may take in any case, in bytes before
/// they become base64.
constexpr std::size_t bytes_of_a_rule = 25 * 3 / 4;
constexpr std::size_t least_for_classes = std::size_t{32} << 10;

constexpr std::uint32_t unknown = std::numeric_limits<std::uint32_t>::max();

/// How many bytes arrays take once they are compressed.
std::size_t deflated_size(const PageArrays& arrays) {
    std::size_t size = 0;
    Deflation deflation([&size](std::string_view bytes) { size += bytes.size(); });
    arrays.write([&deflation](std::string_view bytes) { deflation.add(bytes); });
    deflation.finish();
    return size;
}

/// A text as HTML has it between tags, and between quotes.
std::string escaped(std::string_view text) {
    std::string html;
    for (const char character : text) {
        switch (character) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            default:
                html += character;
        }
    }
    return html;
}

/// All items of names, classes and transactions, ascending.
Itemset items_of(const RuleInput& input) {
    std::set<Item> items;
    for (const auto& [item, name] : input.names.all()) {
        items.insert(item);
    }
    for (const auto& [itemset, of_class] : input.classes) {
        items.insert(itemset.begin(), itemset.end());
    }
    if (input.database) {
        for (const Database::ItemColumn& column : input.database->items) {
            items.insert(column.item);
        }
    }
    return {items.begin(), items.end()};
}

/// The arrays of a page, part by part.
class PageParts {
public:
    PageParts(const SearchResult& found, const RuleBook& book, const PageOrigin& origin)
        : found_(found),
          book_(book),
          origin_(origin),
          all_items_(items_of(origin.input)),
          sides_(found.rules, book.itemsets),
          lattice_(found.lattice) {}

    /// Puts the parts together. Returns the header.
    std::string assemble() {
        add_rules(found_.rules, sides_, book_.known.has_forms, rules_);
        add_holdout(found_.holdout, rules_);
        choose_classes();
        items_ = needed_items();
        add_item_arrays();
        add_sides(sides_, book_.itemsets, items_, arrays_);
        arrays_.append(std::move(rules_));
        add_classes(lattice_, classes_, items_, arrays_);
        add_exclusions(items_, arrays_);
        return page_header({found_, book_, origin_, sides_, items_,
                            all_items_.all().size() - items_.all().size(), classes_.size(), arrays_});
    }

    const PageArrays& arrays() const { return arrays_; }
    std::size_t classes() const { return classes_.size(); }

private:
    /// Takes as many classes as there is room for beside everything else.
    void choose_classes() {
        PageArrays others;
        add_sides(sides_, book_.itemsets, all_items_, others);
        add_exclusions(all_items_, others);
        const std::size_t taken = deflated_size(rules_) + deflated_size(others);
        const std::size_t most = found_.rules.size() * bytes_of_a_rule;
        const std::size_t room = std::max(least_for_classes, most - std::min(taken, most));
        classes_ = classes_within(lattice_,
                                  classes_by_need(lattice_, found_.rules, book_.itemsets, book_.transactions),
                                  all_items_, room, deflated_size);
    }

    /// The items of sides, classes and exclusions, and those of columns by which sides may be said.
    PageItems needed_items() const {
        std::set<Item> items;
        const auto add = [&items](ItemSpan itemset) { items.insert(itemset.begin(), itemset.end()); };
        for (const PageSides::CountedSide& each : sides_.all()) {
            add(book_.itemsets[each.side.itemset()]);
        }
        for (const std::uint32_t position : classes_) {
            add(lattice_.entry(position).itemset());
        }
        if (origin_.exclusions) {
            for (const Exclusion& exclusion : origin_.exclusions->exclusions) {
                add(exclusion.items());
            }
        }
        for (const ItemNames::Column& column : book_.names.columns()) {
            const bool is_used =
                std::ranges::any_of(column.items, [&items](Item item) { return items.contains(item); });
            if (is_used && is_exhaustive(column)) {
                add(column.items);
            }
        }
        return PageItems({items.begin(), items.end()});
    }

    bool is_exhaustive(const ItemNames::Column& column) const {
        return book_.columns != nullptr &&
               !book_.columns->worded(ItemSpan(column.items.data(), 1)).rest.empty();
    }

    void add_item_arrays() {
        const ItemSupports supports = origin_.input.database ? supports_of_items(*origin_.input.database)
                                                             : supports_of_items(origin_.input.classes);
        std::vector<std::uint32_t> counts;
        for (const Item item : items_.all()) {
            const auto found = supports.find(item);
            counts.push_back(found == supports.end() ? unknown : found->second);
        }
        arrays_.add("item_numbers", items_.all());
        arrays_.add("item_counts", counts);
    }

    void add_exclusions(const PageItems& items, PageArrays& arrays) const {
        if (!origin_.exclusions) {
            return;
        }
        std::vector<std::uint32_t> firsts;
        std::vector<std::uint32_t> seconds;
        std::vector<std::uint32_t> together;
        std::vector<float> surprises;
        for (const Exclusion& exclusion : origin_.exclusions->exclusions) {
            firsts.push_back(items.position(exclusion.numbers[0]));
            seconds.push_back(items.position(exclusion.numbers[1]));
            together.push_back(exclusion.together);
            surprises.push_back(static_cast<float>(exclusion.p));
        }
        arrays.add("exclusion_firsts", firsts);
        arrays.add("exclusion_seconds", seconds);
        arrays.add("exclusion_togethers", together);
        arrays.add_floats("exclusion_ps", surprises);
    }

    const SearchResult& found_;
    const RuleBook& book_;
    const PageOrigin& origin_;
    const PageItems all_items_;
    const PageSides sides_;
    const PageLattice lattice_;
    PageArrays rules_;
    std::vector<std::uint32_t> classes_;
    PageItems items_;
    PageArrays arrays_;
};

/// Four bytes, the lowest first.
std::string bytes_of(std::size_t number) {
    constexpr unsigned bits_of_a_byte = 8;
    std::string bytes;
    for (unsigned position = 0; position < sizeof(std::uint32_t); ++position) {
        bytes += static_cast<char>(static_cast<unsigned char>(number >> position * bits_of_a_byte));
    }
    return bytes;
}

void write_data(const std::string& header, const PageArrays& arrays, const TextSink& sink) {
    Base64Text text(sink);
    Deflation deflation([&text](std::string_view bytes) { text.add(bytes); });
    deflation.add(bytes_of(header.size()));
    deflation.add(header);
    deflation.add(page_padding(sizeof(std::uint32_t) + header.size()));
    arrays.write([&deflation](std::string_view bytes) { deflation.add(bytes); });
    deflation.finish();
    text.finish();
}

}  // namespace

void require_rules_page() {}

std::size_t write_rules_page(const SearchResult& found, const RuleBook& book, const PageOrigin& origin,
                             const TextSink& sink) {
    PageParts parts(found, book, origin);
    const std::string header = parts.assemble();
    const PageProgram& program = page_program();
    sink(program.before_title);
    sink(escaped(valid_utf8(origin.names_of_inputs)));
    sink(program.before_data);
    write_data(header, parts.arrays(), sink);
    sink(program.after_data);
    return parts.classes();
}

}  // namespace korv::tools
