#pragma once

#include "check/findings.h"
#include "check/known_supports.h"

namespace korv::tools {

/// Adds, as file 0, where the supports of parts of an itemset do not allow its support. With s the support, e
/// the itemset, x and y items of it, and 0 the support of the empty itemset:
///
///   s(e) <= s(e - x) + s(x)                      a union has at most the sum of the supports of its parts;
///   s(e) <= s(e - x) + s(e - y) - s(e - x - y)   nor more than inclusion and exclusion of two parts leave;
///   s(e) >= the sum of s(x) - the sum of the joint supports of all pairs, s(x) + s(y) - s(x y).
///
/// Each is looked at for the keys of `known`, where the supports in it are known, too. Of each key the first
/// one that does not hold is told. O(items^2) look-ups for each key.
///
/// Of a class that has no single item as a key, nor a key of which all parts are known, each two classes
/// within it are looked at, too, whose union it is: there are no such classes in a file with all parts of
/// essential itemsets. 20,000,000 times at most, a class is asked whether it lies within one of them.
void check_support_bounds(const KnownSupports& known, Findings& findings);

}  // namespace korv::tools
