#include "rule_printing.h"

#include <array>
#include <charconv>
#include <string_view>

namespace korv {

namespace {

constexpr std::string_view separator = "---------------------------\n";

void append_number(Item item, std::string& text) {
    std::array<char, 10> digits;
    text.append(digits.begin(), std::to_chars(digits.begin(), digits.end(), item).ptr);
}

void append_disjunction(const Itemset& itemset, std::string& text) {
    std::string_view before_item;
    for (const Item item : itemset) {
        text += before_item;
        append_number(item, text);
        before_item = " v ";
    }
}

void append_negation(const Itemset& itemset, std::string& text) {
    for (const Item item : itemset) {
        text += "not(";
        append_number(item, text);
        text += ')';
    }
}

}  // namespace

const std::string& Side::text() const {
    if (!text_.empty()) {
        return text_;
    }
    if (itemset_.empty()) {
        text_ = "empty_set";
        return text_;
    }
    // As for items of three digits: at most one more allocation for larger ones.
    text_.reserve(itemset_.size() * std::string_view("not(123)").size());
    switch (mode_) {
        case Mode::disjunction:
            append_disjunction(itemset_, text_);
            break;
        case Mode::negation:
            append_negation(itemset_, text_);
            break;
    }
    return text_;
}

void entete_fichier(const char* title, Output_Manager& out) {
    constexpr std::string_view stars = "\t\t\t******************************************\n";
    out << stars << title << stars;
}

void afficher_regle(const Side& premise, const Side& conclusion, Output_Manager& out) {
    out.put(premise.text()).put("-->").put(conclusion.text()).put("\n");
}

void afficher_supp(Count support, Output_Manager& out) {
    out.put("support:").put(support).put("\n\n");
}

void afficher_supp_approx(const SupportInterval& support, Output_Manager& out) {
    out.put(support.low).put("< support <").put(support.high).put("\n");
}

void afficher_conf(double confidence, Output_Manager& out) {
    out.put("confiance:").put(confidence).put("\n").put(separator);
}

void afficher_conf_approx(const ConfidenceInterval& confidence, Output_Manager& out) {
    out.put(confidence.low).put("< confiance <").put(confidence.high).put("\n").put(separator);
}

}  // namespace korv
