#include "check/checked_classes.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "check/checked_lines.h"
#include "common/class_file.h"

namespace korv::tools {

namespace {

bool is_alike(const data& a, const data& b) {
    return a.support == b.support && a.essentials == b.essentials;
}

/// Adds that a class is there again. `again`, `before`: positions of records.
void add_again(const CheckedLines& lines, std::uint32_t again, std::uint32_t before, std::uint32_t last,
               Findings& findings) {
    const bool is_same = is_alike(lines.records[again].second, lines.records[before].second);
    const FindingKind kind = is_same ? FindingKind::class_again : FindingKind::class_differs;
    const std::size_t other_line = lines.places[before].line;
    const std::string kept = std::to_string(lines.places[last].line);
    findings.add({.kind = kind,
                  .severity = description(kind).severity,
                  .place = {lines.places[again].line, 1},
                  .found = found_again(other_line),
                  .expected = std::string(expected_once),
                  .effect = is_same ? "korv keeps one of them, since they are alike"
                                    : "korv keeps the support and the essential itemsets of line " + kept,
                  .other_line = other_line});
}

/// Adds what is wrong with some stored records of the same closed itemset, and returns the last one, which
/// korv keeps.
std::uint32_t check_group(const CheckedLines& lines, const std::vector<std::uint32_t>& group,
                          Findings& findings) {
    for (std::size_t i = 1; i < group.size(); ++i) {
        add_again(lines, group[i], group[i - 1], group.back(), findings);
    }
    return group.back();
}

/// Goes over the stored records.
StoredTotals check_stored(const CheckedLines& lines, const std::vector<std::uint32_t>& positions,
                          Findings& findings) {
    StoredTotals totals;
    std::unordered_set<Item> items;
    std::vector<std::uint32_t> group;
    const auto end_group = [&] {
        if (group.empty()) {
            return;
        }
        const auto& [closed_itemset, of_class] = lines.records[check_group(lines, group, findings)];
        ++totals.classes;
        totals.essentials += of_class.essentials.size();
        items.insert(closed_itemset.begin(), closed_itemset.end());
        group.clear();
    };
    for (const std::uint32_t position : positions) {
        if (!lines.places[position].is_stored) {
            continue;
        }
        if (!group.empty() && lines.records[group.back()].first != lines.records[position].first) {
            end_group();
        }
        group.push_back(position);
    }
    end_group();
    totals.items = items.size();
    return totals;
}

/// Moves the meant records into a map: of equal closed itemsets the last one.
void take_meant(CheckedLines lines, const std::vector<std::uint32_t>& positions, CheckedClasses& checked) {
    checked.lines.reserve(positions.size());
    for (const std::uint32_t position : positions) {
        if (!lines.places[position].is_meant) {
            continue;
        }
        auto& [closed_itemset, of_class] = lines.records[position];
        // A map is filled fastest in its order, and read fastest afterwards.
        const std::size_t before = checked.classes.size();
        checked.classes.insert_or_assign(checked.classes.end(), std::move(closed_itemset),
                                         std::move(of_class));
        if (checked.classes.size() == before) {
            checked.lines.pop_back();
        }
        checked.lines.push_back(lines.places[position].line);
    }
}

}  // namespace

CheckedClasses check_class_file(TextInput input, Findings& findings) {
    CheckedClasses checked;
    CheckedLines lines = check_lines(input, findings);
    std::string().swap(input.text);  // an assignment would keep the memory
    const std::vector<std::uint32_t> positions = in_order(lines.records);
    checked.stored = check_stored(lines, positions, findings);
    if (checked.stored.classes == 0) {
        findings.add({.kind = FindingKind::no_classes,
                      .severity = Severity::error,
                      .place = {1, 1},
                      .found = std::string(found_no_class),
                      .expected = std::string(expected_classes),
                      .effect = "korv ends with status 2"});
    }
    take_meant(std::move(lines), positions, checked);
    return checked;
}

}  // namespace korv::tools
