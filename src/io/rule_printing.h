#pragma once

#include <string>

#include "base/itemset.h"
#include "io/Output_Manager.h"

namespace korv {

/// How a side of a rule is written, and what it stands for.
enum class Mode : char {
    disjunction = 'O',  ///< a transaction holds at least one of the items: "1 v 4"
    negation = '!',     ///< it holds none of them: "not(1)not(4)"
};

/// One side of a rule. Refers to its itemset: made for the calls that write a pair's rules, not to be kept.
class Side {
public:
    Side(Mode mode, const Itemset& itemset) : mode_(mode), itemset_(itemset) {}

    /// The side as it is printed: an empty itemset as "empty_set", another mode than the two as nothing. Made
    /// at the first call, since most sides are never printed, and kept, since the others are in several
    /// rules.
    const std::string& text() const;

private:
    Mode mode_;
    const Itemset& itemset_;
    mutable std::string text_;
};

/// Both ways to write an itemset as a side of a rule.
struct Sides {
    explicit Sides(const Itemset& itemset)
        : plain(Mode::disjunction, itemset), negated(Mode::negation, itemset) {}

    Side plain;
    Side negated;
};

/// Ends of a support that is known as an interval only, in transactions.
struct SupportInterval {
    Count low;
    Count high;
};

/// Ends of a confidence that is known as an interval only.
struct ConfidenceInterval {
    double low;
    double high;
};

// The lines of a rule file. A record is a rule line, a support and, unless the rule is exact, a confidence.

/// Writes a file header: the title, which brings its own line end, between two lines of stars.
void entete_fichier(const char* title, Output_Manager& out);

/// Writes the rule line, "premise-->conclusion". An empty side is "empty_set"; a side of another mode than
/// the two is left out.
void afficher_regle(const Side& premise, const Side& conclusion, Output_Manager& out);

/// Writes "support:" and the number, and an empty line.
void afficher_supp(Count support, Output_Manager& out);

/// Writes the line "LOW< support <HIGH".
void afficher_supp_approx(const SupportInterval& support, Output_Manager& out);

/// Writes "confiance:" and the number, and the separator that ends the record.
void afficher_conf(double confidence, Output_Manager& out);

/// Writes the line "LOW< confiance <HIGH", and the separator that ends the record.
void afficher_conf_approx(const ConfidenceInterval& confidence, Output_Manager& out);

}  // namespace korv
