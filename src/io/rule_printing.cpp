#include "io/rule_printing.h"

#include <algorithm>
#include <cstddef>

#include "base/number_text.h"

namespace korv {

namespace {

constexpr std::string_view separator = "---------------------------\n";

char* write(std::string_view text, char* out) {
    return std::ranges::copy(text, out).out;
}

char* write_disjunction(const Itemset& itemset, char* out) {
    std::string_view before_item;
    for (const Item item : itemset) {
        out = write_number(item, write(before_item, out));
        before_item = " v ";
    }
    return out;
}

char* write_negation(const Itemset& itemset, char* out) {
    for (const Item item : itemset) {
        out = write(")", write_number(item, write("not(", out)));
    }
    return out;
}

void make_text(Mode mode, const Itemset& itemset, std::string& text) {
    if (itemset.empty()) {
        text = "empty_set";
        return;
    }
    constexpr std::size_t most_item_bytes = most_digits + std::string_view("not()").size();
    text.resize(itemset.size() * most_item_bytes);
    const char* const end =
        (mode == Mode::disjunction ? write_disjunction : write_negation)(itemset, text.data());
    text.resize(static_cast<std::size_t>(end - text.data()));
}

}  // namespace

void Sides::refer_to(const Itemset& itemset) {
    itemset_ = &itemset;
    disjunction_.clear();
    negation_.clear();
}

const std::string& Sides::text(Mode mode) {
    std::string& text = mode == Mode::disjunction ? disjunction_ : negation_;
    if (text.empty()) {
        make_text(mode, *itemset_, text);
    }
    return text;
}

void entete_fichier(const char* title, Output_Manager& out) {
    constexpr std::string_view stars = "\t\t\t******************************************\n";
    out << stars << title << stars;
}

void afficher_regle(std::string_view premise, std::string_view conclusion, Output_Manager& out) {
    out.put(premise).put("-->").put(conclusion).put("\n");
}

void afficher_supp(Count support, Output_Manager& out) {
    out.put("support:").put(support).put("\n\n");
}

void afficher_supp_approx(Count low, Count high, Output_Manager& out) {
    out.put(low).put("< support <").put(high).put("\n");
}

void afficher_conf(double confidence, Output_Manager& out) {
    out.put("confiance:").put(confidence).put("\n").put(separator);
}

void afficher_conf_approx(double low, double high, Output_Manager& out) {
    out.put(low).put("< confiance <").put(high).put("\n").put(separator);
}

}  // namespace korv
