#include "io/lattice_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/lattice_building.h"
#include "support/files.h"
#include "support/loaded_classes.h"

namespace korv {
namespace {

constexpr auto file_banner =
    "\t\t\t**************************************************\n"
    "\t\t\t**************************************************\n"
    "\t\t\t****                                          ****\n"
    "\t\t\t****      Disjunctive Search Space\t\t****\n"
    "\t\t\t****                                          ****\n"
    "\t\t\t****                                          ****\n"
    "\t\t\t**************************************************\n"
    "\t\t\t**************************************************\n";

constexpr auto class_banner =
    "******************************\n"
    "**   Equivalence class:  **\n"
    "**                          **\n"
    "******************************\n";

class LatticeFile : public ::testing::Test {
protected:
    /// The whole lattice file over the text of a class file.
    std::string written(const std::string& class_file) {
        test::LoadedClasses classes(class_file);
        link_successors(classes.entries);
        write_lattice(classes.entries, out_);
        return text();
    }

    std::string successors_line(const std::vector<Itemset>& itemsets) {
        ClassMap classes;
        SuccessorList successors;
        for (const Itemset& itemset : itemsets) {
            successors.push_back(classes.try_emplace(itemset).first);
        }
        afficher_list_succ(successors, out_);
        return text();
    }

    std::string essentials_line(const std::vector<Itemset>& essentials) {
        afficher_essentiels(essentials, out_);
        return text();
    }

    std::string class_head(const Itemset& itemset, Count support) {
        const ClassMap classes = {{itemset, {support, {}}}};
        afficher_IFD_supp(classes.begin(), out_);
        return text();
    }

private:
    std::string text() {
        out_.flush();
        return test::read_file(name_);
    }

    const std::string name_ = test::memory_file();
    Output_Manager out_{name_};
};

// The file.

TEST_F(LatticeFile, IsABannerWithoutClasses) {
    EXPECT_EQ(written(""), file_banner);
}

TEST_F(LatticeFile, IsABannerAndABlockForASingleClass) {
    EXPECT_EQ(written("1 4\t3\t 4 1,\n"), std::string(file_banner) + class_banner +
                                              "DCP:  1 4 \n"
                                              "Disjonctive support: 3\n"
                                              "les essentiels:  VIDE\n"
                                              "les successeurs: VIDE\n"
                                              "\n");
}

TEST_F(LatticeFile, BlocksFollowByAscendingCardinality) {
    EXPECT_EQ(written("1 2\t5\t 1, 2,\n2\t4\t 2,\n1\t3\t 1,\n"), std::string(file_banner) + class_banner +
                                                                     "DCP:  1 \n"
                                                                     "Disjonctive support: 3\n"
                                                                     "les essentiels:  VIDE\n"
                                                                     "les successeurs: VIDE\n"
                                                                     "\n" +
                                                                     class_banner +
                                                                     "DCP:  2 \n"
                                                                     "Disjonctive support: 4\n"
                                                                     "les essentiels:  VIDE\n"
                                                                     "les successeurs: VIDE\n"
                                                                     "\n" +
                                                                     class_banner +
                                                                     "DCP:  1 2 \n"
                                                                     "Disjonctive support: 5\n"
                                                                     "les essentiels:  1  ; 2  ; \n"
                                                                     "les successeurs: 1 ;2 ;\n"
                                                                     "\n");
}

// Its pieces.

TEST_F(LatticeFile, ClassHeadShowsItemsetAndSupport) {
    EXPECT_EQ(class_head({2, 5, 11}, 4294967295U), std::string(class_banner) +
                                                       "DCP:  2 5 11 \n"
                                                       "Disjonctive support: 4294967295\n");
}

TEST_F(LatticeFile, ClassHeadOfTheEmptyItemsetShowsNoItem) {
    EXPECT_EQ(class_head({}, 0), std::string(class_banner) +
                                     "DCP:  \n"
                                     "Disjonctive support: 0\n");
}

TEST_F(LatticeFile, EssentialsAreClosedBySemicolonsBetweenBlanks) {
    EXPECT_EQ(essentials_line({{2, 3}, {1}}), "les essentiels:  2 3  ; 1  ; \n");
}

TEST_F(LatticeFile, EmptyEssentialIsASemicolonAlone) {
    EXPECT_EQ(essentials_line({{}}), "les essentiels:   ; \n");
}

TEST_F(LatticeFile, NoEssentialIsVide) {
    EXPECT_EQ(essentials_line({}), "les essentiels:  VIDE\n");
}

TEST_F(LatticeFile, SuccessorsAreClosedByBareSemicolonsInListOrder) {
    EXPECT_EQ(successors_line({{3}, {1, 2}}), "les successeurs: 3 ;1 2 ;\n\n");
}

TEST_F(LatticeFile, EmptySuccessorIsASemicolonAlone) {
    EXPECT_EQ(successors_line({{}}), "les successeurs: ;\n\n");
}

TEST_F(LatticeFile, NoSuccessorIsVideAndAnEmptyLine) {
    EXPECT_EQ(successors_line({}), "les successeurs: VIDE\n\n");
}

}  // namespace
}  // namespace korv
