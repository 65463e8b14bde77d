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

/// The records of a closed itemset.
struct SameClass {
    std::vector<std::uint32_t> of_lines;  ///< one of each line: what it means, or else what korv stores
    std::vector<std::uint32_t> stored;

    void add(std::uint32_t position, const CheckedLines& lines) {
        if (lines.places[position].is_stored) {
            stored.push_back(position);
        }
        const bool is_line_there =
            !of_lines.empty() && lines.places[of_lines.back()].line == lines.places[position].line;
        if (!is_line_there) {
            of_lines.push_back(position);
        } else if (lines.places[position].is_meant) {
            of_lines.back() = position;
        }
    }

    void clear() {
        of_lines.clear();
        stored.clear();
    }
};

/// Adds that a class is there again. `again`, `before`: positions of records.
void add_again(const CheckedLines& lines, std::uint32_t again, std::uint32_t before, const SameClass& all,
               Findings& findings) {
    const bool is_alike_there = is_alike(lines.records[again].second, lines.records[before].second);
    const FindingKind kind = is_alike_there ? FindingKind::class_again : FindingKind::class_differs;
    const std::size_t other_line = lines.places[before].line;
    std::string effect;  // nothing, where korv takes the lines into another class
    if (all.stored.size() > 1) {
        effect = is_alike_there ? "korv keeps one of them"
                                : "korv keeps the support and the essential itemsets of line " +
                                      std::to_string(lines.places[all.stored.back()].line);
    }
    findings.add({.kind = kind,
                  .severity = description(kind).severity,
                  .place = {lines.places[again].line, 1},
                  .found = found_again(other_line),
                  .expected = std::string(expected_once),
                  .effect = std::move(effect),
                  .other_line = other_line});
}

/// Goes over the records of each closed itemset.
StoredTotals check_same_classes(const CheckedLines& lines, const std::vector<std::uint32_t>& positions,
                                Findings& findings) {
    StoredTotals totals;
    std::unordered_set<Item> items;
    SameClass same;
    const auto end_class = [&] {
        for (std::size_t i = 1; i < same.of_lines.size(); ++i) {
            add_again(lines, same.of_lines[i], same.of_lines[i - 1], same, findings);
        }
        if (!same.stored.empty()) {
            const auto& [closed_itemset, of_class] = lines.records[same.stored.back()];
            ++totals.classes;
            totals.essentials += of_class.essentials.size();
            items.insert(closed_itemset.begin(), closed_itemset.end());
        }
        same.clear();
    };
    for (const std::uint32_t position : positions) {
        if (!same.of_lines.empty() &&
            lines.records[same.of_lines.back()].first != lines.records[position].first) {
            end_class();
        }
        same.add(position, lines);
    }
    end_class();
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

void add_to_beginning(FindingKind kind, std::string_view found, std::string_view expected,
                      std::string_view effect, Findings& findings) {
    findings.add({.kind = kind,
                  .severity = description(kind).severity,
                  .place = {1, 1},
                  .found = std::string(found),
                  .expected = std::string(expected),
                  .effect = std::string(effect)});
}

/// Adds what is wrong with the file as a whole.
void check_form(const TextInput& input, Findings& findings) {
    if (input.is_compressed) {
        add_to_beginning(FindingKind::compressed, "data compressed by gzip", "text (zcat decompresses it)",
                         "korv reads the compressed bytes; all else is said of the text", findings);
    }
    if (input.has_byte_order_mark) {
        add_to_beginning(FindingKind::byte_order_mark, "a byte-order mark", "text without it",
                         "korv skips it; the columns of this line are counted without it", findings);
    }
}

/// What there is in a file of which korv reads no class.
std::string_view what_is_there(const TextInput& input) {
    if (input.text.empty()) {
        return input.has_byte_order_mark ? "nothing behind the byte-order mark" : found_no_class;
    }
    return input.text.find_first_not_of(" \t\r\n") == std::string::npos ? "nothing but empty lines"
                                                                        : "no class that korv reads";
}

}  // namespace

CheckedClasses check_class_file(TextInput input, Findings& findings) {
    CheckedClasses checked;
    check_form(input, findings);
    const std::string_view found = what_is_there(input);
    CheckedLines lines = check_lines(input, findings);
    std::string().swap(input.text);  // an assignment would keep the memory
    const std::vector<std::uint32_t> positions = in_order(lines.records);
    checked.stored = check_same_classes(lines, positions, findings);
    if (checked.stored.classes == 0) {
        add_to_beginning(FindingKind::no_classes, found, expected_classes, "korv ends with status 2",
                         findings);
    }
    checked.unclear_lines = lines.unclear_lines;
    take_meant(std::move(lines), positions, checked);
    return checked;
}

}  // namespace korv::tools
