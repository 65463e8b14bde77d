#include "rules/where.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <tao/pegtl.hpp>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"
#include "common/nearest.h"
#include "common/utf8.h"

namespace korv::tools {

/// What is asked about.
struct Where::Subject {
    const FoundRule& rule;
    std::size_t items;
    Count transactions;
};

namespace {

MeasureBounds count_bounds(Count one, Count other) {
    return {static_cast<double>(std::min(one, other)), static_cast<double>(std::max(one, other))};
}

MeasureBounds known(double value) {
    return {value, value};
}

/// A percentage of a number of transactions. What would be whole but for the binary form of the percentage
/// is.
double share(double percentage, Count transactions) {
    const double exact = percentage * transactions / 100;
    const double whole = std::round(exact);
    const double tolerance = 1e-9 + whole * 4 * std::numeric_limits<double>::epsilon();
    return std::abs(exact - whole) <= tolerance ? whole : exact;
}

}  // namespace

MeasureBounds Where::bounds_of(const Operand& operand, const Subject& subject) {
    const Contingency& low = subject.rule.at_low;
    const Contingency& high = subject.rule.at_high;
    switch (operand.quantity) {
        case Quantity::number:
            return known(operand.number);
        case Quantity::percentage:
            return known(share(operand.number, subject.transactions));
        case Quantity::measure:
            return tools::bounds_of(operand.measure, subject.rule, subject.transactions);
        case Quantity::support:
            return count_bounds(low.both, high.both);
        case Quantity::premise_count:
            return count_bounds(low.premise, high.premise);
        case Quantity::conclusion_count:
            return count_bounds(low.conclusion, high.conclusion);
        case Quantity::transactions:
            return known(subject.transactions);
        case Quantity::items:
            return known(static_cast<double>(subject.items));
    }
    return known(std::numeric_limits<double>::quiet_NaN());
}

std::optional<std::string_view> Where::untold(const Operand& operand, const Knowledge& knowledge) {
    switch (operand.quantity) {
        case Quantity::measure:
            return knowledge.tells(operand.measure) ? std::nullopt : std::optional(name_of(operand.measure));
        case Quantity::conclusion_count:
            return knowledge.has_conclusion ? std::nullopt : std::optional("conclusion_count");
        case Quantity::transactions:
            return knowledge.has_transactions ? std::nullopt : std::optional("transactions");
        case Quantity::percentage:
            return knowledge.has_transactions ? std::nullopt : std::optional("a percentage of transactions");
        case Quantity::number:
        case Quantity::support:
        case Quantity::premise_count:
        case Quantity::items:
            break;
    }
    return std::nullopt;
}

std::optional<std::string_view> Where::untold(const Knowledge& knowledge) const {
    // NOLINTNEXTLINE(modernize-loop-convert): reversed views do not compile with Debian's default clang
    for (auto comparison = comparisons_.rbegin(); comparison != comparisons_.rend(); ++comparison) {
        for (const Operand& operand : {comparison->left, comparison->right}) {
            if (const auto name = untold(operand, knowledge)) {
                return name;
            }
        }
    }
    return std::nullopt;
}

/// Every line is false where a bound is NaN.
bool Where::holds(const Comparison& comparison, const Subject& subject) {
    const MeasureBounds left = bounds_of(comparison.left, subject);
    const MeasureBounds right = bounds_of(comparison.right, subject);
    switch (comparison.comparator) {
        case Comparator::less:
            return left.high < right.low;
        case Comparator::at_most:
            return left.high <= right.low;
        case Comparator::more:
            return left.low > right.high;
        case Comparator::at_least:
            return left.low >= right.high;
        case Comparator::equal:
            return left.low == right.high && left.high == right.low;
        case Comparator::unequal:
            return left.high < right.low || left.low > right.high;
    }
    return false;
}

bool Where::holds(const FoundRule& rule, std::size_t items, Count transactions) const {
    const Subject subject = {rule, items, transactions};
    Step step = first_;
    while (step >= first_comparison) {
        const Comparison& comparison = comparisons_[step - first_comparison];
        step = holds(comparison, subject) ? comparison.if_it_holds : comparison.otherwise;
    }
    return step == holds_for_certain;
}

/// Takes the pieces of a text, from left to right, and makes the comparisons with their jumps of them.
class WhereParser {
public:
    explicit WhereParser(std::string_view text) : text_(text) {}

    void take_number(std::string_view number, std::size_t position);
    void take_name(std::string_view name, std::size_t position);
    void take_comparator(std::string_view comparator);
    void take_right_side();
    void take_not() { levels_.back().is_negated = !levels_.back().is_negated; }
    void take_or() { levels_.back().alternatives.emplace_back(); }
    void open(std::size_t position);
    void close();

    Where finish();

    /// Throws the Error about what is at `position`.
    [[noreturn]] void fail(std::size_t position, const std::string& expected) const;

private:
    using Quantity = Where::Quantity;
    using Comparator = Where::Comparator;

    enum class Shape : std::uint8_t { comparison, all, any };

    /// A condition as a tree.
    struct Node {
        Shape shape = Shape::comparison;
        bool is_negated = false;
        Where::Comparison comparison = {};
        std::vector<Node> parts = {};
    };

    /// What is open within a pair of parentheses, or outside them.
    struct Level {
        std::vector<std::vector<Node>> alternatives = std::vector<std::vector<Node>>(1);
        bool is_negated = false;  ///< what comes next
    };

    /// A side of a comparison as it stands in the text.
    struct Read {
        Where::Operand operand;
        std::size_t position = 0;
        std::string_view text;
    };

    struct CountName {
        std::string_view name;
        Quantity quantity;
    };

    static constexpr std::array count_names = {
        CountName{"support", Quantity::support},
        CountName{"premise_count", Quantity::premise_count},
        CountName{"conclusion_count", Quantity::conclusion_count},
        CountName{"transactions", Quantity::transactions},
        CountName{"items", Quantity::items},
    };
    static constexpr std::size_t most_levels = 100;

    static std::vector<std::string> known_names();
    static Comparator opposite(Comparator comparator);
    static bool is_number(const Read& side);
    void settle_number(Read& number, const Read& other) const;
    void add(Node node);
    static Node whole(Level level);
    Where::Step compile(const Node& node, bool is_negated, Where::Step if_it_holds, Where::Step otherwise);

    std::string_view text_;
    std::vector<Level> levels_ = std::vector<Level>(1);
    Read read_;
    Read left_;
    Comparator comparator_ = Comparator::less;
    Where where_;
};

namespace {

namespace pegtl = tao::pegtl;

// clang-format off
struct Blank : pegtl::star<pegtl::space> {};
struct EndOfWord : pegtl::not_at<pegtl::identifier_other> {};
struct And : pegtl::seq<TAO_PEGTL_ISTRING("and"), EndOfWord, Blank> {};
struct Or : pegtl::seq<TAO_PEGTL_ISTRING("or"), EndOfWord, Blank> {};
struct Not : pegtl::seq<TAO_PEGTL_ISTRING("not"), EndOfWord, Blank> {};

struct Sign : pegtl::opt<pegtl::one<'+', '-'>> {};
struct Digits : pegtl::plus<pegtl::digit> {};
struct Mantissa : pegtl::sor<
    pegtl::seq<Digits, pegtl::opt<pegtl::one<'.'>, pegtl::opt<Digits>>>,
    pegtl::seq<pegtl::one<'.'>, Digits>> {};
struct Exponent : pegtl::seq<pegtl::one<'e', 'E'>, Sign, Digits> {};
struct Decimal : pegtl::seq<Sign, Mantissa, pegtl::opt<Exponent>, pegtl::opt<pegtl::one<'%'>>> {};
struct Infinity : pegtl::seq<Sign, TAO_PEGTL_ISTRING("inf"), EndOfWord> {};
struct Number : pegtl::sor<Decimal, Infinity> {};
struct Name : pegtl::seq<pegtl::not_at<pegtl::sor<And, Or, Not>>, pegtl::identifier> {};
struct Operand : pegtl::seq<pegtl::sor<Number, Name>, Blank> {};

struct ComparisonSign : pegtl::sor<
    pegtl::string<'<', '='>, pegtl::string<'>', '='>, pegtl::string<'=', '='>, pegtl::string<'!', '='>,
    pegtl::one<'<', '>', '='>> {};
struct Comparator : pegtl::seq<ComparisonSign, Blank> {};
struct RightSide : pegtl::seq<Operand> {};
struct Comparison : pegtl::seq<Operand, pegtl::must<Comparator, RightSide>> {};

struct Disjunction;
struct Open : pegtl::seq<pegtl::one<'('>, Blank> {};
struct Close : pegtl::seq<pegtl::one<')'>, Blank> {};
struct Parenthesized : pegtl::if_must<Open, Disjunction, Close> {};
struct Primary : pegtl::sor<Parenthesized, Comparison> {};
struct Negation : pegtl::seq<pegtl::star<Not>, pegtl::must<Primary>> {};
struct Conjunction : pegtl::list_must<Negation, And> {};
struct Disjunction : pegtl::list_must<Conjunction, Or> {};
struct End : pegtl::eof {};
struct Condition : pegtl::must<Blank, Disjunction, End> {};
// clang-format on

/// What should stand where a rule of the grammar does not match.
template <typename Rule>
constexpr std::string_view expectation = R"(a comparison such as lift > 1.2, "not" or "(")";
template <>
constexpr std::string_view expectation<Comparator> = "one of < <= > >= = !=";
template <>
constexpr std::string_view expectation<RightSide> = "a number, a measure or a count";
template <>
constexpr std::string_view expectation<Close> = "\"and\", \"or\" or \")\"";
template <>
constexpr std::string_view expectation<End> = R"("and", "or" or the end)";

template <typename Rule>
struct Control : pegtl::normal<Rule> {
    template <typename Input>
    [[noreturn]] static void raise(const Input& input, WhereParser& parser) {
        parser.fail(input.position().byte, std::string(expectation<Rule>));
    }
};

template <typename Rule>
struct Action {};

template <>
struct Action<Number> {
    template <typename Input>
    static void apply(const Input& input, WhereParser& parser) {
        parser.take_number(input.string_view(), input.position().byte);
    }
};

template <>
struct Action<Name> {
    template <typename Input>
    static void apply(const Input& input, WhereParser& parser) {
        parser.take_name(input.string_view(), input.position().byte);
    }
};

template <>
struct Action<ComparisonSign> {
    template <typename Input>
    static void apply(const Input& input, WhereParser& parser) {
        parser.take_comparator(input.string_view());
    }
};

template <>
struct Action<RightSide> {
    static void apply0(WhereParser& parser) { parser.take_right_side(); }
};

template <>
struct Action<Not> {
    static void apply0(WhereParser& parser) { parser.take_not(); }
};

template <>
struct Action<Or> {
    static void apply0(WhereParser& parser) { parser.take_or(); }
};

template <>
struct Action<Open> {
    template <typename Input>
    static void apply(const Input& input, WhereParser& parser) {
        parser.open(input.position().byte);
    }
};

template <>
struct Action<Close> {
    static void apply0(WhereParser& parser) { parser.close(); }
};

std::string in_small_letters(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return result;
}

/// The first word, number, sign or character of a text.
std::string_view first_token(std::string_view text) {
    const auto length = [&](std::string_view characters) {
        return std::min(text.find_first_not_of(characters), text.size());
    };
    constexpr std::string_view of_words = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.%";
    const std::size_t bytes =
        std::max({length(of_words), length("<>=!&|~"), first_character(text).bytes, std::size_t{1}});
    return text.substr(0, bytes);
}

/// The number of a text as the grammar has it. Nothing where a double cannot hold it.
std::optional<double> number_of(std::string_view text) {
    text.remove_prefix(text.starts_with('+') ? 1 : 0);
    return parse_number<double>(in_small_letters(text));
}

/// A percentage as a fraction: that of "12.3%" is the double closest to 0.123.
double fraction_of(std::string_view percentage, double value) {
    const std::string_view digits = percentage.substr(0, percentage.size() - 1);
    return number_of(std::string(digits) + "e-2").value_or(value / 100);
}

}  // namespace

void WhereParser::fail(std::size_t position, const std::string& expected) const {
    const std::string_view rest = text_.substr(position);
    const std::string found = rest.empty() ? "the end" : shown(first_token(rest));
    throw Error("--where, column " + std::to_string(position + 1) + ": found " + found + "; expected " +
                expected);
}

void WhereParser::take_number(std::string_view number, std::size_t position) {
    const bool is_percentage = number.ends_with('%');
    const auto value = number_of(number.substr(0, number.size() - (is_percentage ? 1 : 0)));
    if (!value) {
        fail(position, "a number between 1e-300 and 1e300, 0 or inf");
    }
    read_ = {{is_percentage ? Quantity::percentage : Quantity::number, Measure::support, *value},
             position,
             number};
}

void WhereParser::take_name(std::string_view name, std::size_t position) {
    const std::string small = in_small_letters(name);
    for (const CountName& count : count_names) {
        if (count.name == small) {
            read_ = {{count.quantity}, position, name};
            return;
        }
    }
    const auto measure = measure_named(small);
    if (!measure) {
        fail(position, "a measure or a count, such as " + all_shown(nearest(small, known_names(), 3)));
    }
    read_ = {{Quantity::measure, *measure}, position, name};
}

/// The names of all measures and counts. The support, which is both, is there once.
std::vector<std::string> WhereParser::known_names() {
    std::vector<std::string> names = names_of_measures();
    for (const CountName& count : count_names) {
        if (!measure_named(count.name)) {
            names.emplace_back(count.name);
        }
    }
    return names;
}

void WhereParser::take_comparator(std::string_view comparator) {
    left_ = read_;
    const bool has_equal = comparator.ends_with('=');
    switch (comparator.front()) {
        case '<':
            comparator_ = has_equal ? Comparator::at_most : Comparator::less;
            break;
        case '>':
            comparator_ = has_equal ? Comparator::at_least : Comparator::more;
            break;
        case '!':
            comparator_ = Comparator::unequal;
            break;
        default:
            comparator_ = Comparator::equal;
    }
}

void WhereParser::take_right_side() {
    if (is_number(left_) && is_number(read_)) {
        fail(read_.position, "a measure or a count, since a number is on the other side");
    }
    if (is_number(left_)) {
        settle_number(left_, read_);
    } else if (is_number(read_)) {
        settle_number(read_, left_);
    } else if ((left_.operand.quantity == Quantity::measure) !=
               (read_.operand.quantity == Quantity::measure)) {
        fail(read_.position, left_.operand.quantity == Quantity::measure
                                 ? "a number or a measure that is no count beside " + shown(left_.text)
                                 : "a number or a count beside " + shown(left_.text));
    }
    add({.comparison = {left_.operand, read_.operand, comparator_}});
}

bool WhereParser::is_number(const Read& side) {
    return side.operand.quantity == Quantity::number || side.operand.quantity == Quantity::percentage;
}

/// Makes of a number what it stands for beside `other`.
void WhereParser::settle_number(Read& number, const Read& other) const {
    const Quantity quantity = other.operand.quantity;
    const bool is_percentage = number.operand.quantity == Quantity::percentage;
    if (quantity == Quantity::measure) {
        if (is_percentage) {
            number.operand.number = fraction_of(number.text, number.operand.number);
            number.operand.quantity = Quantity::number;
        }
        return;
    }
    const bool is_whole = !is_percentage && std::trunc(number.operand.number) == number.operand.number;
    const bool is_of_transactions = quantity != Quantity::items;
    if (!is_whole && !(is_percentage && is_of_transactions)) {
        fail(number.position,
             (is_of_transactions ? "a whole number or a percentage, such as 50 or 2%, beside "
                                 : "a whole number beside ") +
                 shown(other.text));
    }
}

void WhereParser::open(std::size_t position) {
    if (levels_.size() > most_levels) {
        fail(position, "at most " + std::to_string(most_levels) + " parentheses within each other");
    }
    levels_.emplace_back();
}

void WhereParser::close() {
    Node node = whole(std::move(levels_.back()));
    levels_.pop_back();
    add(std::move(node));
}

/// Adds a comparison or what is in parentheses, with the "not" before it.
void WhereParser::add(Node node) {
    Level& level = levels_.back();
    node.is_negated = std::exchange(level.is_negated, false);
    level.alternatives.back().push_back(std::move(node));
}

WhereParser::Node WhereParser::whole(Level level) {
    Node any = {.shape = Shape::any};
    for (std::vector<Node>& alternative : level.alternatives) {
        any.parts.push_back({.shape = Shape::all, .parts = std::move(alternative)});
    }
    return any;
}

WhereParser::Comparator WhereParser::opposite(Comparator comparator) {
    switch (comparator) {
        case Comparator::less:
            return Comparator::at_least;
        case Comparator::at_most:
            return Comparator::more;
        case Comparator::more:
            return Comparator::at_most;
        case Comparator::at_least:
            return Comparator::less;
        case Comparator::equal:
            return Comparator::unequal;
        case Comparator::unequal:
            return Comparator::equal;
    }
    return comparator;
}

/// Appends the comparisons of a node, from the last to the first, so that it is known where to go on behind
/// each. Returns where the node begins.
Where::Step WhereParser::compile(const Node& node, bool is_negated, Where::Step if_it_holds,
                                 Where::Step otherwise) {
    const bool is_opposite = is_negated != node.is_negated;
    if (node.shape == Shape::comparison) {
        Where::Comparison comparison = node.comparison;
        comparison.comparator = is_opposite ? opposite(comparison.comparator) : comparison.comparator;
        comparison.if_it_holds = if_it_holds;
        comparison.otherwise = otherwise;
        where_.comparisons_.push_back(comparison);
        return static_cast<Where::Step>(where_.comparisons_.size() - 1) + Where::first_comparison;
    }
    const bool is_all = (node.shape == Shape::all) != is_opposite;
    Where::Step& next = is_all ? if_it_holds : otherwise;
    for (std::size_t i = node.parts.size(); i-- > 0;) {
        next = compile(node.parts[i], is_opposite, if_it_holds, otherwise);
    }
    return next;
}

Where WhereParser::finish() {
    const Node node = whole(std::move(levels_.back()));
    where_.first_ = compile(node, false, Where::holds_for_certain, Where::does_not_hold);
    return std::move(where_);
}

Where parse_where(std::string_view text) {
    pegtl::memory_input input(text.data(), text.data() + text.size(), "--where");
    WhereParser parser(text);
    pegtl::parse<Condition, Action, Control>(input, parser);
    return parser.finish();
}

}  // namespace korv::tools
