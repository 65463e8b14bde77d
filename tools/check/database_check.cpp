#include "check/database_check.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "check/transaction_counter.h"
#include "common/error.h"
#include "common/quantity.h"

namespace korv::tools {

namespace {

std::string shown_items(const Itemset& itemset) {
    std::string text;
    append_items(itemset, text);
    return shown(text);
}

struct ClassAtLine {
    NodeRef node;
    std::uint32_t line;
};

std::vector<ClassAtLine> chosen(const CheckedClasses& checked, const ClassSample& sample) {
    std::vector<ClassAtLine> classes;
    auto line = checked.lines.begin();
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++line) {
        classes.push_back({node, *line});
    }
    std::ranges::sort(classes, {}, &ClassAtLine::line);
    if (!sample.classes || *sample.classes >= classes.size()) {
        return classes;
    }
    // The standard library does not say which ones it would choose.
    std::mt19937 random(sample.seed);
    for (std::size_t i = 0; i < *sample.classes; ++i) {
        std::swap(classes[i], classes[i + random() % (classes.size() - i)]);
    }
    classes.resize(*sample.classes);
    std::ranges::sort(classes, {}, &ClassAtLine::line);
    return classes;
}

Itemset items_of(const ClassMap& classes) {
    std::set<Item> items;
    for (const auto& [closed_itemset, of_class] : classes) {
        items.insert(closed_itemset.begin(), closed_itemset.end());
    }
    return {items.begin(), items.end()};
}

class DatabaseCheck {
public:
    DatabaseCheck(const CheckedClasses& checked, const Database& database, std::string name,
                  Findings& findings)
        : database_(database),
          name_(std::move(name)),
          findings_(findings),
          counter_(database),
          items_of_file_(items_of(checked.classes)) {}

    void check(const ClassAtLine& of) {
        const Itemset& closed_itemset = of.node->first;
        if (!check_items(closed_itemset, of.line)) {
            return;
        }
        const Count support = of.node->second.support;
        const Count counted = counter_.support(closed_itemset);
        if (counted != support) {
            add(FindingKind::wrong_support, of.line, "the support " + std::to_string(support),
                std::to_string(counted) + ", the support of " + shown_items(closed_itemset) + " in " + name_);
        }
        check_closure(closed_itemset, of.line);
        for (const Itemset& essential : of.node->second.essentials) {
            check_essential(essential, counted, of.line);
        }
        if (of.node->second.essentials.empty()) {
            check_minimality(closed_itemset, of.line);
        }
    }

    /// Adds the note on closures, where some lack items that are in no class.
    void add_note(std::uint32_t line) {
        if (partial_ == 0) {
            return;
        }
        findings_.add({.kind = FindingKind::partial_closures,
                       .severity = Severity::note,
                       .place = {line, 1},
                       .found = "closures over the " + with_commas(items_of_file_.size()) +
                                (items_of_file_.size() == 1 ? " item" : " items") + " of the file alone",
                       .expected = "further ones of the " + with_commas(database_.items.size()) + " in " +
                                   name_ + " in " + with_commas(partial_) +
                                   (partial_ == 1 ? " class" : " classes") +
                                   ", if they are to be closures over all items"});
    }

private:
    /// Whether all items are in transactions.
    bool check_items(const Itemset& closed_itemset, std::uint32_t line) {
        const auto unknown =
            std::ranges::find_if(closed_itemset, [this](Item item) { return !counter_.knows(item); });
        if (unknown == closed_itemset.end()) {
            return true;
        }
        add(FindingKind::unknown_item, line, "the item " + std::to_string(*unknown),
            "items of the transactions in " + name_);
        return false;
    }

    void check_closure(const Itemset& closed_itemset, std::uint32_t line) {
        const Itemset missing = counter_.missing_in_closure(closed_itemset);
        const auto known = std::ranges::find_if(
            missing, [this](Item item) { return std::ranges::binary_search(items_of_file_, item); });
        if (known != missing.end()) {
            add(FindingKind::wrong_closure, line,
                "the closed itemset " + shown_items(closed_itemset) + " without the item " +
                    std::to_string(*known),
                "that item, too, since each transaction in " + name_ +
                    " that holds it holds another one of them");
        }
        partial_ += missing.empty() || known != missing.end() ? 0 : 1;
    }

    void check_essential(const Itemset& essential, Count class_support, std::uint32_t line) {
        const Count counted = counter_.support(essential);
        if (counted != class_support) {
            add(FindingKind::wrong_essential, line,
                "the essential itemset " + shown_items(essential) + " of support " + std::to_string(counted) +
                    " in " + name_,
                "the support of its closed itemset, " + std::to_string(class_support));
            return;
        }
        check_minimality(essential, line);
    }

    void check_minimality(const Itemset& essential, std::uint32_t line) {
        if (const auto item = counter_.needless_item(essential)) {
            add(FindingKind::wrong_essential, line,
                "the essential itemset " + shown_items(essential) + " with the item " + std::to_string(*item),
                "essential itemsets without it, since it adds no transaction in " + name_);
        }
    }

    void add(FindingKind kind, std::uint32_t line, std::string found, std::string expected) {
        findings_.add({.kind = kind,
                       .severity = Severity::error,
                       .place = {line, 1},
                       .found = std::move(found),
                       .expected = std::move(expected)});
    }

    const Database& database_;
    const std::string name_;
    Findings& findings_;
    TransactionCounter counter_;
    const Itemset items_of_file_;
    std::size_t partial_ = 0;  ///< classes whose closure lacks items that are in no class
};

}  // namespace

std::size_t check_against_database(const CheckedClasses& checked, const Database& database,
                                   const std::string& name, const ClassSample& sample, Findings& findings) {
    const std::vector<ClassAtLine> classes = chosen(checked, sample);
    if (classes.empty()) {
        return 0;
    }
    DatabaseCheck check(checked, database, name, findings);
    for (const ClassAtLine& each : classes) {
        check.check(each);
    }
    check.add_note(classes.front().line);
    return classes.size();
}

}  // namespace korv::tools
