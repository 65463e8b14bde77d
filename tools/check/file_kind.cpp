#include "check/file_kind.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "common/class_file.h"
#include "rules/rule_file.h"

namespace korv::tools {

namespace {

constexpr std::string_view digits = "0123456789";

constexpr OtherFile rule_file = {
    "a rule file of korv",
    "a class file (korv-rules reads rule files, and --rules with --database counts them again)"};
constexpr OtherFile names_file = {"the names of items",
                                  "a class file (--names with --database takes the names)"};
constexpr OtherFile transactions = {"transactions", "a class file (korv-mine makes one of transactions)"};

/// The first lines that are not empty, without their line ends.
std::vector<std::string_view> first_lines(std::string_view text) {
    constexpr std::size_t most_lines = 10;
    std::vector<std::string_view> lines;
    while (!text.empty() && lines.size() < most_lines) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

/// Whether a line holds a letter, or a byte of one.
bool has_letters(std::string_view line) {
    return std::ranges::any_of(line, [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
               static_cast<unsigned char>(byte) >= 0x80;
    });
}

/// Whether a line is a number, a tab and a name.
bool is_name(std::string_view line) {
    const std::size_t tab = line.find_first_not_of(digits);
    return tab != 0 && tab != std::string_view::npos && line[tab] == '\t' &&
           line.find('\t', tab + 1) == std::string_view::npos && has_letters(line.substr(tab));
}

/// Whether a line may be a transaction, but hardly a record with a fault: that would have a tab, or end with
/// a comma.
bool is_transaction(std::string_view line) {
    const std::size_t last = line.find_last_not_of(R"( ")");
    const bool has_tab = line.find('\t') != std::string_view::npos;
    return last != std::string_view::npos && line[last] != ',' && (!has_tab || has_letters(line));
}

/// Whether most of the lines are such as `is_such` says, the first of which may be a header.
template <typename IsSuch>
bool are_mostly(const std::vector<std::string_view>& lines, IsSuch is_such) {
    const auto count = static_cast<std::size_t>(std::ranges::count_if(lines, is_such));
    return count > 1 && count + 1 >= lines.size();
}

}  // namespace

std::optional<OtherFile> other_file(std::string_view text) {
    if (looks_like_rule_file(text)) {
        return rule_file;
    }
    if (looks_like_class_file(text)) {
        return std::nullopt;
    }
    const std::vector<std::string_view> lines = first_lines(text);
    const auto has_zero = [](std::string_view line) { return line.find('\0') != std::string_view::npos; };
    if (std::ranges::any_of(lines, has_zero)) {
        return std::nullopt;
    }
    if (are_mostly(lines, is_name)) {
        return names_file;
    }
    return are_mostly(lines, is_transaction) ? std::optional(transactions) : std::nullopt;
}

}  // namespace korv::tools
