#include "rules/words_writer.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "common/quantity.h"
#include "rules/confidence.h"
#include "rules/display_text.h"
#include "rules/number_words.h"
#include "rules/rule_columns.h"
#include "rules/side_words.h"

namespace korv::tools {

namespace {

constexpr std::size_t most_items_named = 12;

/// "then in 73 % of cases", or what else is known of the confidence.
std::string how_often(const MeasureBounds& confidence) {
    if (std::isnan(confidence.low)) {
        return "of which there is no case";
    }
    if (confidence.low == 1) {
        return "then always";
    }
    if (confidence.high == 0) {
        return "then never";
    }
    return "then in " + range_text(percent_text(confidence.low), percent_text(confidence.high)) + " of cases";
}

/// "344 of 470"; "in all 470 cases" where there is no exception.
std::string cases(const FoundRule& rule) {
    const CountRange both = range_of(rule, &Contingency::both);
    const CountRange premise = range_of(rule, &Contingency::premise);
    const bool has_no_exception =
        rule.at_low.both == rule.at_low.premise && rule.at_high.both == rule.at_high.premise;
    if (!has_no_exception) {
        return count_text(both) + " of " + count_text(premise);
    }
    return premise.high == 1 ? "in the only case" : "in all " + count_text(premise) + " cases";
}

/// "711 of all 2,201 (32 %)".
std::string in_general(const FoundRule& rule, Count transactions) {
    const CountRange conclusion = range_of(rule, &Contingency::conclusion);
    if (conclusion.low == transactions) {
        return "all " + with_commas(transactions);
    }
    const MeasureBounds share = bounds_of(Measure::prevalence, rule, transactions);
    return count_text(conclusion) + " of all " + with_commas(transactions) + " (" +
           range_text(percent_text(share.low), percent_text(share.high)) + ")";
}

/// How much more often the conclusion holds where the premise does.
std::string comparison(const MeasureBounds& lift) {
    constexpr double too_little_to_say = 0.005;
    if (std::isnan(lift.low)) {
        return "";
    }
    const bool is_close =
        std::abs(lift.low - 1) < too_little_to_say && std::abs(lift.high - 1) < too_little_to_say;
    if (!is_close) {
        return ": " + range_text(measure_text(lift.low), measure_text(lift.high)) +
               " times as often as in general";
    }
    if (lift.low == 1 && lift.high == 1) {
        return ": just as often as in general";
    }
    if (lift.low >= 1) {
        return ": hardly more often than in general";
    }
    return lift.high <= 1 ? ": hardly less often than in general" : ": about as often as in general";
}

/// "3 more wordings".
std::string more(Count number, const std::string& noun) {
    return with_commas(number) + " more " + noun + (number == 1 ? "" : "s");
}

/// What else says the same.
std::string others(const FoundRule& rule) {
    std::string text;
    if (rule.wordings > 1) {
        text = "the same fact in " + more(rule.wordings - 1, "wording");
    }
    if (rule.readings > 1) {
        text += text.empty() ? "" : "; ";
        text += "the same association in " + more(rule.readings - 1, "reading");
    }
    return text;
}

class WordsWriter final : public RuleWriter {
public:
    WordsWriter(const RuleBook& book, std::size_t width, TextSink sink)
        : book_(book),
          further_(further_measures(book)),
          width_(width),
          sides_([this](Side side, std::string& text) {
              text += side_text(side, book_, {.is_printable = true, .most_items = most_items_named});
          }),
          sink_(std::move(sink)) {}

    void write(const FoundRule& rule) override {
        const std::string number = std::to_string(++id_) + ". ";
        const std::string indent(number.size(), ' ');
        text_ = id_ == 1 ? "" : "\n";
        append_paragraph(number, indent, sentence(rule), width_, text_);
        append_paragraph(indent, indent, cases(rule) + against(rule), width_, text_);
        append_paragraph(indent, indent, measures(rule), width_, text_);
        append_paragraph(indent, indent, in_holdout(), width_, text_);
        append_paragraph(indent, indent, others(rule), width_, text_);
        sink_(text_);
    }

    void finish() override {}

private:
    std::string sentence(const FoundRule& rule) {
        std::string text = "If " + sides_.of(rule.premise) + ", ";
        text += how_often(bounds_of(Measure::confidence, rule, book_.transactions)) + ": ";
        return text + sides_.of(rule.conclusion);
    }

    /// How often the conclusion holds in general, where that is known.
    std::string against(const FoundRule& rule) const {
        return book_.known.tells(Measure::lift)
                   ? ", against " + in_general(rule, book_.transactions) +
                         comparison(bounds_of(Measure::lift, rule, book_.transactions))
                   : "";
    }

    std::string measures(const FoundRule& rule) const {
        std::string text;
        for (const FurtherMeasure& each : further_) {
            if (!book_.known.tells(each.measure)) {
                continue;
            }
            const auto [low, high] = bounds_of(each.measure, rule, book_.transactions);
            text += (text.empty() ? "" : ", ") + each.name + " " +
                    range_text(measure_text(low), measure_text(high));
        }
        return text;
    }

    /// "in the holdout, 88 of 97 (91 %), holdout_p 12.3", of the rule that is written.
    std::string in_holdout() const {
        const HoldoutCounts* const holdout = book_.holdout_of(id_);
        if (holdout == nullptr) {
            return "";
        }
        const double confidence = Confidence(holdout->counts).value();
        return "in the holdout, " + holdout_text(*holdout) +
               (std::isnan(confidence) ? "" : " (" + percent_text(confidence) + ")") + ", holdout_p " +
               measure_text(holdout->surprise);
    }

    const RuleBook book_;
    const std::vector<FurtherMeasure> further_;
    const std::size_t width_;
    SideTexts sides_;
    TextSink sink_;
    std::string text_;
    std::uint64_t id_ = 0;
};

}  // namespace

std::unique_ptr<RuleWriter> words_writer(const RuleBook& book, std::size_t width, TextSink sink) {
    return std::make_unique<WordsWriter>(book, width, std::move(sink));
}

}  // namespace korv::tools
