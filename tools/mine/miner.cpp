#include "mine/miner.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "base/itemset_hash.h"
#include "mine/cover.h"

namespace korv::tools {

namespace {

struct SupportAndEssentials {
    Count support = 0;
    std::vector<Itemset> essentials;
};
using ClassesByClosure = std::unordered_map<Itemset, SupportAndEssentials, ItemsetHash>;

bool is_frequent(const Database::ItemColumn& column, const MiningOptions& options) {
    return column.transactions.size() >= options.min_support;
}

/// The depth-first walk over the frequent essential itemsets.
template <typename Cover>
class Walk {
public:
    Walk(const Database& database, const MiningOptions& options, const ReportProgress& report)
        : database_(database), options_(options), report_(report), cover_(database, options.min_support) {}

    ClassesByClosure run() {
        Positions roots;
        for (std::size_t item = 0; item < database_.items.size(); ++item) {
            const bool frequent = is_frequent(database_.items[item], options_);
            if (frequent) {
                roots.push_back(item);
            }
            is_outside_.push_back(frequent || options_.closure_over_all ? 1 : 0);
        }
        // Rare items come first, so that the frequent ones, which can be extended least, have the most
        // candidates.
        std::ranges::stable_sort(
            roots, {}, [this](std::size_t item) { return database_.items[item].transactions.size(); });
        roots_ = roots.size();
        grow({roots, {}});
        return std::move(classes_);
    }

private:
    /// What is known of the itemset whose extensions are looked for.
    struct Node {
        const Positions& candidates;  ///< no other item can extend it
        const Positions& closure;     ///< ascending
    };

    /// Records and extends all extensions of an itemset. An extension by one candidate is itself extended
    /// only by the candidates before that one, so that each itemset is met once. Of these, only those that
    /// extended the itemset are tried: what is not essential and frequent has no such extension.
    void grow(const Node& node) {
        Positions usable;
        const Positions promising = cover_.promising(node.candidates);
        for (std::size_t tried = 0; tried < promising.size(); ++tried) {
            const std::size_t item = promising[tried];
            if (cover_.extend(item)) {
                itemset_.push_back(item);
                visit(node, usable);
                itemset_.pop_back();
                cover_.retract();
                usable.push_back(item);
            }
            if (itemset_.empty()) {
                ++roots_done_;
                report(0.0);
            } else if (itemset_.size() == 1) {
                report(static_cast<double>(tried + 1) / static_cast<double>(promising.size()));
            }
        }
    }

    /// Records the itemset, which extends that of `parent`, and goes on to its extensions.
    void visit(const Node& parent, const Positions& candidates) {
        const Positions covered = cover_.newly_covered(is_outside_);
        Positions closure;
        std::ranges::merge(parent.closure, covered, std::back_inserter(closure));
        record(closure);
        if (itemset_.size() < options_.max_size && !candidates.empty()) {
            set_outside(covered, 0);
            grow({candidates, closure});
            set_outside(covered, 1);
        }
    }

    void set_outside(const Positions& items, char is_outside) {
        for (const std::size_t item : items) {
            is_outside_[item] = is_outside;
        }
    }

    void record(const Positions& closure) {
        SupportAndEssentials& found = classes_[items_of(closure)];
        found.support = cover_.support();
        Itemset essential = items_of(itemset_);
        std::ranges::sort(essential);
        found.essentials.push_back(std::move(essential));
    }

    void report(double current) const {
        if (report_) {
            report_({roots_done_, roots_, classes_.size(), current});
        }
    }

    Itemset items_of(const Positions& positions) const {
        Itemset itemset(positions.size());
        std::ranges::transform(positions, itemset.begin(),
                               [this](std::size_t position) { return database_.items[position].item; });
        return itemset;
    }

    const Database& database_;
    const MiningOptions& options_;
    const ReportProgress& report_;
    Cover cover_;
    Positions itemset_;
    std::vector<char>
        is_outside_;  ///< by item: whether closures can have it, but that of the itemset does not
    ClassesByClosure classes_;
    std::size_t roots_ = 0;
    std::size_t roots_done_ = 0;
};

/// Whether to represent sets of transactions as bit vectors.
bool is_dense(const Database& database, Representation representation) {
    if (representation != Representation::by_density) {
        return representation == Representation::dense;
    }
    constexpr std::uint64_t one_in = 30;
    const auto occurrences = std::accumulate(database.items.begin(), database.items.end(), std::uint64_t{0},
                                             [](std::uint64_t sum, const Database::ItemColumn& column) {
                                                 return sum + column.transactions.size();
                                             });
    return occurrences * one_in >= std::uint64_t{database.lines} * database.items.size();
}

auto by_size(const Itemset& itemset) {
    return std::pair<std::size_t, const Itemset&>(itemset.size(), itemset);
}

std::vector<MinedClass> sorted(ClassesByClosure found) {
    std::vector<MinedClass> classes;
    classes.reserve(found.size());
    while (!found.empty()) {
        auto node = found.extract(found.begin());
        std::ranges::sort(node.mapped().essentials, {}, by_size);
        classes.push_back(
            {std::move(node.key()), node.mapped().support, std::move(node.mapped().essentials)});
    }
    std::ranges::sort(classes, {}, [](const MinedClass& each) { return by_size(each.closure); });
    return classes;
}

}  // namespace

std::vector<MinedClass> mine(const Database& database, const MiningOptions& options,
                             const ReportProgress& report) {
    return sorted(is_dense(database, options.representation)
                      ? Walk<DenseCover>(database, options, report).run()
                      : Walk<SparseCover>(database, options, report).run());
}

}  // namespace korv::tools
