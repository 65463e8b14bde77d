#include "engine/rule_makers.h"

namespace korv {

void RuleMaker::add(const Pair& pair) {
    sink_.begin(pair);
    if (pair.kind == PairKind::essential_and_rest) {
        (pair.is_known ? get_rules_intra_node : get_rules_intra_supp_approx)(pair, settings_, sink_);
    } else {
        (pair.is_known ? get_rules_inter_itemset : get_rules_inter_supp_approx)(pair, settings_, sink_);
    }
}

}  // namespace korv
