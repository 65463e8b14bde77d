#include "rules/rule_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#include "base/number_text.h"

namespace korv::tools {

namespace {

constexpr std::string_view stars = "\t\t\t******************************************";
constexpr std::string_view separator = "---------------------------";
constexpr std::string_view arrow = "-->";
constexpr std::string_view no_items = "empty_set";

/// What the second line of a header says of the file.
struct Title {
    std::string_view line;
    bool is_between_nodes;
    bool is_exact;
};

constexpr std::array<Title, 4> titles = {{
    {"\t\t\t***   Regles exaxtes intra noeud      ***", false, true},
    {"\t\t\t*** Regles approximatives intra noeud  ***", false, false},
    {"\t\t\t***   Regles exactes inter noeuds     ***", true, true},
    {"\t\t\t*** Regles approximatives inter noeuds ***", true, false},
}};

constexpr std::size_t first_buffer_bytes = std::size_t{1} << 16;
/// A line of two million items.
constexpr std::size_t longest_line = std::size_t{1} << 24;

bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

bool is_negated(Mode mode) {
    return mode == Mode::negation;
}

/// Whether the pairs of a form are between nodes: they join e1 and f2-e1, or f1 and f2-f1.
bool is_between_nodes(Form form) {
    return description(form).text.find("f2") != std::string_view::npos;
}

}  // namespace

RuleFileFault::RuleFileFault(std::string_view file, Place place, std::string_view found,
                             std::string_view expected)
    : Error(input_error(file, place, found, expected)), place_(place), found_(found), expected_(expected) {}

Form RuleRecord::first_form() const {
    const auto* const found = std::ranges::find_if(rule_catalogue, [this](const FormDescription& each) {
        return is_negated(korv::premise(each.form).mode) == premise.is_negated &&
               is_negated(korv::conclusion(each.form).mode) == conclusion.is_negated &&
               tools::is_between_nodes(each.form) == is_between_nodes;
    });
    return found->form;
}

RuleFileReader::RuleFileReader(ReadText read, std::string name)
    : read_(std::move(read)), name_(std::move(name)), buffer_(first_buffer_bytes) {}

bool RuleFileReader::next() {
    if (!next_line()) {
        if (line_number_ == 0) {
            throw RuleFileFault(name_, {1, 1}, "an empty file", "the header of a rule file");
        }
        return false;
    }
    while (line_number_ == 1 || line_ == stars) {
        read_header();
        if (!next_line()) {
            return false;
        }
    }
    read_record();
    return true;
}

/// Reads the header whose first line is the current one; without that behind it.
void RuleFileReader::read_header() {
    take(stars, "the header of a rule file");
    end_line();
    require_next_line("the title of a rule file");
    const auto* const title = std::ranges::find(titles, line_, &Title::line);
    if (title == titles.end()) {
        fail(0, shown(line_),
             "a title such as \"*** Regles approximatives intra noeud  ***\" behind three tabs");
    }
    record_.is_between_nodes = title->is_between_nodes;
    is_exact_ = title->is_exact;
    position_ = line_.size();
    end_line();
    require_next_line("the third line of the header");
    take(stars, "the third line of the header");
    end_line();
}

/// Takes the next line. Returns false where there is none.
bool RuleFileReader::next_line() {
    std::size_t searched = 0;
    for (;;) {
        const auto* const from = buffer_.data() + begin_ + searched;
        const auto* const found = static_cast<const char*>(std::memchr(from, '\n', end_ - begin_ - searched));
        if (found != nullptr) {
            line_ = {buffer_.data() + begin_, found};
            has_line_end_ = true;
            break;
        }
        searched = end_ - begin_;
        if (searched > longest_line) {
            throw RuleFileFault(name_, {line_number_ + 1, longest_line}, "a line that goes on",
                                "lines of at most 16 MiB");
        }
        if (!read_more()) {
            if (searched == 0) {
                return false;
            }
            line_ = {buffer_.data() + begin_, searched};
            has_line_end_ = false;
            break;
        }
    }
    begin_ += line_.size() + (has_line_end_ ? 1 : 0);
    ++line_number_;
    position_ = 0;
    return true;
}

/// Returns false at the end of the file.
bool RuleFileReader::read_more() {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    begin_ = 0;
    if (end_ * 2 > buffer_.size()) {
        buffer_.resize(buffer_.size() * 2);
    }
    const std::size_t count = read_(buffer_.data() + end_, buffer_.size() - end_);
    end_ += count;
    return count > 0;
}

/// Reads the record whose first line is the current one.
void RuleFileReader::read_record() {
    record_.line = line_number_;
    read_side(record_.premise, arrow, R"(another item, or "-->")");
    read_side(record_.conclusion, "", "another item, or the end of the line");
    end_line();
    read_rest_of_record();
    settle_sides_without_items();
}

void RuleFileReader::read_rest_of_record() {
    record_.confidence.reset();
    require_next_line("the support of the rule");
    read_support(R"("support:", or the smallest support and "< support <")");
    end_line();
    if (record_.support.is_known) {
        require_next_line("an empty line");
        end_line();
    }
    if (is_exact_) {
        return;
    }
    require_next_line("the confidence of the rule");
    if (record_.support.is_known && take_if("confiance:")) {
        const std::size_t begin = position_;
        record_.confidence = known(read_ratio("a confidence"));
        if (!(record_.confidence->low <= 1)) {
            fail(begin, shown(line_.substr(begin)), "a confidence from 0 to 1");
        }
    } else {
        read_bounds_of_confidence();
    }
    end_line();
    require_next_line("a line of 27 hyphens");
    take(separator, "a line of 27 hyphens");
    end_line();
}

/// Reads a side up to `end`, which is what a line has behind it: "" stands for the end of the line.
void RuleFileReader::read_side(RecordedSide& side, std::string_view end, std::string_view expected) {
    side.items.clear();
    side.is_negated = false;
    if (take_if(no_items)) {
        // Its sign is settled when the support is known.
    } else if (take_if("not(")) {
        side.is_negated = true;
        read_negated_items(side.items);
    } else {
        read_plain_items(side.items);
    }
    if (end.empty() ? position_ < line_.size() : !take_if(end)) {
        fail_here(expected);
    }
}

void RuleFileReader::read_plain_items(Itemset& items) {
    do {
        add_item(items);
    } while (take_if(" v "));
}

/// Reads items of which "not(" before the first one was taken.
void RuleFileReader::read_negated_items(Itemset& items) {
    do {
        add_item(items);
        take(")", R"_(a digit, or ")")_");
    } while (take_if("not("));
}

void RuleFileReader::add_item(Itemset& items) {
    const std::size_t begin = position_;
    const Item item = read_number("an item number");
    if (!items.empty() && item <= items.back()) {
        fail(begin, "the item " + std::to_string(item) + " behind the item " + std::to_string(items.back()),
             "items in ascending order");
    }
    items.push_back(item);
}

void RuleFileReader::read_support(std::string_view expected) {
    if (take_if("support:")) {
        record_.support = known(read_number("a support"));
        return;
    }
    const Count low = read_number(expected);
    take("< support <", R"(a digit, or "< support <")");
    const std::size_t begin = position_;
    const Count high = read_number("the largest support");
    if (high < low) {
        fail(begin, std::to_string(high) + " as the largest support",
             "at least " + std::to_string(low) + ", the smallest one");
    }
    record_.support = between(low, high);
}

void RuleFileReader::read_bounds_of_confidence() {
    const std::size_t begin = position_;
    const double low = read_ratio(record_.support.is_known
                                      ? R"("confiance:", or the smallest confidence and "< confiance <")"
                                      : "the smallest confidence and \"< confiance <\"");
    record_.confidence = known(low);
    if (!(low <= 1)) {
        fail(begin, shown(line_.substr(begin, position_ - begin)), "a confidence from 0 to 1");
    }
    take("< confiance <", "\"< confiance <\"");
    const std::size_t begin_of_high = position_;
    const double high = read_ratio("the largest confidence");
    if (high < low) {
        fail(begin_of_high, shown(line_.substr(begin_of_high)) + " as the largest confidence",
             "at least the smallest one");
    }
    record_.confidence = between(low, high);
}

void RuleFileReader::settle_sides_without_items() {
    for (RecordedSide* const side : {&record_.premise, &record_.conclusion}) {
        side->is_negated = side->is_negated || (side->items.empty() && record_.support.high > 0);
    }
}

Count RuleFileReader::read_number(std::string_view expected) {
    const std::size_t begin = position_;
    std::uint64_t value = 0;
    constexpr std::uint64_t most = std::numeric_limits<Count>::max();
    for (; position_ < line_.size() && is_digit(line_[position_]); ++position_) {
        value = std::min(value * 10 + static_cast<std::uint64_t>(line_[position_] - '0'), most + 1);
    }
    if (position_ == begin) {
        fail_here(expected);
    }
    if (value > most) {
        fail(begin, shown(line_.substr(begin, position_ - begin)),
             std::string(expected) + " below 4294967296");
    }
    return static_cast<Count>(value);
}

/// Reads a number as korv prints quotients: with six digits, "inf" or "-nan". What is not a number becomes
/// infinite.
double RuleFileReader::read_ratio(std::string_view expected) {
    for (const std::string_view word : {"inf", "-nan", "nan"}) {
        if (take_if(word)) {
            return std::numeric_limits<double>::infinity();
        }
    }
    double value = 0;
    const char* const begin = line_.data() + position_;
    const auto [last, problem] = std::from_chars(begin, line_.data() + line_.size(), value);
    if (problem != std::errc() || !is_digit(*begin)) {
        fail_here(expected);
    }
    position_ += static_cast<std::size_t>(last - begin);
    return value;
}

void RuleFileReader::require_next_line(std::string_view expected) {
    if (!next_line()) {
        throw RuleFileFault(name_, {line_number_ + 1, 1}, "the end of the file", expected);
    }
}

void RuleFileReader::take(std::string_view word, std::string_view expected) {
    if (!take_if(word)) {
        fail_here(expected);
    }
}

bool RuleFileReader::take_if(std::string_view word) {
    const bool is_there = line_.substr(position_).starts_with(word);
    position_ += is_there ? word.size() : 0;
    return is_there;
}

/// Throws Error unless the line was read whole, and has an end.
void RuleFileReader::end_line() {
    if (position_ < line_.size()) {
        fail_here(position_ == 0 ? "an empty line" : "the end of the line");
    }
    if (!has_line_end_) {
        fail(position_, "the end of the file", "the end of the line");
    }
}

void RuleFileReader::fail_here(std::string_view expected) const {
    const std::string_view rest = line_.substr(position_);
    if (rest == "\r") {
        fail(position_, "CR", "lines that end with LF alone (tr -d '\\r' takes CR out)");
    }
    if (rest.empty()) {
        fail(position_, has_line_end_ ? "the end of the line" : "the end of the file", expected);
    }
    fail(position_, shown(rest), expected);
}

void RuleFileReader::fail(std::size_t position, std::string_view found, std::string_view expected) const {
    throw RuleFileFault(name_, {line_number_, position + 1}, found, expected);
}

bool looks_like_rule_file(std::string_view text) {
    return text.starts_with(stars);
}

}  // namespace korv::tools
