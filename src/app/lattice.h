#pragma once

#include <istream>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "base/itemset.h"
#include "engine/difference_supports.h"
#include "engine/rule_catalogue.h"
#include "io/Input_Output_Manager.h"
#include "io/Output_Manager.h"
#include "io/rule_recorder.h"

namespace korv {

/// What is known of a class besides its closed itemset.
struct data {
    /// Disjunctive support, in transactions: how many hold at least one item of the closed itemset.
    Count support = 0;
    /// The essential itemsets, in the order of the class file, each ascending; none as large as the closed
    /// itemset. May be empty.
    std::vector<Itemset> essentials;
};

/// A class: an entry of Lattice::dci_map, closed itemset and data. Stays valid for the whole run, since the
/// map is not changed after loading.
using NodeRef = std::map<Itemset, data>::const_iterator;

/// The closed itemsets of classes, in their order.
std::vector<const Itemset*> closed_itemsets(const std::map<Itemset, data>& classes);

/// Successors of a closed itemset in the order in which they were found. An antichain: none contains another.
using SuccessorList = std::vector<NodeRef>;

/// A class in the lattice.
struct LatticeEntry {
    /// Number of items of the closed itemset.
    Count cardinality;
    NodeRef node;
    /// The immediate closed proper subsets of the closed itemset.
    SuccessorList successors;

    const Itemset& itemset() const { return node->first; }
};

/// The one object of a run: classes, lattice, counters and output files.
///
/// LATTICE is the pipeline; the operations below it are its stages and their parts, in the order in which
/// they run. Each stage needs those before it. One thread.
class Lattice {
public:
    /// Orders nodes by their itemsets, lexicographically; a proper prefix comes first.
    struct less {
        bool operator()(NodeRef a, NodeRef b) const { return a->first < b->first; }
    };

    /// Creates, or empties, the six output files S1 to S6, so that they exist before any input is read.
    /// `input`, the class file, must outlive the lattice. `minimum_support` is in transactions.
    Lattice(std::istream& input, double minimum_confidence, Count minimum_support);

    /// The whole run: loads, builds and writes the lattice, derives the rules, reports their counts, and
    /// prints a line of progress after each stage. What a line announces is in its file when the line is
    /// printed. Sets en1 when the lattice file is finished.
    void LATTICE();

    // Loading.

    /// Fills `dci_map` from the class file, up to its end or to the first record without items. Of two
    /// records of the same closed itemset the later one stays. No threshold is applied.
    void Load_DCI();

    /// Fills `hash_table`: one entry for each class of `dci_map`, without successors.
    void Load_Hash_table();

    // Building.

    /// Fills the successor lists of `hash_table`, as walk_frontier does but by an index. Without any class:
    /// two messages on standard error and the end of the process, with status 2.
    void build_lattice();

    /// The plain way to fill the successor lists, which says what they are: each entry is compared with those
    /// on the frontier, and with what lies below them. Slow: grows with the square of the classes.
    void walk_frontier();

    /// Offers `x` as a successor to the owner of `list`. Refused, with false, when a listed itemset contains
    /// it; otherwise appended, after those that it contains were removed.
    static bool insert_succ(NodeRef x, SuccessorList& list);

    /// Offers to `entry` every node below `other` (an entry that shares items with it but is not contained in
    /// it) that is contained in its itemset, depth first in list order, each node examined once while
    /// `visited` is kept.
    void processing_succ(const LatticeEntry& other, LatticeEntry& entry);

    /// The entry of a node in `hash_table`; its end when there is none. O(log classes) comparisons of
    /// itemsets.
    std::vector<LatticeEntry>::const_iterator find_dci_node(NodeRef node) const;

    // The lattice file.

    /// Writes the lattice file: a banner and, for each entry of `hash_table`, a block.
    void Output_Lattice();
    void afficher_IFD_supp(NodeRef node);
    void afficher_essentiels(const std::vector<Itemset>& essentials);
    void afficher_list_succ(const SuccessorList& successors);

    // Supports of itemsets that need not be closed.

    /// The disjunctive support of any itemset, from the classes alone.
    ///
    /// `lower` and `upper` are bounds on it (transactions) that the caller knows; they are narrowed. Returns
    /// the support when the bounds meet, or when `itemset` is closed (the bounds then stay as far as they
    /// were narrowed before its entry); otherwise 0, and only the bounds are known. A support of 0 cannot be
    /// told from an unknown one by the result.
    ///
    /// The lattice needs its entries, not their successors. One pass over the classes at most:
    /// O(classes * essential itemsets * items).
    Count generate_difference_support(const Itemset& itemset, Count& lower, Count& upper) const;

    /// Makes the indexes by which the rules' supports are found. Without them each takes a pass over the
    /// classes: the same results, slowly.
    void index_supports();

    // Rules.

    /// Writes the headers of the four rule files, then all intra-node and all inter-node rules.
    void Output_Rules();

    /// The intra-node rules of all classes, in the order of `dci_map`.
    void generate_intra_node_rules();

    /// The rules between one essential itemset of a node and the rest of its closed itemset.
    void generer_regles_intra_noeud(NodeRef node, const Itemset& essential);

    /// The intra-node rules of a node that has exactly two essential itemsets. When they partition the closed
    /// itemset the rules of the first are all: those of the second would be their mirror images.
    void generer_regles_intra_noeud_deux_ess(NodeRef node);

    /// Intra-node rules where the support `r` of the difference f1-e1 is known. 0 only where two essential
    /// itemsets partition a class of support 0.
    void get_rules_intra_node(const Itemset& difference, Count r, const Itemset& essential, Count s);

    /// Intra-node rules where the support of the difference is only known to lie between `lo` and `hi`.
    void get_rules_intra_supp_approx(const Itemset& difference, const Itemset& essential, Count s, Count lo,
                                     Count hi);

    /// The inter-node rules of all entries of `hash_table`, in its order.
    void generate_inter_node_rules();

    /// The rules between the closed itemset f2 of `node` and its successor f1.
    void generer_regles_inter_IFD(NodeRef node, NodeRef successor);

    /// The rules between the closed itemset f2 of `node` and each essential itemset e1 of its successor.
    void generer_regles_itemset_ess(NodeRef node, NodeRef successor);

    /// The inter-node rules of an entry that has exactly two successors. When they partition its closed
    /// itemset the second has no rules as f1: they would be those of the first, exchanged.
    void generer_regles_inter_IFD_deux_succ(const LatticeEntry& entry);

    /// Inter-node rules between `base` (f1 or e1, of support `s1`) and the difference f2-f1 or f2-e1 where
    /// the support `r` of the difference is known. `s2` is the support of f2; `ifd_pair` says whether `base`
    /// is the closed itemset f1.
    void get_rules_inter_itemset(const Itemset& difference, Count r, const Itemset& base, Count s1, Count s2,
                                 bool ifd_pair);

    /// The same where the support of the difference is only known to lie between `lo` and `hi`.
    void get_rules_inter_supp_approx(const Itemset& difference, const Itemset& base, Count s1, Count s2,
                                     Count lo, Count hi, bool ifd_pair);

    // The rule-count file.

    /// Writes the rule-count file: totals, percentages, and the counts of the 24 forms for each kind.
    void write_rule_counts();

    /// Writes the counts of the 24 forms for one kind.
    void number_of_rules(Kind kind);

    /// The classes: closed itemset (unique, lexicographic order) to data.
    std::map<Itemset, data> dci_map;

    const Count minsupp;   ///< a rule's support must be at least this, in transactions
    const double minconf;  ///< a rule's confidence must be at least this

    RuleCounts rule_counts;

    /// The lattice: all classes by ascending cardinality, then in the order of `dci_map`.
    std::vector<LatticeEntry> hash_table;

    // Working containers of walk_frontier, without meaning after it.

    /// Nodes already examined for the current entry.
    std::set<NodeRef, less> visited;
    /// Entries so far that are not contained in a later one, in the order of `hash_table`.
    std::vector<std::vector<LatticeEntry>::const_iterator> frontier;

    // The output files, in the order of their creation.

    Output_Manager intra_exact_out;
    Output_Manager intra_approx_out;
    Output_Manager inter_exact_out;
    Output_Manager inter_approx_out;
    Output_Manager number_rules_out;
    /// Reads the class file, writes the lattice file.
    Input_Output_Manager lattice_io;

private:
    void link_successors(LatticeEntry& entry);
    Count support_of_difference(const Itemset& difference, Count& lower, Count& upper);
    void generer_regles_tous_succ(const LatticeEntry& entry);
    void generer_regles_paire(NodeRef node, const Itemset& base, Count s1, bool ifd_pair);

    RuleRecorder intra_node_rules();
    RuleRecorder inter_node_rules();

    std::optional<DifferenceSupports> difference_supports_;
};

/// Writes the items of an itemset on standard output, each followed by a blank, and a line end. For
/// debugging.
void print_vector(const Itemset& itemset);

}  // namespace korv
