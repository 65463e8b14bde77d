#include "rule_printing.h"

#include <string_view>

namespace korv {

namespace {

constexpr std::string_view separator = "---------------------------\n";

void write_disjunction(const Itemset& itemset, Output_Manager& out) {
    std::string_view before_item;
    for (const Item item : itemset) {
        out << before_item << item;
        before_item = " v ";
    }
}

void write_negation(const Itemset& itemset, Output_Manager& out) {
    for (const Item item : itemset) {
        out << "not(" << item << ')';
    }
}

void write_side(const Side& side, Output_Manager& out) {
    if (side.itemset.empty()) {
        out << "empty_set";
        return;
    }
    switch (side.mode) {
        case Mode::disjunction:
            write_disjunction(side.itemset, out);
            break;
        case Mode::negation:
            write_negation(side.itemset, out);
            break;
    }
}

}  // namespace

void entete_fichier(const char* title, Output_Manager& out) {
    constexpr std::string_view stars = "\t\t\t******************************************\n";
    out << stars << title << stars;
}

void afficher_regle(const Side& premise, const Side& conclusion, Output_Manager& out) {
    write_side(premise, out);
    out << "-->";
    write_side(conclusion, out);
    out << '\n';
}

void afficher_supp(Count support, Output_Manager& out) {
    out << "support:" << support << "\n\n";
}

void afficher_supp_approx(const SupportInterval& support, Output_Manager& out) {
    out << support.low << "< support <" << support.high << '\n';
}

void afficher_conf(double confidence, Output_Manager& out) {
    out << "confiance:" << confidence << '\n' << separator;
}

void afficher_conf_approx(const ConfidenceInterval& confidence, Output_Manager& out) {
    out << confidence.low << "< confiance <" << confidence.high << '\n' << separator;
}

}  // namespace korv
