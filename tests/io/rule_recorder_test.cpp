#include "io/rule_recorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "support/files.h"

namespace korv {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

const Itemset one_two = {1, 2};
const Itemset three = {3};

/// Two rule files and the counts of what is written to them; the rules are those of {1 2} and {3}.
class RuleRecorderTest : public ::testing::Test {
protected:
    RuleRecorder recorder(double minconf) { return {exact_out_, approx_out_, minconf, counts}; }

    std::string exact_file() { return flushed(exact_out_, exact_name_); }
    std::string approx_file() { return flushed(approx_out_, approx_name_); }

    /// Whether no rule left any trace.
    bool nothing_written() {
        return exact_file().empty() && approx_file().empty() && counts.counters == RuleCounts{}.counters &&
               counts.exact_total + counts.appro_total + counts.apped_total == 0;
    }

    /// Whether one rule was counted, and that under `form` and `kind`, in cell and total.
    bool counted_once(Form form, Kind kind) const {
        RuleCounts expected;
        expected.counters[counter_row(form)][static_cast<std::size_t>(kind)] = 1;
        return counts.counters == expected.counters && counts.exact_total == (kind == Kind::exact ? 1 : 0) &&
               counts.appro_total == (kind == Kind::appro ? 1 : 0) &&
               counts.apped_total == (kind == Kind::apped ? 1 : 0);
    }

    const Side premise = Sides(one_two).plain;
    const Side conclusion = Sides(three).negated;
    RuleCounts counts;

private:
    static std::string flushed(Output_Manager& out, const std::string& name) {
        out.flush();
        return test::read_file(name);
    }

    test::TemporaryDirectory directory_;
    const std::string exact_name_ = (directory_.path() / "exact.txt").string();
    const std::string approx_name_ = (directory_.path() / "approx.txt").string();
    Output_Manager exact_out_{exact_name_};
    Output_Manager approx_out_{approx_name_};
};

TEST_F(RuleRecorderTest, ExactRuleGoesToTheExactFileWithoutConfidence) {
    recorder(0.0).exact(Form::R211, premise, conclusion, 20);
    EXPECT_EQ(exact_file(), "1 v 2-->not(3)\nsupport:20\n\n");
    EXPECT_EQ(approx_file(), "");
    EXPECT_TRUE(counted_once(Form::R211, Kind::exact));
}

TEST_F(RuleRecorderTest, ExactRuleIsWrittenWhateverTheMinimumConfidence) {
    recorder(1.5).exact(Form::R211, premise, conclusion, 20);
    EXPECT_EQ(exact_file(), "1 v 2-->not(3)\nsupport:20\n\n");
}

TEST_F(RuleRecorderTest, ApproximativeRuleGoesToTheApproximateFileWithItsConfidence) {
    EXPECT_TRUE(recorder(0.0).approximative(Form::R311, premise, conclusion, 20, 0.25));
    EXPECT_EQ(exact_file(), "");
    EXPECT_EQ(approx_file(), "1 v 2-->not(3)\nsupport:20\n\nconfiance:0.25\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R311, Kind::appro));
}

TEST_F(RuleRecorderTest, ApproximativeRuleOfConfidence1StaysApproximative) {
    EXPECT_TRUE(recorder(1.0).approximative(Form::R311, premise, conclusion, 20, 1.0));
    EXPECT_EQ(exact_file(), "");
    EXPECT_EQ(approx_file(), "1 v 2-->not(3)\nsupport:20\n\nconfiance:1\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R311, Kind::appro));
}

TEST_F(RuleRecorderTest, ApproximativeRuleOfTheMinimumConfidenceIsWritten) {
    EXPECT_TRUE(recorder(0.25).approximative(Form::R311, premise, conclusion, 20, 0.25));
}

TEST_F(RuleRecorderTest, ApproximativeRuleBelowTheMinimumConfidenceIsDropped) {
    EXPECT_FALSE(recorder(0.2500001).approximative(Form::R311, premise, conclusion, 20, 0.25));
    EXPECT_TRUE(nothing_written());
}

TEST_F(RuleRecorderTest, NaNIsBelowEveryMinimumConfidence) {
    EXPECT_FALSE(recorder(-1.0).approximative(Form::R311, premise, conclusion, 20, not_a_number));
    EXPECT_FALSE(recorder(-1.0).by_confidence(Form::R111, premise, conclusion, 20, not_a_number));
    recorder(-1.0).approximated(Form::R111, premise, conclusion, {1, 2}, {not_a_number, 1.0});
    recorder(-1.0).approximated(Form::R111, premise, conclusion, 1, {not_a_number, 1.0});
    EXPECT_TRUE(nothing_written());
}

TEST_F(RuleRecorderTest, InfiniteConfidenceIsWritten) {
    EXPECT_TRUE(recorder(2.0).approximative(Form::R311, premise, conclusion, 20, infinity));
    EXPECT_EQ(approx_file(), "1 v 2-->not(3)\nsupport:20\n\nconfiance:inf\n---------------------------\n");
}

TEST_F(RuleRecorderTest, NothingReachesAMinimumConfidenceThatIsNotANumber) {
    RuleRecorder rules = recorder(not_a_number);
    EXPECT_FALSE(rules.approximative(Form::R311, premise, conclusion, 20, 1.0));
    EXPECT_FALSE(rules.by_confidence(Form::R111, premise, conclusion, 20, 1.0));
    EXPECT_TRUE(nothing_written());
}

TEST_F(RuleRecorderTest, RuleOfConfidence1IsExact) {
    EXPECT_TRUE(recorder(1.0).by_confidence(Form::R111, premise, conclusion, 20, 1.0));
    EXPECT_EQ(exact_file(), "1 v 2-->not(3)\nsupport:20\n\n");
    EXPECT_EQ(approx_file(), "");
    EXPECT_TRUE(counted_once(Form::R111, Kind::exact));
}

TEST_F(RuleRecorderTest, RuleOfAnotherConfidenceIsApproximative) {
    EXPECT_TRUE(recorder(0.5).by_confidence(Form::R111, premise, conclusion, 20, 0.5));
    EXPECT_EQ(exact_file(), "");
    EXPECT_EQ(approx_file(), "1 v 2-->not(3)\nsupport:20\n\nconfiance:0.5\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R111, Kind::appro));
}

TEST_F(RuleRecorderTest, RuleOfConfidenceAbove1IsApproximative) {
    EXPECT_TRUE(recorder(0.0).by_confidence(Form::R111, premise, conclusion, 20, 1.25));
    EXPECT_EQ(approx_file(), "1 v 2-->not(3)\nsupport:20\n\nconfiance:1.25\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R111, Kind::appro));
}

TEST_F(RuleRecorderTest, RuleOfConfidence1IsDroppedBelowALargerMinimum) {
    EXPECT_FALSE(recorder(1.5).by_confidence(Form::R111, premise, conclusion, 20, 1.0));
    EXPECT_TRUE(nothing_written());
}

TEST_F(RuleRecorderTest, RuleOfAnotherConfidenceIsDroppedBelowTheMinimum) {
    EXPECT_FALSE(recorder(0.5).by_confidence(Form::R111, premise, conclusion, 20, 0.4999999));
    EXPECT_TRUE(nothing_written());
}

TEST_F(RuleRecorderTest, ExactRuleIsCountedUnderTheFormForExactRules) {
    recorder(0.0).by_confidence({.exact = Form::R332, .approximative = Form::R431}, premise, conclusion, 20,
                                1.0);
    EXPECT_TRUE(counted_once(Form::R332, Kind::exact));
}

TEST_F(RuleRecorderTest, ApproximativeRuleIsCountedUnderTheFormForApproximativeRules) {
    recorder(0.0).by_confidence({.exact = Form::R332, .approximative = Form::R431}, premise, conclusion, 20,
                                0.5);
    EXPECT_TRUE(counted_once(Form::R431, Kind::appro));
}

TEST_F(RuleRecorderTest, ApproximatedRuleHasTwoIntervals) {
    recorder(0.0).approximated(Form::R131, premise, conclusion, {10, 20}, {0.25, 0.5});
    EXPECT_EQ(exact_file(), "");
    EXPECT_EQ(approx_file(),
              "1 v 2-->not(3)\n10< support <20\n0.25< confiance <0.5\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R131, Kind::apped));
}

TEST_F(RuleRecorderTest, ApproximatedRuleOfKnownSupportHasOneInterval) {
    recorder(0.0).approximated(Form::R232, premise, conclusion, 20, {0.25, 0.5});
    EXPECT_EQ(exact_file(), "");
    EXPECT_EQ(approx_file(),
              "1 v 2-->not(3)\nsupport:20\n\n0.25< confiance <0.5\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R232, Kind::apped));
}

TEST_F(RuleRecorderTest, ApproximatedRuleStaysSoWhenTheEndsCoincide) {
    recorder(1.0).approximated(Form::R131, premise, conclusion, {10, 10}, {1.0, 1.0});
    EXPECT_EQ(exact_file(), "");
    EXPECT_EQ(approx_file(),
              "1 v 2-->not(3)\n10< support <10\n1< confiance <1\n---------------------------\n");
    EXPECT_TRUE(counted_once(Form::R131, Kind::apped));
}

TEST_F(RuleRecorderTest, ApproximatedRuleIsTestedOnTheLowerEnd) {
    recorder(0.25).approximated(Form::R131, premise, conclusion, {10, 20}, {0.2499999, 0.5});
    recorder(0.25).approximated(Form::R131, premise, conclusion, 10, {0.2499999, 0.5});
    EXPECT_TRUE(nothing_written());
}

TEST_F(RuleRecorderTest, ApproximatedRuleWhoseLowerEndIsTheMinimumIsWritten) {
    recorder(0.25).approximated(Form::R131, premise, conclusion, {10, 20}, {0.25, 0.1});
    recorder(0.25).approximated(Form::R131, premise, conclusion, 10, {0.25, 0.1});
    EXPECT_EQ(counts.apped_total, 2U);
}

TEST_F(RuleRecorderTest, ApproximatedRuleOfConfidence1GoesToTheExactFile) {
    recorder(0.0).approximated_of_confidence_1(Form::R112, premise, conclusion, {10, 20});
    EXPECT_EQ(exact_file(), "1 v 2-->not(3)\n10< support <20\n");
    EXPECT_EQ(approx_file(), "");
    EXPECT_TRUE(counted_once(Form::R112, Kind::apped));
}

TEST_F(RuleRecorderTest, ApproximatedRuleOfConfidence1IsWrittenWhateverTheMinimumConfidence) {
    recorder(1.5).approximated_of_confidence_1(Form::R112, premise, conclusion, {10, 20});
    EXPECT_EQ(exact_file(), "1 v 2-->not(3)\n10< support <20\n");
}

TEST_F(RuleRecorderTest, RulesAreWrittenAndCountedOneAfterTheOther) {
    RuleRecorder rules = recorder(0.0);
    rules.exact(Form::R112, premise, conclusion, 20);
    rules.by_confidence(Form::R111, conclusion, premise, 19, 1.0);
    rules.exact(Form::R112, premise, premise, 18);
    EXPECT_EQ(exact_file(),
              "1 v 2-->not(3)\nsupport:20\n\n"
              "not(3)-->1 v 2\nsupport:19\n\n"
              "1 v 2-->1 v 2\nsupport:18\n\n");
    EXPECT_EQ(counts.count(Form::R112, Kind::exact), 2U);
    EXPECT_EQ(counts.count(Form::R111, Kind::exact), 1U);
    EXPECT_EQ(counts.exact_total, 3U);
}

TEST(Ratio, IsTheQuotient) {
    EXPECT_EQ(ratio(3, 4), 0.75);
    EXPECT_EQ(ratio(5, 4), 1.25);
    EXPECT_EQ(ratio(0, 4), 0.0);
}

TEST(Ratio, IsOneForEqualNumbersOnly) {
    EXPECT_EQ(ratio(4294967295U, 4294967295U), 1.0);
    EXPECT_LT(ratio(4294967294U, 4294967295U), 1.0);
    EXPECT_GT(ratio(4294967295U, 4294967294U), 1.0);
}

TEST(Ratio, TakesItsNumbersAsUnsigned) {
    EXPECT_EQ(ratio(4294967295U, 1), 4294967295.0);
}

TEST(Ratio, IsInfiniteOverZero) {
    EXPECT_EQ(ratio(1, 0), infinity);
}

TEST(Ratio, IsNotANumberForZeroOverZero) {
    EXPECT_TRUE(std::isnan(ratio(0, 0)));
}

}  // namespace
}  // namespace korv
