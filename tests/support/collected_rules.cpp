#include "support/collected_rules.h"

#include <iomanip>
#include <limits>
#include <ostream>

namespace korv {

namespace {

template <typename Number>
void print(const Estimate<Number>& estimate, std::ostream& out) {
    out << estimate.low;
    if (!estimate.is_known || estimate.high != estimate.low) {
        out << " to " << estimate.high << (estimate.is_known ? " (known)" : "");
    }
}

}  // namespace

void PrintTo(Form form, std::ostream* out) {
    *out << description(form).label;
}

void PrintTo(Kind kind, std::ostream* out) {
    *out << kind_name(kind);
}

void PrintTo(const Rule& rule, std::ostream* out) {
    *out << '{' << description(rule.form).label;
    if (rule.counted_as != rule.form) {
        *out << " as " << description(rule.counted_as).label;
    }
    *out << ", " << kind_name(rule.kind) << ", support ";
    print(rule.support, *out);
    if (rule.confidence) {
        *out << std::setprecision(std::numeric_limits<double>::max_digits10) << ", confidence ";
        print(*rule.confidence, *out);
    }
    *out << '}';
}

}  // namespace korv
