#include "mine/summary.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <string_view>

#include "common/printable.h"

namespace korv::tools {

namespace {

/// The peak memory of this process until now, in MiB.
long peak_memory() {
    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;  // given in KiB
}

std::string with_two_decimals(double number) {
    std::array<char, 32> text = {};
    const int size = std::snprintf(text.data(), text.size(), "%.2f", number);
    return {text.data(), static_cast<std::size_t>(size)};
}

/// A word that a terminal cannot show as it is, spelt for bash: $'a\x1Bb'.
std::string spelt_word(const std::string& word) {
    std::string escaped;
    for (const char c : word) {
        escaped += c == '\'' || c == '\\' ? std::string{'\\', c} : std::string(1, c);
    }
    return "$'" + printable(escaped) + "'";
}

/// A word as it is typed in a shell: in single quotes, unless it holds only characters that do not need them.
std::string shell_word(const std::string& word) {
    const auto is_plain = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
               std::string_view("./_-+,:@%").find(c) != std::string_view::npos;
    };
    if (!word.empty() && std::ranges::all_of(word, is_plain)) {
        return word;
    }
    if (printable(word) != word) {
        return spelt_word(word);
    }
    std::string quoted = "'";
    for (const char c : word) {
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return quoted + "'";
}

/// The korv command that derives rules from the class file, with thresholds to start from.
std::string next_command(const std::string& output, Count min_support, Count transactions) {
    const bool is_file = output != "-";
    const std::string name = is_file ? std::filesystem::path(output).stem().string() : "NAME";
    return "korv " + shell_word(name) + " " + (is_file ? shell_word(output) : "CLASSES") + " " +
           std::to_string(min_support) + " 0.8 " + std::to_string(transactions);
}

}  // namespace

std::string summary(const Database& database, Count min_support, const MinedClasses& classes,
                    const std::string& output, double seconds) {
    const auto frequent = std::ranges::count_if(database.items, [min_support](const auto& column) {
        return column.transactions.size() >= min_support;
    });

    std::string text;
    const auto add = [&text](const std::string& label, const std::string& value) {
        text += label + std::string(20 - label.size(), ' ') + value + '\n';
    };
    add("transactions", std::to_string(database.transactions));
    add("items", std::to_string(database.items.size()));
    add("frequent items", std::to_string(frequent));
    add("essential itemsets", std::to_string(classes.essentials()));
    add("classes", std::to_string(classes.size()));
    add("largest closure", std::to_string(classes.largest_closure()) + " items");
    add("time", with_two_decimals(seconds) + " s");
    add("peak memory", std::to_string(peak_memory()) + " MiB");
    text += "To derive rules: " + next_command(output, min_support, database.transactions) + '\n';
    return text;
}

}  // namespace korv::tools
