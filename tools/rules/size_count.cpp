#include "rules/size_count.h"

#include <charconv>
#include <cmath>
#include <numeric>
#include <sstream>
#include <string_view>
#include <unordered_map>

#include "io/rule_count_file.h"

namespace korv::tools {

namespace {

/// The headers of the four rule files, in the order of RuleFile.
constexpr std::array<std::uint64_t, number_of_rule_files> header_bytes = {137, 138, 137, 138};

std::size_t digits_of(Count number) {
    constexpr std::array<Count, 9> powers = {10,        100,        1'000,       10'000,       100'000,
                                             1'000'000, 10'000'000, 100'000'000, 1'000'000'000};
    std::size_t digits = 1;
    for (const Count power : powers) {
        digits += number >= power ? 1 : 0;
    }
    return digits;
}

std::size_t digits_of(ItemSpan items) {
    std::size_t digits = 0;
    for (const Item item : items) {
        digits += digits_of(item);
    }
    return digits;
}

/// The size of a number with six significant digits, as "%g" would print it, by printing it.
std::size_t bytes_of_printed(double number) {
    std::array<char, 16> digits;
    return static_cast<std::size_t>(
        std::to_chars(digits.begin(), digits.end(), number, std::chars_format::general, 6).ptr -
        digits.begin());
}

/// The size of a confidence. Of most of them six digits behind the point are printed, without the zeros at
/// their end; they are found without printing, unless the seventh digit might round either way.
std::size_t bytes_of_number(double number) {
    constexpr double million = 1e6;
    constexpr double too_close = 1e-3;
    const double scaled = number * million;
    const double floor = std::floor(scaled);
    if (!(number >= 0.1 && number < 0.9999) || std::abs(scaled - floor - 0.5) < too_close) {
        return bytes_of_printed(number);
    }
    auto digits = static_cast<std::uint32_t>(scaled - floor < 0.5 ? floor : floor + 1);
    std::size_t bytes = std::string_view("0.123456").size();
    for (; digits % 10 == 0; digits /= 10) {
        --bytes;
    }
    return bytes;
}

std::size_t bytes_of(const Estimate<Count>& support) {
    constexpr std::string_view known = "support:\n\n";
    constexpr std::string_view bounded = "< support <\n";
    return support.is_known ? known.size() + digits_of(support.low)
                            : digits_of(support.low) + bounded.size() + digits_of(support.high);
}

std::size_t bytes_of(const Estimate<double>& confidence) {
    constexpr std::string_view known = "confiance:\n---------------------------\n";
    constexpr std::string_view bounded = "< confiance <\n---------------------------\n";
    return confidence.is_known
               ? known.size() + bytes_of_number(confidence.low)
               : bytes_of_number(confidence.low) + bounded.size() + bytes_of_number(confidence.high);
}

/// An itemset with a blank behind each item.
std::size_t bytes_of_basket(ItemSpan items) {
    return digits_of(items) + items.size();
}

}  // namespace

TextSink counting_sink(std::uint64_t& bytes) {
    return [&bytes](std::string_view text) { bytes += text.size(); };
}

SizeCount::SizeCount() : bytes_(header_bytes) {}

void SizeCount::begin(const Pair& pair) {
    is_intra_node_ = pair.kind == PairKind::essential_and_rest;
    base_ = {.itemset = &pair.base};
    difference_ = {.itemset = &pair.difference};
}

void SizeCount::add(const Rule& rule) {
    counts_.add(rule.counted_as, rule.kind);
    std::size_t bytes = std::string_view("-->\n").size() + bytes_of(rule.support);
    for (const FormSide& side : {premise(rule.form), conclusion(rule.form)}) {
        bytes += bytes_of_side(side.part == korv::Part::base ? base_ : difference_, side.mode);
    }
    if (rule.confidence) {
        bytes += bytes_of(*rule.confidence);
    }
    const RuleFile exact = is_intra_node_ ? RuleFile::intra_exact : RuleFile::inter_exact;
    bytes_[static_cast<std::size_t>(exact) + (rule.confidence ? 1 : 0)] += bytes;
}

std::uint64_t SizeCount::bytes() const {
    return std::accumulate(bytes_.begin(), bytes_.end(), std::uint64_t{0});
}

std::uint64_t SizeCount::bytes_of_counts() const {
    std::ostringstream text;
    write_rule_counts(counts_, text);
    return text.str().size();
}

std::size_t SizeCount::bytes_of_side(Part& part, Mode mode) {
    if (part.itemset->empty()) {
        return std::string_view("empty_set").size();
    }
    if (!part.is_counted) {
        part.digits = digits_of(*part.itemset);
        part.is_counted = true;
    }
    const std::size_t items = part.itemset->size();
    return part.digits + (mode == Mode::disjunction ? (items - 1) * std::string_view(" v ").size()
                                                    : items * std::string_view("not()").size());
}

std::uint64_t bytes_of_lattice_file(const LatticeEntries& entries) {
    constexpr std::uint64_t banner = 422;
    constexpr std::string_view texts =
        "******************************\n"
        "**   Equivalence class:  **\n"
        "**                          **\n"
        "******************************\n"
        "DCP:  "
        "\nDisjonctive support: \n"
        "les essentiels:  \n"
        "les successeurs: \n\n";
    constexpr std::size_t none = std::string_view("VIDE").size();

    std::unordered_map<const Itemset*, std::size_t> baskets;
    for (const LatticeEntry& entry : entries) {
        baskets[&entry.itemset()] = bytes_of_basket(entry.itemset());
    }
    std::uint64_t bytes = banner;
    for (const LatticeEntry& entry : entries) {
        bytes += texts.size() + baskets[&entry.itemset()] + digits_of(entry.support());
        bytes += entry.essentials().empty() ? none : 0;
        for (const Itemset& essential : entry.essentials()) {
            bytes += bytes_of_basket(essential) + std::string_view(" ; ").size();
        }
        bytes += entry.successors.empty() ? none : 0;
        for (const NodeRef successor : entry.successors) {
            bytes += baskets[&successor->first] + std::string_view(";").size();
        }
    }
    return bytes;
}

}  // namespace korv::tools
