#include "rules/rule_counts_report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "common/quantity.h"
#include "engine/rule_catalogue.h"
#include "rules/column_sizes.h"
#include "rules/size_count.h"

namespace korv::tools {

namespace {

constexpr std::size_t width_of_label = 14;
constexpr std::size_t width_of_number = 16;

std::string left(const std::string& text) {
    return text + std::string(text.size() < width_of_label ? width_of_label - text.size() : 1, ' ');
}

std::string right(const std::string& text) {
    return std::string(text.size() < width_of_number ? width_of_number - text.size() : 1, ' ') + text;
}

/// A line of a table: a label and numbers, the last of them their sum.
std::string line(const std::string& label, const std::vector<std::uint64_t>& numbers) {
    std::string text = left(label);
    std::uint64_t sum = 0;
    for (const std::uint64_t number : numbers) {
        text += right(with_commas(number));
        sum += number;
    }
    return text + right(with_commas(sum)) + '\n';
}

std::string heading(const std::string& label, const std::vector<std::string>& columns) {
    std::string text = left(label);
    for (const std::string& column : columns) {
        text += right(column);
    }
    return text + '\n';
}

/// A line for each form that has rules, and their sum. `count` says how many a form has of a kind.
template <typename Kinds, typename CountOf>
std::string lines_of_forms(const Kinds& kinds, CountOf count) {
    std::string text;
    std::vector<std::uint64_t> sums(kinds.size());
    for (const FormDescription& form : rule_catalogue) {
        std::vector<std::uint64_t> numbers;
        std::ranges::transform(kinds, std::back_inserter(numbers),
                               [&](auto kind) { return std::uint64_t{count(form.form, kind)}; });
        if (std::ranges::any_of(numbers, [](std::uint64_t number) { return number != 0; })) {
            text += line(std::string(form.label), numbers);
        }
        std::ranges::transform(sums, numbers, sums.begin(), std::plus<>());
    }
    return text + line("all", sums);
}

std::string lines_of_rules(const std::vector<FoundRule>& rules) {
    std::array<std::array<std::uint64_t, all_certainties.size()>, rule_catalogue.size()> counts = {};
    for (const FoundRule& rule : rules) {
        ++counts[static_cast<std::size_t>(rule.form)][static_cast<std::size_t>(certainty(rule))];
    }
    return lines_of_forms(all_certainties, [&counts](Form form, Certainty kind) {
        return counts[static_cast<std::size_t>(form)][static_cast<std::size_t>(kind)];
    });
}

/// By making the text.
std::uint64_t bytes_in(RuleFormat format, const std::vector<FoundRule>& rules, const RuleBook& book,
                       const TerminalStyle& style) {
    std::uint64_t bytes = 0;
    const std::unique_ptr<RuleWriter> writer = rule_writer(format, book, style, counting_sink(bytes));
    for (const FoundRule& rule : rules) {
        writer->write(rule);
    }
    writer->finish();
    return bytes;
}

/// The bytes of each format, in the order of writer_formats.
std::array<std::uint64_t, writer_formats.size()> bytes_of_formats(const std::vector<FoundRule>& rules,
                                                                  const RuleBook& book,
                                                                  const TerminalStyle& style) {
    ColumnSizes columns(book);
    for (const FoundRule& rule : rules) {
        columns.add(rule);
    }
    return {bytes_in(RuleFormat::words, rules, book, style), bytes_in(RuleFormat::table, rules, book, style),
            columns.bytes().csv, columns.bytes().tsv, columns.bytes().jsonl};
}

}  // namespace

std::string rule_counts_report(const SearchResult& found, const KorvOutput& korv, const RuleBook& book,
                               const TerminalStyle& style) {
    std::string text = heading("form", {"exact", "approximative", "bounded", "all"});
    text += lines_of_rules(found.rules);
    text += '\n' + heading("format", {"bytes"});
    const auto bytes_by_format = bytes_of_formats(found.rules, book, style);
    for (std::size_t i = 0; i < writer_formats.size(); ++i) {
        text += left(std::string(writer_formats[i].first)) + right(with_commas(bytes_by_format[i])) + '\n';
    }
    text += "\nWhat korv itself would write with the same minimum support and confidence:\n";
    text += heading("form", {"exact", "approximative", "approximated", "all"});
    text += lines_of_forms(all_kinds,
                           [&korv](Form form, Kind kind) { return korv.rules.counts().count(form, kind); });
    text += '\n' + heading("file", {"bytes"});
    const std::array<std::pair<std::string, std::uint64_t>, 6> files = {{
        {"Lattice", korv.bytes_of_lattice},
        {"intra_exact", korv.rules.bytes(RuleFile::intra_exact)},
        {"intra_approx", korv.rules.bytes(RuleFile::intra_approximate)},
        {"inter_exact", korv.rules.bytes(RuleFile::inter_exact)},
        {"inter_approx", korv.rules.bytes(RuleFile::inter_approximate)},
        {"number_rules", korv.rules.bytes_of_counts()},
    }};
    for (const auto& [name, bytes] : files) {
        text += left(name) + right(with_commas(bytes)) + '\n';
    }
    return text;
}

}  // namespace korv::tools
