#pragma once

#include <istream>
#include <memory>
#include <vector>

#include "engine/frontier_walk.h"
#include "engine/lattice_entries.h"
#include "engine/pairs.h"
#include "engine/rule_counts.h"
#include "engine/rule_makers.h"
#include "engine/supports.h"
#include "io/Input_Output_Manager.h"
#include "io/Output_Manager.h"
#include "io/rule_files.h"

namespace korv {

/// The one object of a run: classes, lattice, counters and output files.
///
/// LATTICE is the pipeline; the operations below it are its stages and their parts, in the order in which
/// they run. Each stage needs those before it. The work is done by the engine, which knows neither files nor
/// globals; what it finds is written by the writers of the io layer. One thread.
///
/// Two operations exist twice. walk_frontier (with `frontier`, `visited`, processing_succ and insert_succ)
/// and generate_difference_support are the definitions: plain walks over the classes. What runs is an index
/// with the same results: build_lattice uses a Hasse diagram, unless the empty itemset is a class, and the
/// rules use the indexes of index_supports. Where that was not called, each support is found by the walk.
class Lattice {
public:
    using less = NodeOrder;

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

    /// The plain way to fill the successor lists, which says what they are: see engine/frontier_walk.h.
    void walk_frontier();
    static bool insert_succ(NodeRef x, SuccessorList& list);
    void processing_succ(const LatticeEntry& other, LatticeEntry& entry);

    /// The entry of a node in `hash_table`; its end when there is none.
    LatticeEntries::const_iterator find_dci_node(NodeRef node) const;

    // The lattice file: see io/lattice_file.h for its pieces.

    /// Writes the lattice file: a banner and, for each entry of `hash_table`, a block.
    void Output_Lattice();
    void afficher_IFD_supp(NodeRef node);
    void afficher_essentiels(const std::vector<Itemset>& essentials);
    void afficher_list_succ(const SuccessorList& successors);

    // Supports of itemsets that need not be closed.

    /// The disjunctive support of any itemset by a walk over the classes: see engine/support_walk.h.
    /// `lower` and `upper` are narrowed; 0 when only these are known.
    Count generate_difference_support(const Itemset& itemset, Count& lower, Count& upper) const;

    /// Makes the indexes by which the rules' supports are found.
    void index_supports();

    // Rules.

    /// Writes the headers of the four rule files, then all intra-node and all inter-node rules.
    void Output_Rules();

    /// The intra-node rules of all classes, in the order of `dci_map`.
    void generate_intra_node_rules();

    /// The rules between one essential itemset of a node and the rest of its closed itemset.
    void generer_regles_intra_noeud(NodeRef node, const Itemset& essential);

    /// The intra-node rules of a node that has exactly two essential itemsets.
    void generer_regles_intra_noeud_deux_ess(NodeRef node);

    /// Intra-node rules where the support `r` of the difference f1-e1 is known.
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

    /// The inter-node rules of an entry that has exactly two successors.
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

    /// The classes. Not changed after loading, so that a NodeRef stays valid for the whole run.
    ClassMap dci_map;

    const Count minsupp;   ///< a rule's support must be at least this, in transactions
    const double minconf;  ///< a rule's confidence must be at least this

    RuleCounts rule_counts;
    // Its counters by their own names.
    decltype(RuleCounts::counters)& counters = rule_counts.counters;
    Count& exact_total = rule_counts.exact_total;
    Count& appro_total = rule_counts.appro_total;
    Count& apped_total = rule_counts.apped_total;

    /// The lattice: all classes by ascending cardinality, then in the order of `dci_map`.
    LatticeEntries hash_table;

    // Working containers of walk_frontier, which alone fills them.

    VisitedNodes visited;
    Frontier frontier;

    // The output files, in the order of their creation.

    Output_Manager intra_exact_out;
    Output_Manager intra_approx_out;
    Output_Manager inter_exact_out;
    Output_Manager inter_approx_out;
    Output_Manager number_rules_out;
    /// Reads the class file, writes the lattice file.
    Input_Output_Manager lattice_io;

private:
    RuleMaker rule_maker();

    template <typename Derive>
    void derive(Derive derive_pairs);

    /// The four rule files, and the counts on the way to them.
    RuleFiles rule_files_;
    CountedRules counted_rules_;
    /// The indexes once they are made, the walk before.
    std::unique_ptr<Supports> supports_;
};

/// Writes the items of an itemset on standard output, each followed by a blank, and a line end. For
/// debugging.
void print_vector(const Itemset& itemset);

}  // namespace korv
