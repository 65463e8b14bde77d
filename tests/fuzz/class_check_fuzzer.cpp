// Any bytes as a class file: what is said of it ends, and is what korv makes of it. Where a mended file would
// be written, it has nothing left to be mended.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

#include "check/checked_classes.h"
#include "check/checked_lines.h"
#include "check/class_mending.h"
#include "check/class_notes.h"
#include "check/class_order_check.h"
#include "check/finding_report.h"
#include "check/support_bounds_check.h"
#include "common/class_file.h"
#include "io/class_loading.h"

namespace {

using namespace korv;
using namespace korv::tools;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool is_equal(const ClassMap& one, const ClassMap& other) {
    return std::ranges::equal(one, other, [](const auto& a, const auto& b) {
        return a.first == b.first && a.second.support == b.second.support &&
               a.second.essentials == b.second.essentials;
    });
}

/// Whether korv stores what is said.
void require_prediction(const std::string& text) {
    Findings findings({"a.classes"}, 20, true);
    CheckedLines lines = check_lines({"a.classes", text}, findings);
    Records stored;
    for (std::size_t i = 0; i < lines.records.size(); ++i) {
        if (lines.places[i].is_stored) {
            stored.push_back(lines.records[i]);
        }
    }
    std::istringstream input(text);
    require(is_equal(to_classes(stored), read_classes(input)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    require_prediction(text);
    Findings findings({"a.classes"}, 20, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    const KnownSupports known(checked);
    check_order_of_classes(checked, known, 100, findings);
    check_support_bounds(known, findings);
    note_what_is_missing(checked, known, 10, findings);
    require(!finding_report(findings, {checked.stored}, FindingFormat::text).empty());
    require(!finding_report(findings, {checked.stored}, FindingFormat::json).empty());
    if (what_is_not_mended(findings).empty() && checked.unclear_lines == 0) {
        Findings of_mended({"a.classes"}, 20, true);
        check_class_file({"a.classes", mended_text(checked)}, of_mended);
        require(what_is_not_mended(of_mended).empty() && of_mended.count(Severity::error) == 0);
    }
    return 0;
}
