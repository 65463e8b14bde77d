#include "rules/item_pattern.h"

#include <re2/re2.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tao/pegtl.hpp>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "common/error.h"
#include "common/nearest.h"

namespace korv::tools {

namespace {

enum class Meaning { name, wildcards, expression, number };

/// A part of a pattern, between bars.
struct Part {
    Meaning meaning = Meaning::name;
    std::string_view text;   ///< as it was typed
    std::string name;        ///< with what stands for itself only; for a name
    std::string expression;  ///< for wildcards and expressions
    bool ignores_case = false;
};

/// The parts of a pattern, while it is read.
struct Parts {
    const PatternWord& pattern;
    std::vector<Part> read = {};
    Part next = {};
};

[[noreturn]] void fail(const PatternWord& pattern, const std::string& found, const std::string& expected) {
    throw Error(pattern.option + ": found " + found + "; expected " + expected);
}

namespace pegtl = tao::pegtl;

// clang-format off
struct Bar : pegtl::one<'|'> {};
struct EndOfPart : pegtl::at<pegtl::sor<Bar, pegtl::eof>> {};

struct Escaped : pegtl::one<'*', '?', '|', '#', '/', '\\'> {};
struct Escape : pegtl::seq<pegtl::one<'\\'>, Escaped> {};
struct AnyText : pegtl::plus<pegtl::one<'*'>> {};
struct AnyCharacter : pegtl::one<'?'> {};
struct Itself : pegtl::not_one<'|'> {};
struct Name : pegtl::plus<pegtl::sor<Escape, AnyText, AnyCharacter, Itself>> {};

struct Digits : pegtl::plus<pegtl::digit> {};
struct Number : pegtl::if_must<pegtl::one<'#'>, Digits, EndOfPart> {};

struct Body : pegtl::star<pegtl::sor<pegtl::seq<pegtl::one<'\\'>, pegtl::any>, pegtl::not_one<'/'>>> {};
struct EndOfExpression : pegtl::one<'/'> {};
struct IgnoreCase : pegtl::one<'i'> {};
struct Expression : pegtl::if_must<pegtl::one<'/'>, Body, EndOfExpression, pegtl::opt<IgnoreCase>, EndOfPart> {};

struct PatternPart : pegtl::sor<Number, Expression, Name> {};
struct Pattern : pegtl::must<pegtl::list_must<PatternPart, Bar>> {};
// clang-format on

/// What should stand where a rule of the grammar does not match.
template <typename Rule>
constexpr std::string_view expectation = "the name of an item, #NUMBER or /EXPRESSION/";
template <>
constexpr std::string_view expectation<Digits> = R"(a number behind #, or \# for a name that begins with #)";
template <>
constexpr std::string_view expectation<EndOfExpression> =
    R"(a second /, or \/ for a name that begins with /)";
template <>
constexpr std::string_view expectation<EndOfPart> = "| or the end";

template <typename Rule>
struct Control : pegtl::normal<Rule> {
    template <typename Input>
    [[noreturn]] static void raise(const Input& input, const Parts& parts) {
        const std::size_t position = input.position().byte;
        const std::string& text = parts.pattern.text;
        const std::string found = position == text.size() ? "the end" : shown(text.substr(position));
        throw Error(parts.pattern.option + " " + shown(text) + ", column " + std::to_string(position + 1) +
                    ": found " + found + "; expected " + std::string(expectation<Rule>));
    }
};

void take_literally(std::string_view text, Part& part) {
    part.name += text;
    part.expression += RE2::QuoteMeta(text);
}

void take_wildcard(std::string_view expression, Part& part) {
    part.meaning = Meaning::wildcards;
    part.expression += expression;
}

template <typename Rule>
struct Action {};

template <>
struct Action<Escaped> {
    template <typename Input>
    static void apply(const Input& input, Parts& parts) {
        take_literally(input.string_view(), parts.next);
    }
};

template <>
struct Action<Itself> : Action<Escaped> {};

template <>
struct Action<AnyText> {
    static void apply0(Parts& parts) { take_wildcard(".*", parts.next); }
};

template <>
struct Action<AnyCharacter> {
    static void apply0(Parts& parts) { take_wildcard(".", parts.next); }
};

template <>
struct Action<Digits> {
    static void apply0(Parts& parts) { parts.next.meaning = Meaning::number; }
};

template <>
struct Action<Body> {
    template <typename Input>
    static void apply(const Input& input, Parts& parts) {
        parts.next.meaning = Meaning::expression;
        parts.next.expression = input.string();
    }
};

template <>
struct Action<IgnoreCase> {
    static void apply0(Parts& parts) { parts.next.ignores_case = true; }
};

template <>
struct Action<PatternPart> {
    template <typename Input>
    static void apply(const Input& input, Parts& parts) {
        parts.next.text = input.string_view();
        parts.read.push_back(std::exchange(parts.next, {}));
    }
};

std::vector<Part> parts_of(const PatternWord& pattern) {
    const std::string& text = pattern.text;
    pegtl::memory_input input(text.data(), text.data() + text.size(), pattern.option);
    Parts parts{pattern};
    pegtl::parse<Pattern, Action, Control>(input, parts);
    return std::move(parts.read);
}

/// Finds the items of one pattern.
class Search {
public:
    Search(const PatternWord& pattern, ItemSpan items, const ItemNames& names)
        : pattern_(pattern), items_(items), item_names_(names), is_matched_(items.size()) {
        for (const Item item : items) {
            names_.push_back(names.name(item));
        }
    }

    Itemset found() {
        if (!mark_name(pattern_.text)) {
            for (const Part& part : parts_of(pattern_)) {
                mark(part);
            }
        }
        Itemset result;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (is_matched_[i]) {
                result.push_back(items_[i]);
            }
        }
        return result;
    }

private:
    /// Marks the items for which a condition on their positions holds. Returns whether there is one.
    template <typename Condition>
    bool mark_where(const Condition& holds) {
        bool any = false;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (holds(i)) {
                is_matched_[i] = true;
                any = true;
            }
        }
        return any;
    }

    bool mark_name(std::string_view name) {
        return mark_where([&](std::size_t i) { return names_[i] == name; });
    }

    void mark(const Part& part) {
        if (mark_name(part.text)) {
            return;
        }
        switch (part.meaning) {
            case Meaning::name:
                if (!mark_name(part.name)) {
                    fail_for_nothing(part.name);
                }
                return;
            case Meaning::number:
                mark_number(part.text);
                return;
            case Meaning::wildcards:
            case Meaning::expression:
                mark_expression(part);
                return;
        }
    }

    void mark_number(std::string_view text) {
        const auto number = parse_number<Item>(text.substr(1));
        if (!number || !mark_where([&](std::size_t i) { return items_[i] == *number; })) {
            fail(pattern_, shown(text),
                 items_.empty() ? "nothing, since there is no item"
                                : "the number of an item, from #" + std::to_string(std::ranges::min(items_)) +
                                      " to #" + std::to_string(std::ranges::max(items_)));
        }
    }

    void mark_expression(const Part& part) {
        RE2::Options options;
        options.set_log_errors(false);
        options.set_case_sensitive(!part.ignores_case);
        options.set_dot_nl(part.meaning == Meaning::wildcards);
        const RE2 expression(part.expression, options);
        if (!expression.ok()) {
            fail(pattern_, shown(part.text) + " (" + expression.error() + ")", "a regular expression");
        }
        const auto matches = [&](const std::string& name) {
            return part.meaning == Meaning::wildcards ? RE2::FullMatch(name, expression)
                                                      : RE2::PartialMatch(name, expression);
        };
        if (mark_where([&](std::size_t i) { return matches(names_[i]); })) {
            return;
        }
        if (part.meaning == Meaning::expression) {
            fail_with(part.text, part.expression, names_);
        }
        fail_for_nothing(part.text);
    }

    /// The column that a text names: what is before the first equals sign.
    static std::optional<std::string_view> column_in(std::string_view text) {
        const std::size_t sign = text.find('=');
        return sign == std::string_view::npos || sign == 0 ? std::nullopt
                                                           : std::optional(text.substr(0, sign));
    }

    /// All columns, even those of which no class has an item, or that have only one.
    std::vector<std::string> columns() const {
        std::set<std::string> found;
        for (const auto& [item, name] : item_names_.all()) {
            if (const auto column = column_in(name)) {
                found.emplace(*column);
            }
        }
        return {found.begin(), found.end()};
    }

    /// Throws Error for a name, or one with wildcards, that matches no item.
    [[noreturn]] void fail_for_nothing(std::string_view text) const {
        const std::vector<std::string> same = equal_but_for_case(text, names_);
        if (!same.empty()) {
            fail_with(text, text, same);
        }
        const auto column = column_in(text);
        const std::vector<std::string> known = columns();
        if (!column || known.empty()) {
            fail_with(text, text, names_);
        }
        if (!std::ranges::binary_search(known, *column)) {
            fail(pattern_, shown(text),
                 "a column of the input, such as " + all_shown(nearest(*column, known, most_listed)));
        }
        std::vector<std::string> of_column;
        std::ranges::copy_if(names_, std::back_inserter(of_column),
                             [&](const std::string& name) { return column_in(name) == column; });
        fail_with(text, text, of_column.empty() ? names_ : of_column);
    }

    /// Throws Error for a part of a pattern. `text`: what to name the nearest candidates of.
    [[noreturn]] void fail_with(std::string_view part, std::string_view text,
                                std::span<const std::string> candidates) const {
        const auto& all = item_names_.all();
        const bool is_known =
            std::ranges::any_of(all, [&](const auto& item_and_name) { return item_and_name.second == part; });
        fail(pattern_, shown(part) + (is_known ? ", which is in no class" : ""),
             candidates.empty() ? "nothing, since there is no item"
                                : "an item, such as " + all_shown(nearest(text, candidates, most_listed)));
    }

    static constexpr std::size_t most_listed = 5;

    const PatternWord& pattern_;
    ItemSpan items_;
    const ItemNames& item_names_;
    std::vector<std::string> names_;  ///< of the items
    std::vector<bool> is_matched_;
};

}  // namespace

Itemset matching_items(const PatternWord& pattern, ItemSpan items, const ItemNames& names) {
    return Search(pattern, items, names).found();
}

}  // namespace korv::tools
