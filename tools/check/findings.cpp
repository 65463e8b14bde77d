#include "check/findings.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace korv::tools {

namespace {

bool comes_before(const Finding& a, const Finding& b) {
    const auto key = [](const Finding& each) {
        return std::tie(each.file, each.place.line, each.place.column, each.kind, each.other_line);
    };
    return key(a) < key(b);
}

}  // namespace

Findings::Findings(std::vector<std::string> names, std::size_t most, bool keeps_notes)
    : names_(std::move(names)), most_(most), keeps_notes_(keeps_notes) {}

void Findings::add(Finding finding) {
    if (finding.severity == Severity::note && ignores_notes_) {
        return;
    }
    ++by_severity_.at(static_cast<std::size_t>(finding.severity));
    ++by_kind_.at(static_cast<std::size_t>(finding.kind));
    if (finding.severity == Severity::note && !keeps_notes_) {
        return;
    }
    const bool is_full = most_ > 0 && kept_.size() == most_;
    if (is_full && !comes_before(finding, kept_.front())) {
        return;
    }
    if (is_full) {
        std::ranges::pop_heap(kept_, comes_before);
        kept_.pop_back();
    }
    kept_.push_back(std::move(finding));
    std::ranges::push_heap(kept_, comes_before);
}

std::vector<Finding> Findings::in_order() const {
    std::vector<Finding> sorted = kept_;
    std::ranges::stable_sort(sorted, comes_before);
    return sorted;
}

}  // namespace korv::tools
