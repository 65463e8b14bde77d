#pragma once

namespace korv::tools {

/// A level part answers, for the lines of one process, what the walk by levels asks of the transactions: of
/// an itemset that grows and shrinks at its end, whose items are ranks. The answers of all processes are
/// summed up, or united. There are two with the same operations, DensePart and SparsePart.
///
/// - closes_by_pairs: whether closures need pairs, even where no itemset has two items.
/// - rows(): of how many ranks the pairs are wanted: of the frequent items, or of all.
/// - pairs_of(rank, pairs): replaces `pairs` by the frequent items below `rank` that are in lines with it
///   here, in any order, and in how many transactions.
/// - is_wanted(rank, below, together): whether the part keeps a pair that is together in so many transactions
///   of all processes, besides those that become itemsets. add_pair(rank, below, together): keeps it. The
///   same pairs are told in all processes.
/// - set_root(root, tree): the itemsets that follow begin with this item, until another is set.
/// - enter(rank), leave(): adds an item at the end, and removes it. enter_to_count(rank): the same where
///   nothing but count and own is called until it is left.
/// - count(candidates, counts): sets, for each candidate, its joint support with the itemset here. There is
///   at least one; they are ascending, and below all of the itemset.
/// - own(rank): the number of transactions here that hold this item and no item of the itemset.
/// - counts_own(size): whether own counts tell the supports of extensions of itemsets of this size faster
///   than inclusion and exclusion does; the same in all processes.
/// - words_of_closure(size): what is told of the closure of an itemset of this size takes about so many
///   numbers of 64 bits; the same in all processes.
/// - asks_for_all_ranks: whether put_open always returns false.
/// - put_open(itemset, open): appends to `open` the other ranks that may be in the closure of an itemset, as
///   the lines here and the numbers of all processes tell, in no certain order, and returns true. Or returns
///   false, and appends nothing, where it has to be asked for all ranks.
/// - tell_outside(rank, outside): appends, in whole words, a bit for each rank, in the order of the first
///   items of ranks: whether a line here shows that it is outside the closure of the itemset with this item
///   behind it.
/// - tell_outside_of(open, rank, outside): the same, bit by bit, for these ranks alone, in their order.
class DensePart;
class SparsePart;

}  // namespace korv::tools
