#include "io/rule_printing.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace korv {

namespace {

constexpr std::string_view separator = "---------------------------\n";

/// Room for an item as it is written on either side, "not(4294967295)".
constexpr std::size_t item_bytes = 15;
constexpr std::size_t item_digits = 10;

char* write(std::string_view text, char* out) {
    return std::ranges::copy(text, out).out;
}

char* write(Item item, char* out) {
    return std::to_chars(out, out + item_digits, item).ptr;
}

char* write_disjunction(const Itemset& itemset, char* out) {
    std::string_view before_item;
    for (const Item item : itemset) {
        out = write(item, write(before_item, out));
        before_item = " v ";
    }
    return out;
}

char* write_negation(const Itemset& itemset, char* out) {
    for (const Item item : itemset) {
        out = write(")", write(item, write("not(", out)));
    }
    return out;
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
    text_.resize(itemset_.size() * item_bytes);
    char* end = text_.data();
    switch (mode_) {
        case Mode::disjunction:
            end = write_disjunction(itemset_, end);
            break;
        case Mode::negation:
            end = write_negation(itemset_, end);
            break;
    }
    text_.resize(static_cast<std::size_t>(end - text_.data()));
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
