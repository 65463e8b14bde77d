#include "mine/mined_classes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <utility>

namespace korv::tools {

namespace {

/// A number is written like a character of UTF-8: the first byte begins with as many ones as bytes follow it,
/// and the rest of the bits are those of the number, the highest first. So longer texts stand for larger
/// numbers, and texts of one length are in the order of the numbers.
constexpr std::array<std::uint64_t, 5> bounds_by_length = {std::uint64_t{1} << 7U, std::uint64_t{1} << 14U,
                                                           std::uint64_t{1} << 21U, std::uint64_t{1} << 28U,
                                                           std::uint64_t{1} << 35U};

/// Writes a number at `end`, and returns the end of it.
char* put_number(Item number, char* end) {
    if (number < bounds_by_length[0]) {
        *end = static_cast<char>(number);
        return end + 1;
    }
    unsigned following = 1;
    while (number >= bounds_by_length[following]) {
        ++following;
    }
    const unsigned ones = 0xFF00U >> following & 0xFFU;
    *end++ = static_cast<char>(ones | static_cast<unsigned>(std::uint64_t{number} >> 8 * following));
    for (unsigned rest = following; rest > 0; --rest) {
        *end++ = static_cast<char>(number >> 8 * (rest - 1) & 0xFFU);
    }
    return end;
}

/// Reads the number at `begin`, and moves `begin` behind it.
Item take_number(const char*& begin) {
    const auto first = static_cast<unsigned char>(*begin++);
    if (first < bounds_by_length[0]) {
        return first;
    }
    const auto following = static_cast<unsigned>(std::countl_one(first));
    Item number = first & (0xFFU >> (following + 1));
    for (unsigned i = 0; i < following; ++i) {
        number = number << 8U | static_cast<unsigned char>(*begin++);
    }
    return number;
}

// Items in the same transactions multiply essential itemsets, so there can be more than 64 bits can count.
// Then these give the largest number.

std::size_t sum(std::size_t a, std::size_t b) {
    return a > std::numeric_limits<std::size_t>::max() - b ? std::numeric_limits<std::size_t>::max() : a + b;
}

std::size_t product(std::size_t a, std::size_t b) {
    return b != 0 && a > std::numeric_limits<std::size_t>::max() / b ? std::numeric_limits<std::size_t>::max()
                                                                     : a * b;
}

std::size_t digits_of(Count number) {
    std::size_t digits = 1;
    for (; number >= 10; number /= 10) {
        ++digits;
    }
    return digits;
}

}  // namespace

ClassFigures& ClassFigures::operator+=(const ClassFigures& others) {
    classes += others.classes;
    essentials = sum(essentials, others.essentials);
    file_bytes = sum(file_bytes, others.file_bytes);
    rare_bytes += others.rare_bytes;
    largest_closure = std::max(largest_closure, others.largest_closure);
    return *this;
}

void append_encoded(std::span<const Item> itemset, std::string& bytes) {
    const std::size_t before = bytes.size();
    bytes.resize(before + itemset.size() * bounds_by_length.size());
    char* end = bytes.data() + before;
    Item last = 0;
    for (const Item item : itemset) {
        end = put_number(item - last, end);
        last = item;
    }
    bytes.resize(static_cast<std::size_t>(end - bytes.data()));
}

void decode(std::string_view bytes, Itemset& itemset) {
    itemset.clear();
    const char* begin = bytes.data();
    const char* const end = begin + bytes.size();
    for (Item last = 0; begin != end; itemset.push_back(last)) {
        last += take_number(begin);
    }
}

std::uint32_t hash_of_closure(std::string_view encoded) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(encoded));
}

std::size_t text_bytes_of(Item item) {
    return digits_of(item) + 1;
}

MinedClasses::MinedClasses(std::vector<Itemset> items, std::size_t most)
    : items_(std::move(items)), most_(most), slots_(1024), tree_({}) {
    for (const Itemset& each : items_) {
        std::size_t digits = 0;
        for (const Item item : each) {
            digits += digits_of(item);
        }
        digits_.push_back(digits);
    }
}

bool MinedClasses::add(EssentialTree::Node node, const EssentialTree& tree, const Itemset& closure,
                       std::size_t rare_bytes) {
    encoded_.clear();
    append_encoded(closure, encoded_);
    const std::uint32_t hash = hash_of_closure(encoded_);
    return insert(node, tree, encoded_, hash, [&] {
        std::size_t text_bytes = 0;
        for (const Item item : closure) {
            text_bytes += text_bytes_of(item);
        }
        return EncodedClosure{encoded_, hash, closure.size(), text_bytes, rare_bytes};
    });
}

bool MinedClasses::add_encoded(EssentialTree::Node node, const EssentialTree& tree,
                               const EncodedClosure& closure) {
    return insert(node, tree, closure.bytes, closure.hash, [&] { return closure; });
}

/// `describe` is only asked for the closure where it is that of a new class.
template <typename Describe>
bool MinedClasses::insert(EssentialTree::Node node, const EssentialTree& tree, std::string_view encoded,
                          std::uint32_t hash, Describe describe) {
    Slot& slot = slots_[slot_of(hash, encoded)];
    if (slot.position == empty_slot && classes_.size() == most_) {
        return false;
    }
    if (next_.size() <= node) {
        next_.resize(std::max<std::size_t>(tree.size(), node + 1), EssentialTree::none);
    }
    count_essentials(node, tree);
    if (slot.position != empty_slot) {
        Class& known = classes_[slot.position];
        next_[node] = std::exchange(known.last, node);
        return true;
    }
    const EncodedClosure closure = describe();
    slot = {hash, static_cast<std::uint32_t>(classes_.size())};
    const Count support = tree.support(node);
    classes_.push_back({closures_.size(), static_cast<std::uint32_t>(encoded.size()),
                        static_cast<std::uint32_t>(closure.items), node, support});
    closures_ += encoded;
    ++figures_.classes;
    figures_.largest_closure = std::max(figures_.largest_closure, closure.items);
    // "1 2 3", TAB, the support, TAB and a line end.
    figures_.file_bytes = sum(figures_.file_bytes, closure.text_bytes - 1 + 1 + digits_of(support) + 1 + 1);
    figures_.rare_bytes += closure.rare_bytes;
    if (classes_.size() * 2 > slots_.size()) {
        grow_slots();
    }
    return true;
}

bool MinedClasses::holds(std::string_view encoded) const {
    return slots_[slot_of(hash_of_closure(encoded), encoded)].position != empty_slot;
}

/// The position of the slot of the class with this closure, or of the empty one where it belongs.
std::size_t MinedClasses::slot_of(std::uint32_t hash, std::string_view bytes) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = hash & mask;
    while (slots_[i].position != empty_slot &&
           (slots_[i].hash != hash || encoded_closure(classes_[slots_[i].position]) != bytes)) {
        i = (i + 1) & mask;
    }
    return i;
}

void MinedClasses::grow_slots() {
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        std::size_t i = slot.hash & mask;
        while (slot.position != empty_slot && slots_[i].position != empty_slot) {
            i = (i + 1) & mask;
        }
        if (slot.position != empty_slot) {
            slots_[i] = slot;
        }
    }
}

/// Counts each itemset that takes one item of each rank of the node, and the bytes of " 1 2,".
void MinedClasses::count_essentials(EssentialTree::Node node, const EssentialTree& tree) {
    std::size_t itemsets = 1;
    std::size_t size = 0;
    for (EssentialTree::Node each = node; each != EssentialTree::none; each = tree.parent(each)) {
        itemsets = product(itemsets, items_[tree.rank(each)].size());
        ++size;
    }
    figures_.essentials = sum(figures_.essentials, itemsets);
    figures_.file_bytes = sum(figures_.file_bytes, product(itemsets, size + 1));
    for (EssentialTree::Node each = node; each != EssentialTree::none; each = tree.parent(each)) {
        const Rank rank = tree.rank(each);
        figures_.file_bytes =
            sum(figures_.file_bytes, product(itemsets / items_[rank].size(), digits_[rank]));
    }
}

void MinedClasses::finish(EssentialTree tree) {
    tree_ = std::move(tree);
    slots_ = {};
    std::ranges::sort(classes_, [this](const Class& a, const Class& b) { return key_of(a) < key_of(b); });
}

std::size_t MinedClasses::lower_bound(const ClassKey& key) const {
    const auto found =
        std::ranges::lower_bound(classes_, key, {}, [this](const Class& each) { return key_of(each); });
    return static_cast<std::size_t>(found - classes_.begin());
}

void MinedClasses::for_each(std::size_t begin, std::size_t end,
                            const std::function<void(const MinedClass&)>& visit) const {
    // What belongs to a class lies anywhere in memory; so it is asked for some time before it is used.
    constexpr std::size_t ahead = 8;
    MinedClass mined;
    for (std::size_t i = begin; i < end; ++i) {
        if (i + ahead < end) {
            tree_.prefetch(classes_[i + ahead].last);
            __builtin_prefetch(&next_[classes_[i + ahead].last]);
            __builtin_prefetch(closures_.data() + classes_[i + ahead].closure);
        }
        const Class& each = classes_[i];
        decode(encoded_closure(each), mined.closure);
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
