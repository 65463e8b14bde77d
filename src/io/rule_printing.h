#pragma once

#include <string>
#include <string_view>

#include "base/itemset.h"
#include "engine/rule_catalogue.h"
#include "io/Output_Manager.h"

namespace korv {

// The lines of a rule file. A record is a rule line, a support and, unless the rule is exact, a confidence.

/// Both ways to write an itemset as a side of a rule.
class Sides {
public:
    Sides() = default;
    /// Refers to the itemset.
    explicit Sides(const Itemset& itemset) : itemset_(&itemset) {}

    /// From now on the sides are those of this itemset.
    void refer_to(const Itemset& itemset);

    /// The side as it is printed: a disjunction as "1 v 4", a negation as "not(1)not(4)", an empty itemset
    /// either way as "empty_set". Made at the first call, since most sides are never printed, and kept, since
    /// the others are in several rules.
    const std::string& text(Mode mode);

private:
    const Itemset* itemset_ = nullptr;
    std::string disjunction_;  ///< empty: not made
    std::string negation_;
};

/// Writes a file header: the title, which brings its own line end, between two lines of stars.
void entete_fichier(const char* title, Output_Manager& out);

/// Writes the rule line, "premise-->conclusion".
void afficher_regle(std::string_view premise, std::string_view conclusion, Output_Manager& out);

/// Writes "support:" and the number, and an empty line.
void afficher_supp(Count support, Output_Manager& out);

/// Writes the line "LOW< support <HIGH".
void afficher_supp_approx(Count low, Count high, Output_Manager& out);

/// Writes "confiance:" and the number, and the separator that ends the record.
void afficher_conf(double confidence, Output_Manager& out);

/// Writes the line "LOW< confiance <HIGH", and the separator that ends the record.
void afficher_conf_approx(double low, double high, Output_Manager& out);

}  // namespace korv
