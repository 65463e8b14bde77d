#include "mine_mpi/class_batch.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "io/class_record.h"

namespace korv::tools {

namespace {

/// What a process tells of a record: followed by the closure of its key, and the record.
struct Head {
    std::uint32_t items;
    std::uint32_t closure_bytes;
    std::uint64_t record_bytes;
};

/// Reads a batch, record by record.
class BatchReader {
public:
    explicit BatchReader(std::string_view batch) : left_(batch) { advance(); }

    bool is_at_end() const { return record_.empty(); }  // no record is
    const ClassKey& key() const { return key_; }
    std::string_view record() const { return record_; }

    void advance() {
        record_ = {};
        if (left_.empty()) {
            return;
        }
        Head head;
        std::memcpy(&head, left_.data(), sizeof head);
        left_.remove_prefix(sizeof head);
        key_ = {head.items, take(head.closure_bytes)};
        record_ = take(head.record_bytes);
    }

private:
    std::string_view take(std::size_t bytes) {
        const std::string_view taken = left_.substr(0, bytes);
        left_.remove_prefix(bytes);
        return taken;
    }

    std::string_view left_;
    ClassKey key_;
    std::string_view record_;
};

}  // namespace

std::string batch_of(const MinedClasses& classes, std::size_t begin, std::size_t end) {
    std::string batch;
    std::size_t position = begin;
    classes.for_each(begin, end, [&](const MinedClass& each) {
        const ClassKey key = classes.key(position++);
        const std::size_t before = batch.size();
        batch.append(sizeof(Head), '\0');
        batch += key.closure;
        const std::size_t record = batch.size();
        append_class_record(each.closure, each.support, each.essentials, batch);
        const Head head = {key.items, static_cast<std::uint32_t>(key.closure.size()), batch.size() - record};
        std::memcpy(batch.data() + before, &head, sizeof head);
    });
    return batch;
}

void write_merged(const std::vector<std::string>& batches,
                  const std::function<void(std::string_view)>& write) {
    const auto is_later = [](const BatchReader& a, const BatchReader& b) { return b.key() < a.key(); };
    std::vector<BatchReader> readers;  // a heap
    for (const std::string& batch : batches) {
        if (!batch.empty()) {
            readers.emplace_back(batch);
        }
    }
    std::ranges::make_heap(readers, is_later);
    while (!readers.empty()) {
        std::ranges::pop_heap(readers, is_later);
        write(readers.back().record());
        readers.back().advance();
        if (readers.back().is_at_end()) {
            readers.pop_back();
        } else {
            std::ranges::push_heap(readers, is_later);
        }
    }
}

}  // namespace korv::tools
