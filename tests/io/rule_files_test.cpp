#include "io/rule_files.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/files.h"

namespace korv {
namespace {

using enum Form;
using enum Kind;

const Itemset one_two = {1, 2};
const Itemset three = {3};

/// The four rule files; the rules are those of {1 2} and {3}.
class RuleFilesTest : public ::testing::Test {
protected:
    void begin(PairKind kind) { files.begin({kind, {}, one_two, three, 80, 50, {40, 40}, true}); }

    /// The only file that was written to, by its name, and its text; nothing else may be in any.
    std::string written() {
        files.flush();
        std::string text;
        for (const File* file : {&intra_exact_, &intra_approx_, &inter_exact_, &inter_approx_}) {
            const std::string bytes = test::read_file(file->name);
            text += bytes.empty() ? "" : file->title + ":\n" + bytes;
        }
        return text;
    }

private:
    struct File {
        std::string title;
        std::string name = test::memory_file();
        Output_Manager out{name};
    };

    File intra_exact_{"intra exact"};
    File intra_approx_{"intra approx"};
    File inter_exact_{"inter exact"};
    File inter_approx_{"inter approx"};

protected:
    RuleFiles files{{intra_exact_.out, intra_approx_.out}, {inter_exact_.out, inter_approx_.out}};
};

TEST_F(RuleFilesTest, HaveTheirHeaders) {
    files.write_headers();
    const std::string stars = "\t\t\t******************************************\n";
    EXPECT_EQ(written(),
              "intra exact:\n" + stars + "\t\t\t***   Regles exaxtes intra noeud      ***\n" + stars +
                  "intra approx:\n" + stars + "\t\t\t*** Regles approximatives intra noeud  ***\n" + stars +
                  "inter exact:\n" + stars + "\t\t\t***   Regles exactes inter noeuds     ***\n" + stars +
                  "inter approx:\n" + stars + "\t\t\t*** Regles approximatives inter noeuds ***\n" + stars);
}

TEST_F(RuleFilesTest, AreEmptyWithoutHeadersAndRules) {
    begin(PairKind::successor);
    EXPECT_EQ(written(), "");
}

// The five shapes of a record.

TEST_F(RuleFilesTest, ExactRuleHasASupportAndNoConfidence) {
    begin(PairKind::essential_and_rest);
    files.add({R111, R111, exact, known(20U), {}});
    EXPECT_EQ(written(), "intra exact:\n1 v 2-->3\nsupport:20\n\n");
}

TEST_F(RuleFilesTest, ApproximatedRuleOfConfidence1HasASupportIntervalInTheExactFile) {
    begin(PairKind::essential_and_rest);
    files.add({R112, R112, apped, between(10U, 20U), {}});
    EXPECT_EQ(written(), "intra exact:\n3-->1 v 2\n10< support <20\n");
}

TEST_F(RuleFilesTest, ApproximativeRuleHasAConfidence) {
    begin(PairKind::essential_and_rest);
    files.add({R311, R311, appro, known(20U), known(0.25)});
    EXPECT_EQ(written(),
              "intra approx:\n1 v 2-->not(3)\nsupport:20\n\nconfiance:0.25\n---------------------------\n");
}

TEST_F(RuleFilesTest, ApproximatedRuleHasTwoIntervals) {
    begin(PairKind::essential_and_rest);
    files.add({R311, R311, apped, between(10U, 20U), between(0.25, 0.5)});
    EXPECT_EQ(written(),
              "intra approx:\n1 v 2-->not(3)\n10< support <20\n0.25< confiance <0.5\n"
              "---------------------------\n");
}

TEST_F(RuleFilesTest, ApproximatedRuleOfKnownSupportHasOneInterval) {
    begin(PairKind::essential_and_rest);
    files.add({R212, R212, apped, known(20U), between(0.25, 0.5)});
    EXPECT_EQ(written(),
              "intra approx:\nnot(3)-->not(1)not(2)\nsupport:20\n\n0.25< confiance <0.5\n"
              "---------------------------\n");
}

TEST_F(RuleFilesTest, BoundsThatMeetAreIntervals) {
    begin(PairKind::successor);
    files.add({R131, R131, apped, between(10U, 10U), between(1.0, 1.0)});
    EXPECT_EQ(written(),
              "inter approx:\n1 v 2-->3\n10< support <10\n1< confiance <1\n---------------------------\n");
}

TEST_F(RuleFilesTest, ConfidenceOf1StaysInTheApproximateFile) {
    begin(PairKind::successor);
    files.add({R132, R132, appro, known(20U), known(1.0)});
    EXPECT_EQ(written(),
              "inter approx:\n3-->1 v 2\nsupport:20\n\nconfiance:1\n---------------------------\n");
}

TEST_F(RuleFilesTest, InfiniteConfidenceIsWritten) {
    begin(PairKind::successor);
    files.add({R131, R131, appro, known(20U), known(std::numeric_limits<double>::infinity())});
    EXPECT_EQ(written(),
              "inter approx:\n1 v 2-->3\nsupport:20\n\nconfiance:inf\n---------------------------\n");
}

TEST_F(RuleFilesTest, FormThatIsCountedIsNotWritten) {
    begin(PairKind::essential_of_successor);
    files.add({R222, R131, exact, known(20U), {}});
    EXPECT_EQ(written(), "inter exact:\nnot(3)-->not(1)not(2)\nsupport:20\n\n");
}

TEST_F(RuleFilesTest, RulesOfBothKindsOfPairsBetweenNodesGoToTheFilesBetweenNodes) {
    begin(PairKind::successor);
    files.add({R131, R131, exact, known(20U), {}});
    begin(PairKind::essential_of_successor);
    files.add({R421, R421, exact, known(19U), {}});
    files.add({R422, R422, appro, known(18U), known(0.5)});
    EXPECT_EQ(written(),
              "inter exact:\n1 v 2-->3\nsupport:20\n\nnot(3)-->1 v 2\nsupport:19\n\n"
              "inter approx:\nnot(1)not(2)-->3\nsupport:18\n\nconfiance:0.5\n---------------------------\n");
}

TEST_F(RuleFilesTest, RulesFollowTheHeaderOneAfterTheOther) {
    files.write_headers();
    begin(PairKind::essential_and_rest);
    files.add({R112, R112, exact, known(20U), {}});
    files.add({R211, R211, exact, known(19U), {}});
    const std::string text = written();
    EXPECT_EQ(text.substr(0, text.find("intra approx:\n")),
              "intra exact:\n"
              "\t\t\t******************************************\n"
              "\t\t\t***   Regles exaxtes intra noeud      ***\n"
              "\t\t\t******************************************\n"
              "3-->1 v 2\nsupport:20\n\n"
              "not(1)not(2)-->not(3)\nsupport:19\n\n");
}

TEST_F(RuleFilesTest, RulesAreThoseOfThePairBegunLast) {
    const Itemset four = {4};
    const Itemset empty;
    begin(PairKind::essential_and_rest);
    files.add({R112, R112, exact, known(20U), {}});
    files.begin({PairKind::essential_and_rest, {}, four, empty, 80, 80, {0, 0}, true});
    files.add({R211, R211, exact, known(19U), {}});
    EXPECT_EQ(written(), "intra exact:\n3-->1 v 2\nsupport:20\n\nnot(4)-->empty_set\nsupport:19\n\n");
}

}  // namespace
}  // namespace korv
