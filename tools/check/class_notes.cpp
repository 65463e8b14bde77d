#include "check/class_notes.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/itemset_hash.h"
#include "base/number_text.h"
#include "common/quantity.h"
#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "engine/lattice_entries.h"
#include "engine/pairs.h"

namespace korv::tools {

namespace {

constexpr std::size_t most_intersections = 5'000'000;
constexpr std::size_t most_classes_of_differences = 5'000;

std::string shown_items(const Itemset& itemset) {
    std::string text;
    append_items(itemset, text);
    return shown(text);
}

void add_note(FindingKind kind, std::uint32_t line, std::string found, std::string expected,
              Findings& findings, std::size_t other_line = 0) {
    findings.add({.kind = kind,
                  .severity = Severity::note,
                  .place = {line, 1},
                  .found = std::move(found),
                  .expected = std::move(expected),
                  .other_line = other_line});
}

void note_single_classes(const CheckedClasses& checked, std::size_t most_items, Findings& findings) {
    auto line = checked.lines.begin();
    for (const auto& [closed_itemset, of_class] : checked.classes) {
        if (of_class.essentials.empty() && closed_itemset.size() > 1) {
            add_note(FindingKind::own_essential, *line, "the closed itemset as its own essential itemset",
                     "smaller ones, if the class is to have rules of its own", findings);
        }
        if (closed_itemset.size() > most_items) {
            add_note(FindingKind::large_class, *line,
                     "a class of " + with_commas(closed_itemset.size()) + " items",
                     with_commas(most_items) + " at most, if rules are to be short", findings);
        }
        ++line;
    }
}

/// The intersections of classes that are no class.
class MissingIntersections {
public:
    MissingIntersections(const CheckedClasses& checked, const KnownSupports& known, Findings& findings)
        : known_(known), findings_(findings) {
        auto line = checked.lines.begin();
        for (const auto& [closed_itemset, of_class] : checked.classes) {
            line_.emplace(&closed_itemset, *line++);
        }
    }

    /// Looks at each two of some classes.
    void look_at(const SuccessorList& classes) {
        for (std::size_t i = 0; i < classes.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                if (looked_at_ == most_intersections) {
                    is_cut_off_ = true;
                    return;
                }
                ++looked_at_;
                look_at(classes[j]->first, classes[i]->first);
            }
        }
    }

    /// Adds a note where there were too many pairs of classes.
    void tell_limit() const {
        if (is_cut_off_) {
            add_note(FindingKind::missing_intersection, 1,
                     "more pairs of classes than " + with_commas(most_intersections) +
                         ", of which the others were not looked at",
                     "fewer, if each missing intersection is to be told", findings_);
        }
    }

private:
    void look_at(const Itemset& one, const Itemset& other) {
        const Itemset both = intersection(one, other);
        if (both.empty()) {
            return;
        }
        const KnownSupports::Position known = known_.find(both);
        if ((known != KnownSupports::unknown && known_.is_closed(known)) ||
            !told_.insert(hash_of(both)).second) {
            return;
        }
        std::uint32_t line = line_.at(&one);
        std::uint32_t other_line = line_.at(&other);
        if (line > other_line) {
            std::swap(line, other_line);
        }
        add_note(FindingKind::missing_intersection, line,
                 "no class " + shown_items(both) + ", which this one and line " + std::to_string(other_line) +
                     " have in common",
                 "that one, too, if the classes are to be all of a database", findings_, other_line);
    }

    const KnownSupports& known_;
    Findings& findings_;
    std::unordered_map<const Itemset*, std::uint32_t> line_;
    std::unordered_set<std::uint64_t> told_;  ///< hashes of them: there may be millions
    std::size_t looked_at_ = 0;
    bool is_cut_off_ = false;
};

/// The classes that are within no other one.
SuccessorList maximal_classes(const LatticeEntries& entries) {
    std::unordered_set<const Itemset*> lower;
    for (const LatticeEntry& entry : entries) {
        for (const NodeRef successor : entry.successors) {
            lower.insert(&successor->first);
        }
    }
    SuccessorList maximal;
    for (const LatticeEntry& entry : entries) {
        if (!lower.contains(&entry.itemset())) {
            maximal.push_back(entry.node);
        }
    }
    return maximal;
}

/// Counts differences, and those whose support is open.
class DifferenceCount final : public PairSink {
public:
    void add(const Pair& pair) override {
        ++all;
        open += pair.is_known ? 0 : 1;
    }

    std::size_t all = 0;
    std::size_t open = 0;
};

void note_open_supports(const LatticeEntries& entries, Findings& findings) {
    DifferenceSupports supports(entries);
    DifferenceCount count;
    Pairs pairs(supports, count);
    const std::size_t step = entries.size() / most_classes_of_differences + 1;
    std::size_t classes = 0;
    for (std::size_t i = 0; i < entries.size(); i += step, ++classes) {
        pairs.of_class(entries[i]);
    }
    if (count.open == 0) {
        return;
    }
    const std::string of = step == 1 ? "" : ", in " + with_commas(classes) + " of the classes";
    add_note(FindingKind::open_supports, 1,
             with_commas(count.open) + " of " + with_commas(count.all) + " supports of differences open" + of,
             "none, if no rule is to be bounded (korv-rules --database counts them)", findings);
}

}  // namespace

void note_what_is_missing(const CheckedClasses& checked, const KnownSupports& known, std::size_t most_items,
                          Findings& findings) {
    if (checked.classes.empty()) {
        return;
    }
    note_single_classes(checked, most_items, findings);
    LatticeEntries entries = lattice_entries(checked.classes);
    link_successors(entries);
    MissingIntersections missing(checked, known, findings);
    for (const LatticeEntry& entry : entries) {
        missing.look_at(entry.successors);
    }
    missing.look_at(maximal_classes(entries));
    missing.tell_limit();
    note_open_supports(entries, findings);
}

}  // namespace korv::tools
