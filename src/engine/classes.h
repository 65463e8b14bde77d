#pragma once

#include <map>
#include <vector>

#include "base/itemset.h"

namespace korv {

/// What is known of a class besides its closed itemset.
struct data {
    /// Disjunctive support, in transactions: how many hold at least one item of the closed itemset.
    Count support = 0;
    /// The essential itemsets, in the order of the class file, each ascending; none as large as the closed
    /// itemset. May be empty.
    std::vector<Itemset> essentials;
};

/// The classes: closed itemset (unique, in lexicographic order) to data.
using ClassMap = std::map<Itemset, data>;

/// A class: closed itemset and data. Valid as long as its map is not changed.
using NodeRef = ClassMap::const_iterator;

/// Orders nodes by their itemsets, lexicographically; a proper prefix comes first.
struct NodeOrder {
    bool operator()(NodeRef a, NodeRef b) const { return a->first < b->first; }
};

}  // namespace korv
