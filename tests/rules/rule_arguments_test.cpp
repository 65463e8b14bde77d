#include "rules/rule_arguments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "common/error.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// What a command line asks for.
RuleArguments parsed(std::vector<std::string> words) {
    words.insert(words.begin(), "korv-rules");
    std::vector<char*> pointers;
    std::ranges::transform(words, std::back_inserter(pointers),
                           [](std::string& word) { return word.data(); });
    pointers.push_back(nullptr);
    return parse_rule_arguments(static_cast<int>(words.size()), pointers.data());
}

std::string complaint(const std::vector<std::string>& words) {
    return complaint_of([&words] { parsed(words); });
}

using Forms = std::vector<Form>;

TEST(ParseForms, TakesLabels) {
    EXPECT_EQ(parse_forms("R121"), (Forms{Form::R121}));
    EXPECT_EQ(parse_forms("R432,R111"), (Forms{Form::R111, Form::R432}));
}

TEST(ParseForms, TakesGroupsByNumberAndInWords) {
    const Forms plain = {Form::R111, Form::R112, Form::R121, Form::R122, Form::R131, Form::R132};
    const Forms negated = {Form::R211, Form::R212, Form::R221, Form::R222, Form::R231, Form::R232};
    const Forms conclusion = {Form::R311, Form::R312, Form::R321, Form::R322, Form::R331, Form::R332};
    const Forms premise = {Form::R411, Form::R412, Form::R421, Form::R422, Form::R431, Form::R432};
    EXPECT_EQ(parse_forms("1"), plain);
    EXPECT_EQ(parse_forms("or-or"), plain);
    EXPECT_EQ(parse_forms("2"), negated);
    EXPECT_EQ(parse_forms("none-none"), negated);
    EXPECT_EQ(parse_forms("3"), conclusion);
    EXPECT_EQ(parse_forms("or-none"), conclusion);
    EXPECT_EQ(parse_forms("4"), premise);
    EXPECT_EQ(parse_forms("none-or"), premise);
}

TEST(ParseForms, TakesNoFormTwice) {
    EXPECT_EQ(parse_forms("R111,1, R111").size(), 6U);
}

TEST(ParseForms, RefusesWhatIsNoForm) {
    const std::string expected =
        "; expected or-or, none-none, or-none, none-or, a group from 1 to 4, or a label from R111 to R432";
    for (const std::string word : {"5", "0", "R123", "r111", "or", "R11"}) {
        EXPECT_EQ(complaint_of([&] { parse_forms("1," + word); }),
                  "--forms: found " + shown(word) + expected);
    }
    EXPECT_EQ(complaint_of([] { parse_forms(","); }),
              "--forms: found no word; expected words with commas between them");
}

TEST(ParseKinds, TakesTheThree) {
    EXPECT_EQ(parse_kinds("exact"), (std::vector{Certainty::exact}));
    EXPECT_EQ(parse_kinds("bounded, approximative"),
              (std::vector{Certainty::bounded, Certainty::approximative}));
}

TEST(ParseKinds, RefusesWhatIsNoKind) {
    EXPECT_EQ(complaint_of([] { parse_kinds("exact,approx"); }),
              "--kinds: found \"approx\"; expected exact, approximative or bounded");
}

TEST(ParseMeasures, TakesThemInTheOrderOfTheCatalogueEachOnce) {
    EXPECT_EQ(parse_measures("phi,lift,recall,phi"),
              (std::vector{Measure::recall, Measure::lift, Measure::phi}));
}

TEST(ParseMeasures, TakesAll) {
    const std::vector<Measure> all = parse_measures("all");
    EXPECT_EQ(all.size(), 23U);
    EXPECT_EQ(all.front(), Measure::support);
    EXPECT_EQ(all.back(), Measure::p);
}

TEST(ParseMeasures, NamesTheNearestOfOneThatThereIsNot) {
    EXPECT_TRUE(complaint_of([] {
                    parse_measures("convicton");
                }).starts_with("--measures: found \"convicton\"; expected a measure such as \"conviction\""));
}

TEST(FormatOfPath, IsThatOfItsExtension) {
    EXPECT_EQ(format_of_path("a.csv"), RuleFormat::csv);
    EXPECT_EQ(format_of_path("a.csv/b.tsv"), RuleFormat::tsv);
    EXPECT_EQ(format_of_path("a.b.jsonl"), RuleFormat::jsonl);
    EXPECT_EQ(format_of_path("a.txt"), RuleFormat::words);
    EXPECT_EQ(format_of_path("a.db"), RuleFormat::sqlite);
    EXPECT_EQ(format_of_path("a.sqlite"), RuleFormat::sqlite);
    EXPECT_EQ(format_of_path("a.sqlite3"), RuleFormat::sqlite);
    EXPECT_EQ(format_of_path("a.dot"), RuleFormat::dot);
    EXPECT_EQ(format_of_path("a.gv"), RuleFormat::dot);
    EXPECT_EQ(format_of_path("a.html"), RuleFormat::html);
    EXPECT_EQ(format_of_path("a.htm"), RuleFormat::html);
}

TEST(FormatOfPath, IsSaidToBeMissing) {
    for (const std::string path : {"a", "a.json", "csv", ".csv", "a.csv/b"}) {
        EXPECT_EQ(complaint_of([&] { format_of_path(path); }),
                  "-o: found \"" + path +
                      "\"; expected a name that ends with .txt, .csv, .tsv, .jsonl, .db, .sqlite, "
                      ".sqlite3, .dot, .gv, .html or .htm, or --to FORMAT");
    }
}

TEST(RuleArguments, HasDefaults) {
    const RuleArguments arguments = parsed({"a.dat"});
    EXPECT_EQ(arguments.input.paths, std::vector<std::string>{"a.dat"});
    EXPECT_FALSE(arguments.input.is_class_file);
    EXPECT_FALSE(arguments.input.has_bins);
    EXPECT_FALSE(arguments.input.transactions);
    EXPECT_EQ(arguments.input.max_items, 6U);
    ASSERT_EQ(arguments.input.mining.min_supports.size(), 1U);
    EXPECT_EQ(arguments.input.mining.min_supports[0].value, 1);
    EXPECT_TRUE(arguments.input.mining.min_supports[0].is_percentage);
    EXPECT_EQ(arguments.rules.min_support.value, 1);
    EXPECT_TRUE(arguments.rules.min_support.is_percentage);
    EXPECT_EQ(arguments.rules.min_confidence, 0.8);
    EXPECT_TRUE(arguments.rules.patterns.empty());
    EXPECT_TRUE(arguments.rules.forms.empty());
    EXPECT_TRUE(arguments.rules.kinds.empty());
    EXPECT_EQ(arguments.rules.max_items, 6U);
    EXPECT_EQ(arguments.rules.max_premise_items, 0U);
    EXPECT_EQ(arguments.rules.max_conclusion_items, 0U);
    EXPECT_FALSE(arguments.rules.min_lift);
    EXPECT_EQ(arguments.rules.where, "");
    EXPECT_EQ(arguments.rules.wording, Wording::shortest);
    EXPECT_EQ(arguments.rules.readings, Readings::one);
    EXPECT_FALSE(arguments.rules.prune);
    EXPECT_EQ(arguments.rules.sort, Measure::leverage);
    EXPECT_FALSE(arguments.rules.is_ascending);
    EXPECT_EQ(arguments.rules.per_conclusion, 0U);
    EXPECT_EQ(arguments.output, "-");
    EXPECT_TRUE(arguments.measures.empty());
    EXPECT_FALSE(arguments.is_count || arguments.verifies || arguments.quiet);
}

TEST(RuleArguments, TakesThresholds) {
    const RuleArguments per_cent = parsed({"a.dat", "-s", "2.5%", "-c", "75%", "--min-lift", "1.25"});
    EXPECT_EQ(per_cent.rules.min_support.value, 2.5);
    EXPECT_TRUE(per_cent.rules.min_support.is_percentage);
    EXPECT_EQ(per_cent.rules.min_confidence, 0.75);
    EXPECT_EQ(per_cent.rules.min_lift, 1.25);
    const RuleArguments counts = parsed({"a.dat", "-s", "30", "-c", "0", "--min-lift", "0"});
    EXPECT_EQ(counts.rules.min_support.value, 30);
    EXPECT_FALSE(counts.rules.min_support.is_percentage);
    EXPECT_EQ(counts.input.mining.min_supports[0].value, 30);
    EXPECT_EQ(counts.rules.min_confidence, 0);
    EXPECT_EQ(counts.rules.min_lift, 0);
}

TEST(RuleArguments, TakesOneMinimumSupportAlone) {
    EXPECT_EQ(complaint({"a.dat", "-s", "1%,2%"}), "--min-support: found 2 of them; expected one");
}

TEST(RuleArguments, TakesPatternsWithTheirPlaces) {
    const RuleArguments arguments =
        parsed({"a.dat", "--then", "x", "--if-not", "y*", "--then", "z|w", "--with", "#1", "--without", "/a/",
                "--if", "b", "--then-not", "c"});
    std::vector<std::string> told;
    for (const PatternWord& pattern : arguments.rules.patterns) {
        const char place = pattern.place == PatternPlace::either    ? 'e'
                           : pattern.place == PatternPlace::premise ? 'p'
                                                                    : 'c';
        told.push_back(pattern.option + " " + pattern.text + " " + place + (pattern.is_wanted ? "+" : "-"));
    }
    std::ranges::sort(told);
    EXPECT_EQ(told, (std::vector<std::string>{"--if b p+", "--if-not y* p-", "--then x c+", "--then z|w c+",
                                              "--then-not c c-", "--with #1 e+", "--without /a/ e-"}));
}

TEST(RuleArguments, DoesNotTakeTheInputForASecondPattern) {
    EXPECT_EQ(parsed({"--then", "x", "a.dat"}).input.paths, std::vector<std::string>{"a.dat"});
}

TEST(RuleArguments, TakesAnOrderByAMeasure) {
    EXPECT_EQ(parsed({"a.dat", "--sort", "lift"}).rules.sort, Measure::lift);
    EXPECT_FALSE(parsed({"a.dat", "--sort", "lift"}).rules.is_ascending);
    EXPECT_EQ(parsed({"a.dat", "--sort", "+recall"}).rules.sort, Measure::recall);
    EXPECT_TRUE(parsed({"a.dat", "--sort", "+recall"}).rules.is_ascending);
}

TEST(RuleArguments, TakesTheOtherChoices) {
    const RuleRequest rules =
        parsed({"a.dat", "--wording", "full", "--readings", "all", "--prune", "same", "--per-conclusion", "3",
                "--top", "7", "--max-items", "5", "--max-if", "4", "--max-then", "2", "--where", "lift > 2"})
            .rules;
    EXPECT_EQ(rules.wording, Wording::full);
    EXPECT_EQ(rules.readings, Readings::all);
    EXPECT_EQ(rules.prune, Prune::same);
    EXPECT_EQ(rules.per_conclusion, 3U);
    EXPECT_EQ(rules.top, 7U);
    EXPECT_EQ(rules.max_items, 5U);
    EXPECT_EQ(rules.max_premise_items, 4U);
    EXPECT_EQ(rules.max_conclusion_items, 2U);
    EXPECT_EQ(rules.where, "lift > 2");
}

TEST(RuleArguments, HasTheFormatThatIsGivenOrElseThatOfTheExtension) {
    EXPECT_EQ(parsed({"a.dat", "-o", "b.csv"}).format, RuleFormat::csv);
    EXPECT_EQ(parsed({"a.dat", "-o", "b.csv", "--to", "table"}).format, RuleFormat::table);
    EXPECT_EQ(parsed({"a.dat", "-o", "b", "--to", "tsv"}).format, RuleFormat::tsv);
}

TEST(RuleArguments, DrawsTheLatticeUnlessToldOtherwise) {
    EXPECT_EQ(parsed({"a.dat", "-o", "b.dot"}).graph, GraphKind::lattice);
    EXPECT_EQ(parsed({"a.dat", "--to", "dot", "--graph", "rules"}).graph, GraphKind::rules);
    EXPECT_EQ(complaint_of([] {
                  parsed({"a.dat", "--graph", "rules"});
              }),
              "--graph: found another format; expected --to dot, or -o with the extension .dot or .gv");
}

TEST(RuleArguments, LimitTheRulesOfAPage) {
    EXPECT_EQ(parsed({"a.dat", "-o", "b.html"}).rules.page_limit, 200'000U);
    EXPECT_EQ(parsed({"a.dat", "-o", "b.htm", "--page-limit", "1000000"}).rules.page_limit, 1'000'000U);
    EXPECT_EQ(parsed({"a.dat", "-o", "b.html", "--page-limit", "5"}).rules.most_told(), 5U);
    EXPECT_EQ(parsed({"a.dat", "-o", "b.html", "--page-limit", "5", "--top", "3"}).rules.most_told(), 3U);
    EXPECT_EQ(parsed({"a.dat", "-o", "b.csv"}).rules.page_limit, 0U);
    for (const char* const wrong : {"0", "1000001", "x", ""}) {
        EXPECT_EXIT(parsed({"a.dat", "-o", "b.html", "--page-limit", wrong}), testing::ExitedWithCode(2),
                    "expected a whole number from 1 to 1000000");
    }
    EXPECT_EQ(
        complaint_of([] {
            parsed({"a.dat", "-o", "b.csv", "--page-limit", "5"});
        }),
        "--page-limit: found another format; expected --to html, or -o with the extension .html or .htm");
}

TEST(RuleArguments, RefusesAPageOfExclusionsAlone) {
    EXPECT_EQ(
        complaint_of([] {
            parsed({"a.dat", "-o", "b.html", "--exclusions"});
        }),
        "--exclusions: found the format of a database, a graph or a page, which shows them beside rules; "
        "expected words, table, csv, tsv or jsonl");
}

TEST(RuleArguments, HasTheOptionsThatDecideWithoutDirectories) {
    EXPECT_EQ(parsed({"a.dat"}).decisive_options, "");
    EXPECT_EQ(parsed({"x/a.dat", "-q", "-o", "y/b.csv", "--names", "z/c names", "--then", "a*", "--then", "b",
                      "-c", "0.5", "--holdout", "z/d.dat", "--to", "tsv", "-j", "2", "--only-true"})
                  .decisive_options,
              "--names 'c names' --min-confidence 0.5 --then 'a*' --then b --holdout d.dat --only-true");
}

TEST(RuleArguments, HasNoOutputFileWhereItCounts) {
    const RuleArguments arguments = parsed({"a.dat", "-o", "b.csv", "--count"});
    EXPECT_TRUE(arguments.is_count);
    EXPECT_EQ(arguments.output, "-");
}

TEST(RuleArguments, HasColourWhereItIsAlwaysWanted) {
    EXPECT_TRUE(parsed({"a.dat", "--to", "table", "--color", "always"}).style.has_color);
    EXPECT_FALSE(parsed({"a.dat", "--color", "never"}).style.has_color);
}

TEST(RuleArguments, RefusesColourWithoutATable) {
    EXPECT_EQ(complaint_of([] {
                  parsed({"a.dat", "--to", "words", "--color", "always"});
              }),
              "--color: found always, but only tables have colours; expected --to table, too");
}

TEST(RuleArguments, RefusesAFormatWhereItCounts) {
    EXPECT_EXIT(parsed({"a.dat", "--count", "--to", "csv"}), testing::ExitedWithCode(2), "--to");
}

TEST(RuleArguments, CutsColumnsUnlessAllAreSpokenOf) {
    EXPECT_FALSE(parsed({"a.csv", "--bins", "age=3"}).input.has_bins);
    EXPECT_FALSE(parsed({"a.csv", "--bins", "age=18,65", "--bins", "size=2"}).input.has_bins);
    EXPECT_TRUE(parsed({"a.csv", "--bins", "age=3", "--bins", "5"}).input.has_bins);
}

TEST(RuleArguments, TakesTheKindOfTheInput) {
    EXPECT_EQ(parsed({"a.dat", "--format", "classes", "-n", "12"}).input.is_class_file, true);
    EXPECT_EQ(parsed({"a.dat", "--format", "classes", "-n", "12"}).input.transactions, Count{12});
    EXPECT_EQ(parsed({"a.dat", "--format", "basket"}).input.is_class_file, false);
    EXPECT_EQ(parsed({"a.dat", "--format", "basket"}).input.reading.format, Format::basket);
}

TEST(RuleArguments, KnowsThatBinsWereGivenEvenIfNone) {
    EXPECT_TRUE(parsed({"a.csv", "--bins", "none"}).input.has_bins);
    EXPECT_TRUE(parsed({"a.csv", "--bins", "none"}).input.reading.table.bins.empty());
    EXPECT_TRUE(parsed({"a.csv", "--bins", "3"}).input.has_bins);
}

/// The command line ends the program, which says why.
void expect_refused(const std::vector<std::string>& words, const std::string& why) {
    EXPECT_EXIT(parsed(words), testing::ExitedWithCode(2), why) << testing::PrintToString(words);
}

TEST(RuleArguments, EndTheProgramWhereTheyAreWrong) {
    expect_refused({}, "korv-rules: INPUT is required; see korv-rules --help\n");
    expect_refused({"a", "-c", "1.5"}, "expected a number from 0 to 1, or a percentage");
    expect_refused({"a", "-c", "-0.1"}, "expected a number from 0 to 1");
    expect_refused({"a", "-c", "nan"}, "expected a number from 0 to 1");
    expect_refused({"a", "-c", "101%"}, "expected a number from 0 to 1");
    expect_refused({"a", "-c", "%"}, "expected a number from 0 to 1");
    expect_refused({"a", "-n", "0"}, "expected a whole number from 1 to ");
    expect_refused({"a", "-n", "1e3"}, "expected a whole number from 1 to ");
    expect_refused({"a", "-s", "many"}, "expected a number of transactions, or a percentage");
    expect_refused({"a", "--sort", "lif"}, "expected a measure such as \"lift\"");
    expect_refused({"a", "--sort", "+lif"}, R"(found "lif"; expected a measure such as "lift")");
    expect_refused({"a", "--top", "-1"}, "expected a whole number; 0 for any");
    expect_refused({"a", "--max-items", "4294967296"}, "expected a whole number; 0 for any");
    expect_refused({"a", "--to", "xml"}, "--to");
    expect_refused({"a", "--with", ""}, "expected a pattern of items");
    expect_refused({"a", "--prune", "some"}, "--prune");
    expect_refused({"a", "--min-lift", "inf"}, "expected a number from 0 on");
    expect_refused({"a", "-n", "5", "--database", "b"}, "excludes");
    expect_refused({"a", "--unknown"}, "--unknown");
}

TEST(ParseRuleArguments, TakesExclusions) {
    EXPECT_FALSE(parsed({"a.csv"}).exclusions);
    const RuleArguments usual = parsed({"a.csv", "--exclusions"});
    ASSERT_TRUE(usual.exclusions);
    EXPECT_EQ(usual.exclusions->alpha, 0.05);
    EXPECT_EQ(usual.exclusions->max_items, std::nullopt);
    EXPECT_TRUE(usual.input.needs_transactions);
    const RuleArguments pairs = parsed({"a.csv", "--exclusions", "--alpha", "1%", "--max-items", "2"});
    EXPECT_EQ(pairs.exclusions->alpha, 0.01);
    EXPECT_EQ(pairs.exclusions->max_items, 2U);
    EXPECT_EQ(parsed({"a.csv", "--exclusions", "--max-items", "0"}).exclusions->max_items, 3U);
    EXPECT_EQ(parsed({"a.csv", "--exclusions", "--max-items", "3"}).exclusions->max_items, 3U);
}

TEST(ParseRuleArguments, TakesTheErrorRateOfWhatAsksForOne) {
    EXPECT_EQ(parsed({"a.csv", "--test"}).rules.alpha, 0.05);
    EXPECT_EQ(parsed({"a.csv", "--test", "--alpha", "1%"}).rules.alpha, 0.01);
    EXPECT_EQ(parsed({"a.csv", "--holdout", "b.csv", "--alpha", "1"}).rules.alpha, 1);
    EXPECT_EQ(complaint({"a.csv", "--alpha", "0.1"}),
              "--alpha: goes with --test, --holdout or --exclusions only");
}

TEST(ParseRuleArguments, RefusesOptionsThatSayNothingOfExclusions) {
    for (const std::vector<std::string>& option :
         std::vector<std::vector<std::string>>{{"-n", "5"},
                                               {"--if", "a"},
                                               {"--then-not", "a"},
                                               {"--forms", "1"},
                                               {"--max-then", "1"},
                                               {"--min-lift", "1"},
                                               {"--where", "p>1"},
                                               {"--test"},
                                               {"--holdout", "b.csv"},
                                               {"--wording", "full"},
                                               {"--readings", "all"},
                                               {"--prune", "none"},
                                               {"--sort", "p"},
                                               {"--measures", "p"},
                                               {"--count"},
                                               {"--per-conclusion", "1"},
                                               {"--verify"},
                                               {"--min-joint", "1"},
                                               {"--max-seconds", "1"}}) {
        std::vector<std::string> words = {"a.csv", "--exclusions"};
        words.insert(words.end(), option.begin(), option.end());
        const std::string name = option.front() == "-n" ? "--database-size" : option.front();
        EXPECT_EQ(complaint(words), name + ": does not go with --exclusions");
    }
    EXPECT_EQ(complaint({"a.csv", "--exclusions", "--max-items", "4"}),
              "--max-items: found 4; with --exclusions expected 2 for pairs, or 3 for pairs and triples");
}

}  // namespace
}  // namespace korv::tools
