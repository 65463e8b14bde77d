#include "app/lattice.h"

#include <cstdlib>
#include <iostream>
#include <utility>

#include "app/globals.h"
#include "app/time_stamp.h"
#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "engine/support_walk.h"
#include "io/class_loading.h"
#include "io/lattice_file.h"
#include "io/rule_count_file.h"

namespace korv {

namespace {

[[noreturn]] void stop_without_classes() {
    // Where an accented letter belongs stands the replacement character, U+FFFD. It stays: the messages are
    // compared byte for byte.
    std::cerr << "Erreur: le nombre de classes doit \xEF\xBF\xBDtre non null" << std::flush;
    std::cerr << "Arr\xEF\xBF\xBDt du programme" << std::flush;
    std::exit(2);
}

}  // namespace

Lattice::Lattice(std::istream& input, double minimum_confidence, Count minimum_support)
    : minsupp(minimum_support),
      minconf(minimum_confidence),
      intra_exact_out(S1),
      intra_approx_out(S2),
      inter_exact_out(S3),
      inter_approx_out(S4),
      number_rules_out(S6),
      lattice_io(input, S5),
      rule_files_({intra_exact_out, intra_approx_out}, {inter_exact_out, inter_approx_out}),
      counted_rules_(rule_counts, rule_files_),
      supports_(std::make_unique<SupportWalk>(hash_table)) {}

void Lattice::LATTICE() {
    Load_DCI();
    std::cout << std::endl << "DCI loaded" << std::endl;

    Load_Hash_table();
    std::cout << " hash_table loaded" << std::endl;

    build_lattice();
    std::cout << " Lattice built" << std::endl;

    Output_Lattice();
    en1 = time_stamp();
    std::cout << " Lattice written" << std::endl
              << " Size of the map: " << dci_map.size() << std::endl
              << " Closed itemsets processed" << std::endl;

    index_supports();
    Output_Rules();
    std::cout << " Rules generted " << std::endl;  // "generted", and a blank at the end

    write_rule_counts();
    std::cout << "Number of exact rules: " << rule_counts.exact_total << std::endl
              << "Number of approximative rules: " << rule_counts.appro_total << std::endl
              << "Number of approximated rules: " << rule_counts.apped_total
              << std::endl
              // Three blanks before y, two before z.
              << "x=" << rule_counts.column_sum(Kind::exact) << "   y=" << rule_counts.column_sum(Kind::appro)
              << "  z=" << rule_counts.column_sum(Kind::apped) << std::endl;
}

void Lattice::Load_DCI() {
    lattice_io.rewind();
    // Asks the output side, whose end-of-file flag is never set on a fresh file: an empty class file is not
    // stopped here but where the lattice is built.
    if (lattice_io.eof()) {
        std::cout << "Erreur: aucune classe disjonctive n'a ete lue." << std::endl;
        std::exit(1);
    }
    dci_map = read_classes([this](Itemset& itemset, data& of_class) {
        return lattice_io.read_in_a_line(itemset, of_class.support, of_class.essentials);
    });
}

void Lattice::Load_Hash_table() {
    hash_table = lattice_entries(dci_map);
}

void Lattice::build_lattice() {
    if (hash_table.empty()) {
        stop_without_classes();
    }
    link_successors(hash_table);
}

void Lattice::walk_frontier() {
    korv::walk_frontier(hash_table, frontier, visited);
}

bool Lattice::insert_succ(NodeRef x, SuccessorList& list) {
    return korv::insert_succ(x, list);
}

void Lattice::processing_succ(const LatticeEntry& other, LatticeEntry& entry) {
    korv::processing_succ(other, entry, hash_table, visited);
}

LatticeEntries::const_iterator Lattice::find_dci_node(NodeRef node) const {
    return find_entry(hash_table, node);
}

void Lattice::Output_Lattice() {
    write_lattice(hash_table, lattice_io);
    lattice_io.flush();
}

void Lattice::afficher_IFD_supp(NodeRef node) {
    korv::afficher_IFD_supp(node, lattice_io);
}

void Lattice::afficher_essentiels(const std::vector<Itemset>& essentials) {
    korv::afficher_essentiels(essentials, lattice_io);
}

void Lattice::afficher_list_succ(const SuccessorList& successors) {
    korv::afficher_list_succ(successors, lattice_io);
}

Count Lattice::generate_difference_support(const Itemset& itemset, Count& lower, Count& upper) const {
    SupportBounds bounds = {lower, upper};
    const Count support = SupportWalk(hash_table).settle(itemset, bounds);
    lower = bounds.lower;
    upper = bounds.upper;
    return support;
}

void Lattice::index_supports() {
    supports_ = std::make_unique<DifferenceSupports>(hash_table);
}

void Lattice::Output_Rules() {
    rule_files_.write_headers();
    generate_intra_node_rules();
    generate_inter_node_rules();
    rule_files_.flush();
}

RuleMaker Lattice::rule_maker() {
    return {{minsupp, minconf, nbrtransaction}, counted_rules_};
}

/// Writes the rules of the pairs that `derive_pairs` takes from a stream of them.
template <typename Derive>
void Lattice::derive(Derive derive_pairs) {
    RuleMaker rules = rule_maker();
    derive_pairs(Pairs(*supports_, rules));
}

void Lattice::generate_intra_node_rules() {
    derive([this](Pairs pairs) { pairs.intra_node(dci_map); });
}

void Lattice::generer_regles_intra_noeud(NodeRef node, const Itemset& essential) {
    derive([&](Pairs pairs) { pairs.intra_node(node, essential); });
}

void Lattice::generer_regles_intra_noeud_deux_ess(NodeRef node) {
    derive([&](Pairs pairs) { pairs.intra_node_of_two_essentials(node); });
}

void Lattice::get_rules_intra_node(const Itemset& difference, Count r, const Itemset& essential, Count s) {
    rule_maker().add(
        {PairKind::essential_and_rest, dci_map.end(), essential, difference, s, s, {r, r}, true});
}

void Lattice::get_rules_intra_supp_approx(const Itemset& difference, const Itemset& essential, Count s,
                                          Count lo, Count hi) {
    rule_maker().add(
        {PairKind::essential_and_rest, dci_map.end(), essential, difference, s, s, {lo, hi}, false});
}

void Lattice::generate_inter_node_rules() {
    derive([this](Pairs pairs) { pairs.inter_node(hash_table); });
}

void Lattice::generer_regles_inter_IFD(NodeRef node, NodeRef successor) {
    derive([&](Pairs pairs) { pairs.successor(node, successor); });
}

void Lattice::generer_regles_itemset_ess(NodeRef node, NodeRef successor) {
    derive([&](Pairs pairs) { pairs.essentials_of_successor(node, successor); });
}

void Lattice::generer_regles_inter_IFD_deux_succ(const LatticeEntry& entry) {
    derive([&](Pairs pairs) { pairs.inter_node_of_two_successors(entry); });
}

void Lattice::get_rules_inter_itemset(const Itemset& difference, Count r, const Itemset& base, Count s1,
                                      Count s2, bool ifd_pair) {
    const PairKind kind = ifd_pair ? PairKind::successor : PairKind::essential_of_successor;
    rule_maker().add({kind, dci_map.end(), base, difference, s2, s1, {r, r}, true});
}

void Lattice::get_rules_inter_supp_approx(const Itemset& difference, const Itemset& base, Count s1, Count s2,
                                          Count lo, Count hi, bool ifd_pair) {
    const PairKind kind = ifd_pair ? PairKind::successor : PairKind::essential_of_successor;
    rule_maker().add({kind, dci_map.end(), base, difference, s2, s1, {lo, hi}, false});
}

void Lattice::write_rule_counts() {
    korv::write_rule_counts(rule_counts, number_rules_out);
    number_rules_out.flush();
}

void Lattice::number_of_rules(Kind kind) {
    korv::number_of_rules(kind, rule_counts, number_rules_out);
}

void print_vector(const Itemset& itemset) {
    for (const Item item : itemset) {
        std::cout << item << " ";
    }
    std::cout << std::endl;
}

}  // namespace korv
