#include "mine_mpi/divided_classes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <unordered_set>
#include <utility>

namespace korv::tools {

namespace {

/// What processes tell each other of an essential itemset, followed by its closure.
struct Head {
    EssentialTree::Node node;
    std::uint32_t hash;
    std::uint32_t bytes;
    std::uint32_t items;
    std::uint64_t text_bytes;
    std::uint64_t rare_bytes;
};

/// Calls `visit(node, closure)` for all itemsets that processes told of, until it returns false.
template <typename Visit>
void for_each_told(const std::vector<std::string>& texts, Visit visit) {
    for (const std::string& text : texts) {
        for (std::size_t position = 0; position < text.size();) {
            Head head;
            std::memcpy(&head, text.data() + position, sizeof head);
            position += sizeof head;
            const EncodedClosure closure = {std::string_view(text).substr(position, head.bytes), head.hash,
                                            head.items, head.text_bytes, head.rare_bytes};
            position += head.bytes;
            if (!visit(head.node, closure)) {
                return;
            }
        }
    }
}

}  // namespace

DividedClasses::DividedClasses(Processes& processes, const std::vector<Itemset>& items, std::size_t most)
    : processes_(processes),
      most_(most),
      own_(items),
      for_each_(static_cast<std::size_t>(processes.size())) {}

void DividedClasses::put(EssentialTree::Node node, const EncodedClosure& closure) {
    const Head head = {node,
                       closure.hash,
                       static_cast<std::uint32_t>(closure.bytes.size()),
                       static_cast<std::uint32_t>(closure.items),
                       closure.text_bytes,
                       closure.rare_bytes};
    std::array<char, sizeof head> bytes;
    std::memcpy(bytes.data(), &head, sizeof head);
    // Tables of classes look at the lower bits.
    const std::uint64_t process = std::uint64_t{closure.hash} * for_each_.size() >> 32U;
    for_each_[process].append(bytes.data(), bytes.size()).append(closure.bytes);
}

bool DividedClasses::add(const EssentialTree& tree, std::size_t itemsets) {
    std::vector<std::string> received = processes_.exchange(std::move(for_each_));
    const bool may_be_too_many = itemsets > most_ - figures_.classes;
    const EssentialTree::Node end = may_be_too_many ? end_of_room(received) : EssentialTree::none;
    for_each_told(received, [&](EssentialTree::Node node, const EncodedClosure& closure) {
        return node < end && own_.add_encoded(node, tree, closure);
    });
    for_each_ = std::move(received);
    for (std::string& text : for_each_) {
        text.clear();  // which keeps its memory
    }
    figures_ = {};
    for (const ClassFigures& each : processes_.all_of(own_.figures())) {
        figures_ += each;
    }
    return end == EssentialTree::none;
}

/// The first node whose class would be one too many, or none.
EssentialTree::Node DividedClasses::end_of_room(const std::vector<std::string>& received) const {
    std::vector<EssentialTree::Node> firsts;  // of new classes
    std::unordered_set<std::string_view> closures;
    for_each_told(received, [&](EssentialTree::Node node, const EncodedClosure& closure) {
        if (!own_.holds(closure.bytes) && closures.insert(closure.bytes).second) {
            firsts.push_back(node);
        }
        return true;
    });
    std::vector<EssentialTree::Node> of_all = processes_.all_of(firsts);
    std::ranges::sort(of_all);
    const std::size_t room = most_ - figures_.classes;
    return room < of_all.size() ? of_all[room] : EssentialTree::none;
}

}  // namespace korv::tools
