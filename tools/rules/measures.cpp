#include "rules/measures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>

#include "rules/confidence.h"
#include "rules/fisher.h"

namespace korv::tools {

namespace {

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

std::uint64_t product(Count one, Count other) {
    return std::uint64_t{one} * other;
}

/// A table with all that the formulas are made of. Products of two counts fit 64 bits, so that what is equal
/// is told from what is nearly equal.
struct Table {
    Table(const Contingency& counts, Count transactions)
        : x(counts.premise), y(counts.conclusion), a(counts.both), n(transactions) {}

    Count x;
    Count y;
    Count a;
    Count n;

    Count only_premise() const { return x - a; }
    Count only_conclusion() const { return y - a; }
    Count neither() const { return n - x - only_conclusion(); }

    /// a n - x y, which is n^2 times the leverage. It is at most n^2 / 4, so it fits where its parts do not.
    std::int64_t excess() const { return static_cast<std::int64_t>(product(a, n) - product(x, y)); }
};

/// Undefined for 0/0.
double ratio(double part, double whole) {
    return part / whole;
}

double ratio(std::uint64_t part, std::uint64_t whole) {
    const double rounded = ratio(static_cast<double>(part), static_cast<double>(whole));
    if (rounded != 1 || part == whole) {
        return rounded;
    }
    // So that only equal numbers have a ratio of 1.
    return std::nextafter(1.0, part > whole ? 2.0 : 0.0);
}

double share(Count part, Count whole) {
    return ratio(static_cast<double>(part), static_cast<double>(whole));
}

/// The excess in relation to a product of counts.
double excess_in(const Table& t, std::uint64_t whole) {
    return ratio(static_cast<double>(t.excess()), static_cast<double>(whole));
}

double support(const Table& t) {
    return share(t.a, t.n);
}

double coverage(const Table& t) {
    return share(t.x, t.n);
}

double prevalence(const Table& t) {
    return share(t.y, t.n);
}

double confidence(const Table& t) {
    return Confidence({t.x, t.y, t.a}).value();
}

double recall(const Table& t) {
    return share(t.a, t.y);
}

double lift(const Table& t) {
    return ratio(product(t.a, t.n), product(t.x, t.y));
}

double leverage(const Table& t) {
    return excess_in(t, product(t.n, t.n));
}

double added_value(const Table& t) {
    return excess_in(t, product(t.x, t.n));
}

double conviction(const Table& t) {
    return ratio(product(t.x, t.n - t.y), product(t.n, t.only_premise()));
}

double certainty_factor(const Table& t) {
    if (t.x == 0) {
        return undefined;
    }
    if (t.excess() == 0) {
        return 0;
    }
    return excess_in(t, product(t.x, t.excess() > 0 ? t.n - t.y : t.y));
}

double zhang(const Table& t) {
    return excess_in(t, std::max(product(t.a, t.n - t.x), product(t.x, t.only_conclusion())));
}

/// The variances of both sides, multiplied; times n^4.
double variances(const Table& t) {
    return static_cast<double>(product(t.x, t.n - t.x)) * static_cast<double>(product(t.y, t.n - t.y));
}

double phi(const Table& t) {
    // The root of one quotient, so that equal values are equal: so for cosine and kulczynski.
    const auto excess = static_cast<double>(t.excess());
    return std::copysign(std::sqrt(ratio(excess * excess, variances(t))), excess);
}

double kappa(const Table& t) {
    return 2 * excess_in(t, product(t.x, t.n - t.y) + product(t.y, t.n - t.x));
}

double yule_q(const Table& t) {
    return excess_in(t, product(t.a, t.neither()) + product(t.only_premise(), t.only_conclusion()));
}

double odds_ratio(const Table& t) {
    return ratio(product(t.a, t.neither()), product(t.only_premise(), t.only_conclusion()));
}

double relative_risk(const Table& t) {
    return ratio(product(t.a, t.n - t.x), product(t.x, t.only_conclusion()));
}

double jaccard(const Table& t) {
    return ratio(std::uint64_t{t.a}, std::uint64_t{t.x} + t.only_conclusion());
}

double cosine(const Table& t) {
    return std::sqrt(ratio(product(t.a, t.a), product(t.x, t.y)));
}

double kulczynski(const Table& t) {
    // a (x + y) / (2 x y), below 2^64.
    return ratio(std::uint64_t{t.a} * (std::uint64_t{t.x} + t.y), 2 * product(t.x, t.y));
}

double imbalance(const Table& t) {
    const Count gap = std::max(t.x, t.y) - std::min(t.x, t.y);
    return ratio(std::uint64_t{gap}, std::uint64_t{t.x} + t.only_conclusion());
}

double laplace(const Table& t) {
    return ratio(std::uint64_t{t.a} + 1, std::uint64_t{t.x} + 2);
}

double chi2(const Table& t) {
    const auto excess = static_cast<double>(t.excess());
    return ratio(excess * excess * static_cast<double>(t.n), variances(t));
}

double fisher(const Table& t) {
    return surprise(Tail::more, {t.x, t.y, t.a}, t.n);
}

struct Description {
    Measure measure;
    std::string_view name;
    std::string_view formula;
    std::string_view explanation;
    double (*value)(const Table&);
    Course course = Course::monotonic;
};

/// In the order of the enumeration.
// clang-format off
constexpr std::array<Description, number_of_measures> catalogue = {{
    {Measure::support, "support", "a/n",
     "the share of all transactions that hold both sides", support},
    {Measure::coverage, "coverage", "x/n",
     "the share of all transactions that the rule applies to", coverage},
    {Measure::prevalence, "prevalence", "y/n",
     "the share of all transactions in which the conclusion holds anyway", prevalence},
    {Measure::confidence, "confidence", "a/x",
     "how often the conclusion holds where the premise does", confidence},
    {Measure::recall, "recall", "a/y",
     "how often the premise holds where the conclusion does", recall},
    {Measure::lift, "lift", "a n/(x y)",
     "how many times as often as by chance both sides hold together; 1 is chance", lift},
    {Measure::leverage, "leverage", "a/n - x y/n^2",
     "the share of all transactions that hold both sides beyond chance; 0 is chance", leverage},
    {Measure::added_value, "added_value", "a/x - y/n",
     "how much more often the conclusion holds with the premise than anyway", added_value},
    {Measure::conviction, "conviction", "x (n-y)/(n b)",
     "how many times as many exceptions chance would give; inf: the rule has none", conviction},
    {Measure::certainty, "certainty", "v/(x (n-y)), or v/(x y) if v < 0",
     "how much of the doubt the premise removes: 1 for sure, 0 chance, -1 never", certainty_factor},
    {Measure::zhang, "zhang", "v/max(a (n-x), x c)",
     "whether the sides attract (up to 1) or avoid (down to -1) each other; 0 is chance", zhang},
    {Measure::phi, "phi", "v/sqrt(x (n-x) y (n-y))",
     "the correlation of the sides, from -1 to 1; 0 is chance", phi},
    {Measure::kappa, "kappa", "2 v/(x (n-y) + y (n-x))",
     "how far the sides agree beyond chance; 1: in each transaction both hold or neither", kappa},
    {Measure::yule_q, "yule_q", "v/(a d + b c)",
     "the odds ratio on a scale from -1 to 1; 0 is chance", yule_q},
    {Measure::odds_ratio, "odds_ratio", "a d/(b c)",
     "how many times as high the odds of the conclusion are with the premise as without", odds_ratio},
    {Measure::relative_risk, "relative_risk", "(a/x)/(c/(n-x))",
     "how many times as likely the conclusion is with the premise as without", relative_risk},
    {Measure::jaccard, "jaccard", "a/(x+y-a)",
     "the share of transactions with both sides among those with either", jaccard},
    {Measure::cosine, "cosine", "a/sqrt(x y)",
     "how alike the sides are, from 0 to 1, whatever else is in the data", cosine},
    {Measure::kulczynski, "kulczynski", "(a/x + a/y)/2",
     "how well either side tells the other: the mean of confidence and recall", kulczynski},
    {Measure::imbalance, "imbalance", "|x-y|/(x+y-a)",
     "how far the sides differ in how often they hold; 0: equally often",
     imbalance, Course::turns_at_equal_sides},
    {Measure::laplace, "laplace", "(a+1)/(x+2)",
     "the confidence, drawn towards one half where the transactions are few", laplace},
    {Measure::chi2, "chi2", "n v^2/(x (n-x) y (n-y))",
     "how far the counts are from chance, either way; above 3.84 once in 20 times by chance",
     chi2, Course::turns_at_chance},
    {Measure::p, "p", "-log10 of Fisher's one-sided p",
     "how rarely chance gives so many with both sides: 3 is once in 1,000 times", fisher},
}};
// clang-format on

constexpr bool is_in_order() {
    for (std::size_t i = 0; i < catalogue.size(); ++i) {
        if (static_cast<std::size_t>(catalogue[i].measure) != i) {
            return false;
        }
    }
    return true;
}
static_assert(is_in_order());

const Description& description(Measure measure) {
    return catalogue[static_cast<std::size_t>(measure)];
}

Count gap(Count one, Count other) {
    return one < other ? other - one : one - other;
}

/// All tables between the two of a rule, each one transaction of the unknown support further.
class Tables {
public:
    explicit Tables(const FoundRule& rule)
        : low_(rule.at_low),
          high_(rule.at_high),
          last_(std::max({gap(low_.premise, high_.premise), gap(low_.conclusion, high_.conclusion),
                          gap(low_.both, high_.both)})) {}

    Count last() const { return last_; }

    Contingency operator[](Count step) const {
        return {moved(low_.premise, high_.premise, step), moved(low_.conclusion, high_.conclusion, step),
                moved(low_.both, high_.both, step)};
    }

private:
    static Count moved(Count from, Count to, Count steps) {
        if (from == to) {
            return from;
        }
        return from < to ? from + std::min(steps, to - from) : from - std::min(steps, from - to);
    }

    const Contingency& low_;
    const Contingency& high_;
    Count last_;
};

/// Collects bounds, without the values that are not defined.
class Collected {
public:
    Collected(Measure measure, const FoundRule& rule, Count transactions)
        : value_(description(measure).value), tables_(rule), transactions_(transactions) {}

    void add(Count step) {
        if (step > tables_.last()) {
            return;
        }
        const double value = value_({tables_[step], transactions_});
        if (std::isnan(value)) {
            return;
        }
        bounds_ = is_empty_ ? MeasureBounds{value, value}
                            : MeasureBounds{std::min(bounds_.low, value), std::max(bounds_.high, value)};
        is_empty_ = false;
    }

    /// Both ends. A side that holds for all transactions, or for none, can only be at an end: where a measure
    /// is not defined for that reason, it is defined next to it, or nowhere.
    void add_ends() {
        add(0);
        add(1);
        add(tables_.last() - 1);  // wraps where there is only one table
        add(tables_.last());
    }

    MeasureBounds bounds() const { return is_empty_ ? MeasureBounds{undefined, undefined} : bounds_; }

private:
    double (*value_)(const Table&);
    Tables tables_;
    Count transactions_;
    MeasureBounds bounds_ = {};
    bool is_empty_ = true;
};

/// The last step on the near side of the point where a linear quantity is 0. `near`, `far`: its values at
/// both ends. Any step, even one beyond the last, where there is no such point.
Count step_to_zero(std::int64_t near, std::int64_t far, Count steps) {
    const std::int64_t slope = (far - near) / steps;
    if (slope == 0) {
        return 0;
    }
    const std::int64_t step = -near / slope;
    return step < 0 || step > steps ? 0 : static_cast<Count>(step);
}

Count last_step_before_turn(Course course, const FoundRule& rule, Count transactions) {
    const Count steps = Tables(rule).last();
    const Table low(rule.at_low, transactions);
    const Table high(rule.at_high, transactions);
    if (course == Course::turns_at_chance) {
        return step_to_zero(low.excess(), high.excess(), steps);
    }
    return step_to_zero(std::int64_t{low.x} - low.y, std::int64_t{high.x} - high.y, steps);
}

std::string text_of_help() {
    std::size_t name_width = 0;
    std::size_t formula_width = 0;
    for (const Description& line : catalogue) {
        name_width = std::max(name_width, line.name.size());
        formula_width = std::max(formula_width, line.formula.size());
    }
    std::string text(letters_of_formulas());
    text += "\n\n";
    for (const Description& line : catalogue) {
        text.append(line.name).append(name_width + 2 - line.name.size(), ' ');
        text.append(line.formula).append(formula_width + 2 - line.formula.size(), ' ');
        text.append(line.explanation).append("\n");
    }
    return text;
}

}  // namespace

std::string_view name_of(Measure measure) {
    return description(measure).name;
}

std::vector<std::string> names_of_measures() {
    std::vector<std::string> names;
    for (const Description& each : catalogue) {
        names.emplace_back(each.name);
    }
    return names;
}

std::optional<Measure> measure_named(std::string_view name) {
    for (const Description& each : catalogue) {
        if (each.name == name) {
            return each.measure;
        }
    }
    return std::nullopt;
}

bool Knowledge::tells(Measure measure) const {
    if (measure == Measure::confidence || measure == Measure::laplace) {
        return true;
    }
    const bool is_share = measure == Measure::support || measure == Measure::coverage;
    return has_transactions && (has_conclusion || is_share);
}

double value_of(Measure measure, const Contingency& table, Count transactions) {
    return description(measure).value({table, transactions});
}

MeasureBounds bounds_of(Measure measure, const FoundRule& rule, Count transactions) {
    if (rule.is_known()) {
        const double value = value_of(measure, rule.at_low, transactions);
        return {value, value};
    }
    Collected collected(measure, rule, transactions);
    collected.add_ends();
    const Course course = description(measure).course;
    if (course != Course::monotonic) {
        const Count step = last_step_before_turn(course, rule, transactions);
        collected.add(step);
        collected.add(step + 1);
    }
    return collected.bounds();
}

MeasureExplanation explanation(Measure measure) {
    const Description& told = description(measure);
    return {told.formula, told.explanation, told.course};
}

std::string_view letters_of_formulas() {
    return "How many transactions hold what: x the premise, y the conclusion, a both, b the premise only,\n"
           "c the conclusion only, d neither; n are all. v = a n - x y.";
}

std::string_view help_on_measures() {
    static const std::string text = text_of_help();
    return text;
}

}  // namespace korv::tools
