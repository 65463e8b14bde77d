#include "rules/selection.h"

namespace korv::tools {

std::vector<FoundRule> Selection::take(Accounting& accounting) {
    const std::size_t left = is_per_conclusion_ ? of_each_conclusion_.move_to(first_) : added_;
    std::vector<FoundRule> told = first_.take();
    accounting[Step::per_conclusion] += added_ - left;
    accounting[Step::top] += left - told.size();
    return told;
}

}  // namespace korv::tools
