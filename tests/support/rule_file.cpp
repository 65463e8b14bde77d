#include "support/rule_file.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string>

namespace korv::test {

namespace {

constexpr std::string_view header_edge = "\t\t\t******************************************";
constexpr std::string_view tabs = "\t\t\t";
constexpr std::string_view separator = "---------------------------";

/// Takes `part` off the front of `text`. False when it does not begin so.
bool take(std::string_view& text, std::string_view part) {
    if (!text.starts_with(part)) {
        return false;
    }
    text.remove_prefix(part.size());
    return true;
}

/// Takes a number in decimal off the front of `text`.
std::optional<Count> take_count(std::string_view& text) {
    Count number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// The items in `text`, each after `before` (the first may do without) and followed by `after`.
std::optional<Itemset> read_items(std::string_view text, bool before_first, std::string_view before,
                                  std::string_view after) {
    Itemset items;
    while (!text.empty()) {
        if ((before_first || !items.empty()) && !take(text, before)) {
            return std::nullopt;
        }
        const std::optional<Count> item = take_count(text);
        if (!item || !take(text, after)) {
            return std::nullopt;
        }
        items.push_back(*item);
    }
    return items.empty() ? std::nullopt : std::optional(items);
}

std::optional<ReadSide> read_side(std::string_view text) {
    if (text == "empty_set") {
        return ReadSide{};
    }
    if (const auto negated = read_items(text, true, "not(", ")")) {
        return ReadSide{Mode::negation, *negated};
    }
    if (const auto plain = read_items(text, false, " v ", "")) {
        return ReadSide{Mode::disjunction, *plain};
    }
    return std::nullopt;
}

/// Both ends of "LOW< WORD <HIGH".
std::optional<std::pair<std::string_view, std::string_view>> read_interval(std::string_view line,
                                                                           std::string_view between) {
    const std::size_t at = line.find(between);
    if (at == 0 || at == std::string_view::npos || at + between.size() == line.size()) {
        return std::nullopt;
    }
    return std::pair(line.substr(0, at), line.substr(at + between.size()));
}

/// All of `text` as a number.
std::optional<Count> read_count(std::string_view text) {
    const std::optional<Count> number = take_count(text);
    return text.empty() ? number : std::nullopt;
}

class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    ReadRuleFile read_file() {
        ReadRuleFile file;
        expect(header_edge);
        file.title = read_title();
        expect(header_edge);
        while (!rest_.empty()) {
            file.rules.push_back(read_rule());
        }
        return file;
    }

private:
    [[noreturn]] void fail(const std::string& expected) const {
        throw std::runtime_error("line " + std::to_string(number_) + ": " + expected + " expected, got \"" +
                                 std::string(line_) + "\"");
    }

    /// The next line, without its line end, if it has one.
    bool peek() {
        const std::size_t end = rest_.find('\n');
        line_ = rest_.substr(0, end);
        return end != std::string_view::npos;
    }

    void advance() {
        ++number_;
        if (!peek()) {
            fail("a whole line");
        }
        rest_.remove_prefix(line_.size() + 1);
    }

    void expect(std::string_view line) {
        advance();
        if (line_ != line) {
            fail(std::string("\"").append(line).append("\""));
        }
    }

    std::string_view read_title() {
        advance();
        std::string_view title = line_;
        if (!take(title, tabs)) {
            fail("a title");
        }
        return title;
    }

    ReadRule read_rule() {
        const std::string_view begin = rest_;
        ReadRule rule;
        read_rule_line(rule);
        rule.support = read_support();
        rule.confidence = read_confidence();
        rule.text = begin.substr(0, begin.size() - rest_.size());
        return rule;
    }

    void read_rule_line(ReadRule& rule) {
        constexpr std::string_view arrow = "-->";
        advance();
        const std::size_t at = line_.find(arrow);
        if (at == std::string_view::npos) {
            fail("a rule");
        }
        const std::optional<ReadSide> premise = read_side(line_.substr(0, at));
        const std::optional<ReadSide> conclusion = read_side(line_.substr(at + arrow.size()));
        if (!premise || !conclusion) {
            fail("a rule");
        }
        rule.premise = *premise;
        rule.conclusion = *conclusion;
    }

    ReadSupport read_support() {
        advance();
        std::string_view number = line_;
        if (take(number, "support:")) {
            const std::optional<Count> support = read_count(number);
            if (!support) {
                fail("a support");
            }
            expect("");
            return {false, *support, *support};
        }
        const auto ends = read_interval(line_, "< support <");
        const std::optional<Count> low = ends ? read_count(ends->first) : std::nullopt;
        const std::optional<Count> high = ends ? read_count(ends->second) : std::nullopt;
        if (!low || !high) {
            fail("a support");
        }
        return {true, *low, *high};
    }

    std::optional<ReadConfidence> read_confidence() {
        peek();
        std::string_view number = line_;
        std::optional<ReadConfidence> confidence;
        if (take(number, "confiance:")) {
            confidence = {false, number, number};
        } else if (const auto ends = read_interval(line_, "< confiance <")) {
            confidence = {true, ends->first, ends->second};
        } else {
            return std::nullopt;
        }
        advance();
        expect(separator);
        return confidence;
    }

    std::string_view rest_;
    std::string_view line_;
    int number_ = 0;
};

}  // namespace

ReadRuleFile read_rule_file(std::string_view text) {
    return Reader(text).read_file();
}

}  // namespace korv::test
