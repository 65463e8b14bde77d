#include "mine/mined_classes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <utility>

namespace korv::tools {

namespace {

constexpr std::uint32_t empty_slot = std::numeric_limits<std::uint32_t>::max();

/// A number is written like a character of UTF-8: the first byte begins with as many ones as bytes follow it,
/// and the rest of the bits are those of the number, the highest first. So longer texts stand for larger
/// numbers, and texts of one length are in the order of the numbers.
constexpr std::array<std::uint64_t, 5> bounds_by_length = {std::uint64_t{1} << 7U, std::uint64_t{1} << 14U,
                                                           std::uint64_t{1} << 21U, std::uint64_t{1} << 28U,
                                                           std::uint64_t{1} << 35U};

void append_number_bytes(Item number, std::string& bytes) {
    if (number < bounds_by_length[0]) {
        bytes += static_cast<char>(number);
        return;
    }
    unsigned following = 1;
    while (number >= bounds_by_length[following]) {
        ++following;
    }
    const unsigned ones = 0xFF00U >> following & 0xFFU;
    bytes += static_cast<char>(ones | static_cast<unsigned>(std::uint64_t{number} >> 8 * following));
    for (unsigned rest = following; rest > 0; --rest) {
        bytes += static_cast<char>(number >> 8 * (rest - 1) & 0xFFU);
    }
}

/// Takes the number at the beginning of `bytes` away.
Item take_number(std::string_view& bytes) {
    const auto first = static_cast<unsigned char>(bytes.front());
    const auto following = static_cast<unsigned>(std::countl_one(first));
    Item number = first & (0xFFU >> (following + 1));
    for (unsigned i = 1; i <= following; ++i) {
        number = number << 8U | static_cast<unsigned char>(bytes[i]);
    }
    bytes.remove_prefix(following + 1);
    return number;
}

std::size_t digits_of(Count number) {
    std::size_t digits = 1;
    for (; number >= 10; number /= 10) {
        ++digits;
    }
    return digits;
}

}  // namespace

void append_encoded(const Itemset& itemset, std::string& bytes) {
    Item before = 0;
    for (const Item item : itemset) {
        append_number_bytes(item - before, bytes);
        before = item;
    }
}

void decode(std::string_view bytes, Itemset& itemset) {
    itemset.clear();
    Item before = 0;
    while (!bytes.empty()) {
        before += take_number(bytes);
        itemset.push_back(before);
    }
}

MinedClasses::MinedClasses(std::vector<Itemset> items)
    : items_(std::move(items)), slots_(1024, empty_slot), tree_({}) {
    for (const Itemset& each : items_) {
        std::size_t digits = 0;
        for (const Item item : each) {
            digits += digits_of(item);
        }
        digits_.push_back(digits);
    }
}

void MinedClasses::add(EssentialTree::Node node, const EssentialTree& tree, const Itemset& closure) {
    encoded_.clear();
    append_encoded(closure, encoded_);
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(encoded_));
    std::uint32_t& slot = slot_of(hash, encoded_);
    if (next_.size() <= node) {
        next_.resize(std::max<std::size_t>(tree.size(), node + 1), EssentialTree::none);
    }
    count_essentials(node, tree);
    if (slot != empty_slot) {
        next_[node] = classes_[slot].last;
        classes_[slot].last = node;
        return;
    }
    slot = static_cast<std::uint32_t>(classes_.size());
    const Count support = tree.support(node);
    classes_.push_back({closures_.size(), static_cast<std::uint32_t>(encoded_.size()),
                        static_cast<std::uint32_t>(closure.size()), hash, node, support});
    closures_ += encoded_;
    largest_closure_ = std::max(largest_closure_, closure.size());
    count_bytes_of_closure(closure, support);
    if (classes_.size() * 2 > slots_.size()) {
        grow_slots();
    }
}

/// The slot of the class with this closure, or the empty one where it belongs.
std::uint32_t& MinedClasses::slot_of(std::uint32_t hash, std::string_view bytes) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t position = hash & mask;
    while (slots_[position] != empty_slot) {
        const Class& found = classes_[slots_[position]];
        if (found.hash == hash && bytes_of(found) == bytes) {
            break;
        }
        position = (position + 1) & mask;
    }
    return slots_[position];
}

void MinedClasses::grow_slots() {
    std::ranges::fill(slots_, empty_slot);
    slots_.resize(slots_.size() * 2, empty_slot);
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = 0; i < classes_.size(); ++i) {
        std::size_t position = classes_[i].hash & mask;
        while (slots_[position] != empty_slot) {
            position = (position + 1) & mask;
        }
        slots_[position] = static_cast<std::uint32_t>(i);
    }
}

/// Adds the bytes of "1 2 3", TAB, the support, TAB and a line end.
void MinedClasses::count_bytes_of_closure(const Itemset& closure, Count support) {
    for (const Item item : closure) {
        file_bytes_ += digits_of(item);
    }
    file_bytes_ += closure.size() - 1 + 1 + digits_of(support) + 1 + 1;
}

/// Counts each itemset that takes one item of each rank of the node, and the bytes of " 1 2,".
void MinedClasses::count_essentials(EssentialTree::Node node, const EssentialTree& tree) {
    std::size_t itemsets = 1;
    std::size_t size = 0;
    for (EssentialTree::Node each = node; each != EssentialTree::none; each = tree.parent(each)) {
        itemsets *= items_[tree.rank(each)].size();
        ++size;
    }
    essentials_ += itemsets;
    file_bytes_ += itemsets * (size + 1);
    for (EssentialTree::Node each = node; each != EssentialTree::none; each = tree.parent(each)) {
        const Rank rank = tree.rank(each);
        file_bytes_ += itemsets / items_[rank].size() * digits_[rank];
    }
}

void MinedClasses::finish(EssentialTree tree) {
    tree_ = std::move(tree);
    slots_ = {};
    std::ranges::sort(classes_, [this](const Class& a, const Class& b) {
        return a.items != b.items ? a.items < b.items : bytes_of(a) < bytes_of(b);
    });
}

void MinedClasses::for_each(const std::function<void(const MinedClass&)>& visit) const {
    MinedClass mined;
    for (const Class& each : classes_) {
        decode(bytes_of(each), mined.closure);
        mined.support = each.support;
        std::size_t essentials = 0;
        for (EssentialTree::Node node = each.last; node != EssentialTree::none; node = next_[node]) {
            put_essentials(node, essentials, mined.essentials);
        }
        mined.essentials.resize(essentials);
        if (essentials > 1) {
            std::ranges::sort(mined.essentials, {}, [](const Itemset& itemset) {
                return std::pair<std::size_t, const Itemset&>(itemset.size(), itemset);
            });
        }
        visit(mined);
    }
}

/// Puts each itemset that takes one item of each rank of the node into `essentials`, from `position` on,
/// which is moved behind them.
void MinedClasses::put_essentials(EssentialTree::Node node, std::size_t& position,
                                  std::vector<Itemset>& essentials) const {
    const std::size_t first = position;
    essentials.resize(std::max(essentials.size(), first + 1));
    essentials[position++].clear();
    for (EssentialTree::Node each = node; each != EssentialTree::none; each = tree_.parent(each)) {
        const Itemset& twins = items_[tree_.rank(each)];
        const std::size_t end = position;
        // A copy of each itemset for each twin but the first, which goes into the itemsets themselves.
        for (std::size_t twin = 1; twin < twins.size(); ++twin) {
            for (std::size_t i = first; i < end; ++i, ++position) {
                essentials.resize(std::max(essentials.size(), position + 1));
                essentials[position] = essentials[i];
                essentials[position].push_back(twins[twin]);
            }
        }
        for (std::size_t i = first; i < end; ++i) {
            essentials[i].push_back(twins.front());
        }
    }
    for (std::size_t i = first; i < position; ++i) {
        std::ranges::sort(essentials[i]);
    }
}

}  // namespace korv::tools
