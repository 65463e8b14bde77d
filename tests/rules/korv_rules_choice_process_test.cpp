// korv-rules as a process: what it chooses, words, orders, counts and verifies; names of all kinds.

#include <algorithm>
#include <map>
#include <sstream>

#include "rules/korv_rules_run.h"

namespace korv::test {
namespace {

const std::string titanic = TITANIC;
const std::string persons = PERSONS;

using Words = std::vector<std::string>;

/// Cells of the CSV lines, the header left out. Only for names without commas and quotes.
std::vector<Words> rows_of(const std::string& csv) {
    std::vector<Words> rows;
    std::istringstream lines(csv);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream cells(line);
        rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, ',');) {
            rows.back().push_back(cell);
        }
    }
    return rows;
}

/// "R131 1 => 2" for each row.
Words rules_in(const std::string& csv) {
    Words rules;
    for (const Words& row : rows_of(csv)) {
        rules.push_back(row.at(1) + " " + row.at(3) + " => " + row.at(4));
    }
    return rules;
}

/// The options that keep every rule.
const Words every_rule = {"--readings", "all", "--prune", "none", "--min-lift", "0"};

/// The two items: 1 and 2 are each in 4 of 8 transactions, 3 hold both. So four rules have a confidence of
/// 0.75, and the other four of 0.25.
class KorvRulesOfTwoItems : public KorvRules {
protected:
    KorvRulesOfTwoItems() { put("a.dat", two_items); }

    Words found(const Words& options) const {
        const Outcome outcome = rules(Words{"a.dat", "-q", "--to", "csv", "-s", "1"} + options);
        EXPECT_EQ(outcome.err, "");
        return rules_in(outcome.out);
    }

    /// Those of a confidence of 0.75 at least.
    Words strong(const Words& options) const { return found(Words{"-c", "0.75"} + every_rule + options); }
};

TEST_F(KorvRulesOfTwoItems, HaveFourStrongReadings) {
    EXPECT_EQ(strong({}),
              (Words{"R131 1 => 2", "R231 not 1 => not 2", "R132 2 => 1", "R232 not 2 => not 1"}));
    EXPECT_EQ(found(Words{"-c", "0.25"} + every_rule).size(), 8U);
    EXPECT_EQ(found({"-c", "0.75", "--readings", "all", "--prune", "none"}).size(), 4U);
    EXPECT_EQ(found({"-c", "0.75"}), Words{"R131 1 => 2"});
}

TEST_F(KorvRulesOfTwoItems, AreLeftOutByTheTestWhereTheyCouldBeChance) {
    // 17 of 70 ways to choose 4 of 8 transactions have as many in common. Of two items there are 8 rules.
    EXPECT_EQ(strong({"--test", "--max-items", "2"}), Words());
    EXPECT_EQ(strong({"--test", "--max-items", "2", "--alpha", "100%"}), Words());
    // Of five times as many transactions, 0.19 % of the ways have.
    put("many.dat", two_items + two_items + two_items + two_items + two_items);
    const Outcome outcome =
        rules({"many.dat", "-s", "1", "-c", "0.75", "--max-items", "2", "--test", "--to", "csv"});
    EXPECT_EQ(rules_in(outcome.out), Words{"R131 1 => 2"});
}

TEST_F(KorvRulesOfTwoItems, AreConfirmedByOtherTransactions) {
    put("other.dat", "1 2\n1 2\n1 2\n\n\n\n\n\n\n7\n");
    put("against.dat", "1\n1\n1\n2\n2\n2\n");
    const auto confirmed = [this](const std::string& file, const std::string& alpha) {
        return rules(
            {"a.dat", "-q", "--to", "csv", "-s", "1", "-c", "0.75", "--holdout", file, "--alpha", alpha});
    };
    // One of the 120 ways to choose 3 of 10 transactions.
    const Outcome found = confirmed("other.dat", "0.0084");
    EXPECT_EQ(found.ending, exited(0));
    EXPECT_EQ(rules_in(found.out), Words{"R131 1 => 2"});
    EXPECT_TRUE(rows_of(found.out).at(0).at(22).starts_with("2.07918")) << found.out;
    EXPECT_EQ(rows_of(found.out).at(0).at(20), "3");
    EXPECT_EQ(rows_of(found.out).at(0).at(21), "1");
    EXPECT_EQ(confirmed("other.dat", "0.0083").ending, exited(1));
    EXPECT_EQ(confirmed("against.dat", "0.5").ending, exited(1));
}

TEST_F(KorvRulesOfTwoItems, SayWhatConfirmedThem) {
    put("other.dat", "1 2\n1 2\n1 2\n\n\n\n\n\n\n7\n");
    const Outcome outcome = rules({"a.dat", "-s", "1", "-c", "0.75", "--holdout", "other.dat"});
    EXPECT_EQ(outcome.out, rule_in_words.substr(0, rule_in_words.find("   the same")) +
                               "   in the holdout, 3 of 3 (100 %), holdout_p 2.08\n"
                               "   the same association in 3 more readings\n");
    EXPECT_NE(outcome.err.find("\nholdout             other.dat, 10 transactions\n"), std::string::npos)
        << outcome.err;
}

TEST_F(KorvRulesOfTwoItems, RefuseAHoldoutThatIsNone) {
    expect_refused({"a.dat", "--holdout", "a.dat"}, 2,
                   "--holdout: found \"a.dat\", the input itself; expected other transactions than those of "
                   "the rules");
    expect_refused({"a.dat", "--alpha", "0.1"}, 2,
                   "--alpha: goes with --test, --holdout or --exclusions only");
}

TEST_F(KorvRulesOfTwoItems, ReachThresholdsInclusively) {
    EXPECT_EQ(found(Words{"-c", "75%"} + every_rule).size(), 4U);
    EXPECT_EQ(found(Words{"-c", "0.7500001"} + every_rule).size(), 0U);
    EXPECT_EQ(found(Words{"-c", "0.75", "--min-lift", "1.5", "--readings", "all", "--prune", "none"}).size(),
              4U);
    EXPECT_EQ(found({"-c", "0.75", "--min-lift", "150.1%", "--readings", "all"}).size(), 0U);
    const auto with_support = [this](const std::string& support) {
        return rules_in(rules(Words{"a.dat", "-q", "--to", "csv", "-c", "0", "-s", support} + every_rule).out)
            .size();
    };
    EXPECT_EQ(with_support("3"), 4U);
    EXPECT_EQ(with_support("37.5%"), 4U);
    EXPECT_EQ(with_support("4"), 0U);
    EXPECT_EQ(with_support("37.6%"), 0U);
}

TEST_F(KorvRulesOfTwoItems, AreChosenByForms) {
    EXPECT_EQ(strong({"--forms", "R132"}), Words{"R132 2 => 1"});
    EXPECT_EQ(strong({"--forms", "or-or"}), (Words{"R131 1 => 2", "R132 2 => 1"}));
    EXPECT_EQ(strong({"--forms", "2,R131"}),
              (Words{"R131 1 => 2", "R231 not 1 => not 2", "R232 not 2 => not 1"}));
    EXPECT_EQ(found(Words{"-c", "0", "--forms", "or-none,none-or"} + every_rule).size(), 4U);
}

TEST_F(KorvRulesOfTwoItems, AreChosenByKinds) {
    EXPECT_EQ(strong({"--kinds", "approximative"}).size(), 4U);
    EXPECT_EQ(strong({"--kinds", "exact,bounded"}).size(), 0U);
}

TEST_F(KorvRulesOfTwoItems, AreChosenByPatterns) {
    EXPECT_EQ(strong({"--if", "1"}), (Words{"R131 1 => 2", "R231 not 1 => not 2"}));
    EXPECT_EQ(strong({"--then", "#1"}), (Words{"R132 2 => 1", "R232 not 2 => not 1"}));
    EXPECT_EQ(strong({"--then-not", "/1/"}), strong({"--if", "1"}));
    EXPECT_EQ(strong({"--if-not", "#1|/1/"}), strong({"--then", "1"}));
    EXPECT_EQ(strong({"--with", "1", "--with", "2"}).size(), 4U);
    EXPECT_EQ(strong({"--without", "1"}).size(), 0U);
    EXPECT_EQ(strong({"--if", "1", "--if", "2"}).size(), 0U);
    EXPECT_EQ(strong({"--if", "1|2"}).size(), 4U);
}

TEST_F(KorvRulesOfTwoItems, AreChosenByConditions) {
    EXPECT_EQ(strong({"--where", "lift >= 1.5 and support = 3"}).size(), 4U);
    EXPECT_EQ(strong({"--where", "not (lift >= 1.5)"}).size(), 0U);
    EXPECT_EQ(strong({"--where", "premise_count > 4 or transactions = 8"}).size(), 4U);
    EXPECT_EQ(found(Words{"-c", "0", "--where", "confidence < 0.5"} + every_rule).size(), 4U);
}

TEST_F(KorvRulesOfTwoItems, AreOrderedByAMeasureEitherWay) {
    const Words most = found(Words{"-c", "0", "--sort", "lift"} + every_rule);
    const Words least = found(Words{"-c", "0", "--sort", "+lift"} + every_rule);
    ASSERT_EQ(most.size(), 8U);
    EXPECT_EQ(most.front(), "R131 1 => 2");
    EXPECT_EQ(least.front(), "R331 1 => not 2");
    EXPECT_EQ(least.back(), "R232 not 2 => not 1");
}

TEST_F(KorvRulesOfTwoItems, AreLimitedAltogetherAndForEachConclusion) {
    EXPECT_EQ(strong({"--top", "2"}), (Words{"R131 1 => 2", "R231 not 1 => not 2"}));
    EXPECT_EQ(strong({"--top", "0"}).size(), 4U);
    EXPECT_EQ(found(Words{"-c", "0", "--per-conclusion", "1"} + every_rule).size(),
              4U);  // 1, 2, and none of each
}

TEST_F(KorvRulesOfTwoItems, AreLimitedByTheSizeOfTheirSides) {
    EXPECT_EQ(strong({"--max-items", "1"}).size(), 0U);
    EXPECT_EQ(strong({"--max-items", "2", "--max-if", "1", "--max-then", "1"}).size(), 4U);
}

TEST_F(KorvRulesOfTwoItems, HaveFurtherMeasures) {
    const Outcome outcome = rules(Words{"a.dat", "-q", "--to", "csv", "--measures", "jaccard,recall"} + low);
    // 3 of the 4 of the conclusion; 3 of the 5 of one of both.
    EXPECT_EQ(outcome.out, csv_header.substr(0, csv_header.size() - 1) +
                               ",recall,recall_max,jaccard,jaccard_max\n" +
                               csv_rule.substr(csv_header.size(), csv_rule.size() - csv_header.size() - 1) +
                               ",0.75,0.75,0.6,0.6\n");
    const Outcome all = rules(Words{"a.dat", "-q", "--to", "csv", "--measures", "all"} + low);
    EXPECT_EQ(std::ranges::count(all.out.substr(0, all.out.find('\n')), ','), 19 + 2 * 19);
}

TEST_F(KorvRules, NamesTheNearestOfWhatThereIsNot) {
    const Words table = {titanic + "/titanic.csv", "-q"};
    expect_refused(table + Words{"--then", "survived=ye"}, 2,
                   R"(--then: found "survived=ye"; expected an item, such as "survived=yes", "survived=no")");
    expect_refused(
        table + Words{"--if", "sexe=male"}, 2,
        "--if: found \"sexe=male\"; expected a column of the input, such as \"sex\", \"age\", \"class\", "
        "\"survived\"");
    const Outcome measure = rules(table + Words{"--where", "levrage > 0"});
    EXPECT_EQ(measure.ending, exited(2));
    EXPECT_NE(measure.err.find("\"leverage\""), std::string::npos) << measure.err;
    EXPECT_NE(rules(table + Words{"--sort", "suport"}).err.find("\"support\""), std::string::npos);
    EXPECT_NE(rules(table + Words{"--ignore", "clas"}).err.find("\"class\""), std::string::npos);
}

TEST_F(KorvRules, WordsSidesInFullWhenAskedTo) {
    // 1 and 3 are in the same transactions.
    put("a.dat", "1 2 3\n1 2 3\n1 2 3\n1 3\n2\n\n\n\n");
    const Words arguments = {"a.dat", "-q", "--to", "csv", "-s", "1", "-c", "0.75", "--sort", "confidence"};
    const std::string full = rules(arguments + Words{"--wording", "full"}).out;
    EXPECT_NE(full.find(",1 or 3,2,3,3,0.75,"), std::string::npos) << full;
    const std::string shortest = rules(arguments).out;
    EXPECT_EQ(shortest.find("1 or 3"), std::string::npos) << shortest;
    EXPECT_NE(shortest.find(",1,2,3,3,0.75,"), std::string::npos) << shortest;
}

TEST_F(KorvRules, LeavesOutMoreAndMore) {
    const auto number = [this](const std::string& prune) {
        return rules_in(rules({titanic + "/titanic.csv", "-q", "--to", "csv", "--prune", prune}).out).size();
    };
    const std::size_t none = number("none");
    const std::size_t same = number("same");
    const std::size_t full = number("full");
    const std::size_t productive = number("productive");
    EXPECT_GT(none, same);
    EXPECT_GE(same, full);
    EXPECT_GT(full, productive);
    EXPECT_GT(productive, 10U);
    EXPECT_EQ(rules_in(rules({titanic + "/titanic.csv", "-q", "--to", "csv"}).out).size(), productive);
}

TEST_F(KorvRules, SaysTheSameTwice) {
    const Words arguments = {persons + "/persons.csv", "-s", "10%", "--to", "csv", "-q"};
    const std::string once = rules(arguments).out;
    EXPECT_GT(once.size(), 10'000U);
    EXPECT_EQ(rules(arguments).out, once);
}

/// The numbers of a report by the first word of their lines: the last number of each.
std::map<std::string, std::string> numbers_in(const std::string& report) {
    std::map<std::string, std::string> numbers;
    std::istringstream lines(report);
    for (std::string line; std::getline(lines, line);) {
        std::string number = line.substr(std::min(line.rfind(' ') + 1, line.size()));
        std::erase(number, ',');
        numbers[line.substr(0, line.find(' '))] = number;
    }
    return numbers;
}

TEST_F(KorvRules, CountsTheBytesThatItWouldWrite) {
    const Words arguments = {persons + "/persons.csv", "-s", "15%", "-c", "0.6", "-q"};
    const Outcome counted = rules(arguments + Words{"--count", "-o", "rules.csv"});
    EXPECT_EQ(counted.ending, exited(0));
    EXPECT_TRUE(files().empty());
    const auto numbers = numbers_in(counted.out);
    for (const std::string format : {"words", "table", "csv", "tsv", "jsonl"}) {
        ASSERT_EQ(rules(arguments + Words{"--to", format, "-o", format}).ending, exited(0));
        EXPECT_EQ(numbers.at(format), std::to_string(files().at(format).size())) << format;
    }
    EXPECT_NE(counted.out.find("\nR131 "), std::string::npos) << counted.out;
}

TEST_F(KorvRules, CountsTheBytesThatKorvWouldWrite) {
    const Outcome counted =
        rules({titanic + "/titanic.classes", "-n", "2201", "-s", "100", "-c", "0.6", "-q", "--count"});
    const auto numbers = numbers_in(counted.out);
    ASSERT_EQ(
        run({KORV_PROGRAM, {"t", titanic + "/titanic.classes", "100", "0.6", "2201"}, directory_.path()})
            .ending,
        exited(0));
    ASSERT_EQ(files().size(), 6U);
    for (const auto& [name, bytes] : files()) {
        const std::string file = name.substr(0, name.find("_t_"));
        EXPECT_EQ(numbers.at(file), std::to_string(bytes.size())) << name;
    }
}

TEST_F(KorvRules, VerifiesWhatItWrites) {
    const Words all =
        every_rule + Words{"-s", "1", "-c", "0", "--max-items", "0", "--to", "csv", "-q", "--verify"};
    const auto expect_verified = [this, &all](const Words& arguments) {
        const Outcome outcome = rules(arguments + all);
        EXPECT_EQ(outcome.ending, exited(0)) << testing::PrintToString(arguments);
        EXPECT_EQ(outcome.err, "");
    };
    expect_verified({titanic + "/titanic.csv"});
    expect_verified({titanic + "/titanic.csv", "--wording", "full"});
    expect_verified({titanic + "/titanic.classes", "--database", titanic + "/titanic.dat"});
    EXPECT_EQ(rules({persons + "/persons.csv", "-s", "10%", "--verify", "-q", "--to", "csv"}).ending,
              exited(0));
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        put("a.dat", random_database(seed, 3 + static_cast<int>(seed % 4), 20 + static_cast<int>(seed)));
        expect_verified({"a.dat"});
        expect_verified({"a.dat", "--wording", "full"});
        // Every second class is missing.
        const Outcome thinned = shell(
            "\"$1\" a.dat -s 1 -q | sed -n 'p;n' > a.classes; exec \"$0\" a.classes --database a.dat "
            "--verify -q "
            "-s 1 -c 0 --min-lift 0 --readings all --prune none --max-items 0 --to csv");
        EXPECT_TRUE(thinned.ending == exited(0) || thinned.ending == exited(1)) << thinned.err;
        EXPECT_EQ(thinned.err, "");
    }
}

/// A table of two columns, of which the first has a name that is difficult; that is in the 4 first of 8
/// lines.
std::string csv_with(const std::string& quoted_name) {
    std::string text = "name,kind\n";
    for (const char* const kind : {"a", "a", "a", "b"}) {
        text += quoted_name + ',' + kind + '\n';
    }
    return text + "plain,a\nplain,b\nplain,b\nplain,b\n";
}

TEST_F(KorvRules, WritesNamesOfAllKinds) {
    struct Case {
        std::string in_csv;
        std::string out_csv;
        std::string in_json;
    };
    for (const Case& each : std::vector<Case>{
             {R"("O""Hara, ""x""")", R"("name=O""Hara, ""x""")", R"(name=O\"Hara, \"x\")"},
             {"שלום עולם", "name=שלום עולם", "name=שלום עולם"},
             {"🎉👩‍👩‍👧", "name=🎉👩‍👩‍👧", "name=🎉👩‍👩‍👧"},
             {"=1+1", "name==1+1", "name==1+1"},
             {"a\\b", "name=a\\b", R"(name=a\\b)"},
         }) {
        put("a.csv", csv_with(each.in_csv));
        const Words arguments = {"a.csv", "-q", "-s", "3", "-c", "0.75", "--then", "kind=a"};
        const Outcome csv = rules(arguments + Words{"--to", "csv"});
        EXPECT_EQ(csv.err, "");
        EXPECT_NE(csv.out.find("approximative," + each.out_csv + ",kind=a,3,3,"), std::string::npos)
            << csv.out;
        const Outcome json = rules(arguments + Words{"--to", "jsonl"});
        EXPECT_NE(json.out.find(R"({"any":[")" + each.in_json + R"("],)"), std::string::npos) << json.out;
        EXPECT_EQ(rules(arguments + Words{"--to", "table"}).ending, exited(0));
        EXPECT_EQ(rules(arguments + Words{"--to", "words"}).ending, exited(0));
    }
}

TEST_F(KorvRules, TakesNamesWithWhatPatternsMeanLiterallyWhereTheyAreItems) {
    put("a.csv", csv_with("a|b*"));
    EXPECT_EQ(rules({"a.csv", "-q", "-s", "3", "-c", "0.75", "--if", "name=a|b*", "--to", "csv"}).ending,
              exited(0));
    put("b.csv", csv_with("/x/"));
    EXPECT_EQ(rules({"b.csv", "-q", "-s", "3", "-c", "0.75", "--if", "name=/x/", "--to", "csv"}).ending,
              exited(0));
}

TEST_F(KorvRules, RefusesNamesThatATerminalWouldObey) {
    put("a.csv", csv_with("a\x1B[2Jb"));
    const Outcome outcome = rules({"a.csv", "-q"});
    EXPECT_EQ(outcome.ending, exited(3));
    EXPECT_EQ(outcome.err.find('\x1B'), std::string::npos);
    put("a.classes", two_items_classes);
    put("a.names", "1\ta\x1B[2J\n");
    const Outcome names = rules({"a.classes", "-n", "8"});
    EXPECT_EQ(names.ending, exited(3));
    EXPECT_TRUE(names.err.starts_with("korv-rules: a.names:1:")) << names.err;
    EXPECT_EQ(names.err.find('\x1B'), std::string::npos);
    EXPECT_EQ(rules({"\x1B[2J"}).err, "korv-rules: \\x1B[2J: cannot be read: No such file or directory\n");
}

TEST_F(KorvRules, ColoursOnlyWhatIsToBeColoured) {
    put("a.dat", two_items);
    const Words arguments = Words{"a.dat", "-q", "--to", "table"} + low;
    EXPECT_EQ(rules(arguments).out.find('\x1B'), std::string::npos);
    EXPECT_NE(rules(arguments + Words{"--color", "always"}).out.find('\x1B'), std::string::npos);
}

}  // namespace
}  // namespace korv::test
