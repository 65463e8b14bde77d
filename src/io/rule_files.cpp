#include "io/rule_files.h"

namespace korv {

void RuleFiles::write_headers() {
    entete_fichier("\t\t\t***   Regles exaxtes intra noeud      ***\n",
                   intra_node_.exact);  // "exaxtes" it is
    entete_fichier("\t\t\t*** Regles approximatives intra noeud  ***\n", intra_node_.approx);
    entete_fichier("\t\t\t***   Regles exactes inter noeuds     ***\n", inter_node_.exact);
    entete_fichier("\t\t\t*** Regles approximatives inter noeuds ***\n", inter_node_.approx);
}

void RuleFiles::begin(const Pair& pair) {
    files_ = pair.kind == PairKind::essential_and_rest ? &intra_node_ : &inter_node_;
    base_.refer_to(pair.base);
    difference_.refer_to(pair.difference);
}

void RuleFiles::add(const Rule& rule) {
    const auto text = [this](const FormSide& side) -> const std::string& {
        return (side.part == Part::base ? base_ : difference_).text(side.mode);
    };
    Output_Manager& out = rule.confidence ? files_->approx : files_->exact;
    afficher_regle(text(premise(rule.form)), text(conclusion(rule.form)), out);
    if (rule.support.is_known) {
        afficher_supp(rule.support.low, out);
    } else {
        afficher_supp_approx(rule.support.low, rule.support.high, out);
    }
    if (!rule.confidence) {
        return;
    }
    if (rule.confidence->is_known) {
        afficher_conf(rule.confidence->low, out);
    } else {
        afficher_conf_approx(rule.confidence->low, rule.confidence->high, out);
    }
}

void RuleFiles::flush() {
    for (const Files& files : {intra_node_, inter_node_}) {
        files.exact.flush();
        files.approx.flush();
    }
}

}  // namespace korv
