#pragma once

#include <mpi.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/error.h"

namespace korv::tools {

/// An Error that all processes throw at the same time, so that they can end in an orderly way.
class SharedError : public Error {
public:
    explicit SharedError(const std::string& message) : Error(message) {}
};

/// The processes of a run, numbered from 0, and what they tell each other.
///
/// All of them call the same operations in the same order, unless an operation says otherwise; whatever fails
/// in MPI ends all of them. Numbers are told as bytes, so all machines must represent them alike.
class Processes {
public:
    /// All processes of MPI, which was initialised.
    Processes();

    int size() const { return size_; }
    int number() const { return number_; }
    bool is_first() const { return number_ == 0; }

    /// Replaces `values` by those of one process.
    template <typename T>
    void broadcast(std::vector<T>& values, int from = 0);
    void broadcast(std::string& text, int from = 0);
    void broadcast(std::vector<std::string>& texts, int from = 0);

    /// Replaces a value by that of one process.
    template <typename T>
    void broadcast_value(T& value, int from = 0);

    /// Called by one process for each call of receive by another.
    template <typename T>
    void send(std::span<const T> values, int to);
    template <typename T>
    std::vector<T> receive(int from) {
        return receive_values<std::vector<T>>(from);
    }

    /// The values of all processes, in their order.
    template <typename T>
    std::vector<T> all_of(const T& value);

    /// The largest number there is. Where no number takes more than two bytes, they are told in two.
    static constexpr std::uint32_t any_number = std::numeric_limits<std::uint32_t>::max();

    /// The values of each process, in their order, in all processes. `largest`: no value is larger, in any of
    /// them; the same in all.
    std::vector<std::uint32_t> all_of(const std::vector<std::uint32_t>& values,
                                      std::uint32_t largest = any_number);

    /// What each process has for this one, in the order of processes. `for_each`: for each process. Values: a
    /// vector or a string.
    template <typename Values>
    std::vector<Values> exchange(std::vector<Values> for_each);

    std::uint64_t sum(std::uint64_t value);

    /// The sums, over all processes, of the values that are for this one. `values`: for each process, one
    /// behind the other; `sizes`: how many, by process; `largest`: no sum is larger; both are the same in
    /// all.
    std::vector<std::uint32_t> sums(std::vector<std::uint32_t> values, const std::vector<int>& sizes,
                                    std::uint32_t largest = any_number);

    /// The same with unions of words of bits.
    std::vector<std::uint64_t> unions(std::vector<std::uint64_t> words, const std::vector<int>& sizes);

    /// The values of each process, in the first one; nothing in the others. Values: a vector or a string.
    template <typename Values>
    std::vector<Values> gathered(Values values);

    /// Does `work` in each process. Where it throws Error in some of them, throws that of the first one in
    /// all, as a SharedError. Memory that does not suffice counts as an Error.
    template <typename Work>
    void together(const Work& work);

    /// What all processes did between two times at which all of them asked.
    struct Usage {
        std::uint64_t bytes = 0;  ///< that they gave to each other
        double slowest = 0.0;     ///< busy seconds of the process that took longest
        double fastest = 0.0;     ///< and of the one that took the least
    };

    /// What they did since they asked last, or since the beginning.
    Usage usage_since();

private:
    /// Counts the processor time within its scope as that of waiting.
    class Waiting;

    void broadcast_bytes(void* bytes, std::size_t size, int from);
    void send_bytes(const void* bytes, std::size_t size, int to);
    void receive_bytes(void* bytes, std::size_t size, int from);
    std::vector<std::uint64_t> exchanged_sizes(const std::vector<std::uint64_t>& sizes);
    void send_and_receive(std::span<const std::byte> out, int to, std::span<std::byte> in, int from);
    void all_bytes(const void* mine, std::size_t size, void* all);
    template <typename Values>
    Values receive_values(int from);
    void throw_first(const std::string& complaint);

    /// How many other processes there are.
    std::size_t others() const { return static_cast<std::size_t>(size_) - 1; }

    template <typename T>
    std::vector<T> all_values(const std::vector<T>& values, MPI_Datatype type);
    template <typename T>
    std::vector<T> reduced(std::vector<T> values, const std::vector<int>& sizes, MPI_Datatype type,
                           MPI_Op operation);

    int size_ = 1;
    int number_ = 0;
    std::uint64_t bytes_ = 0;
    double waited_ = 0.0;
    std::uint64_t bytes_before_ = 0;  ///< when all asked for the usage last
    double busy_before_ = 0.0;        ///< likewise
};

template <typename T>
void Processes::broadcast_value(T& value, int from) {
    static_assert(std::is_trivially_copyable_v<T>);
    broadcast_bytes(&value, sizeof value, from);
}

template <typename T>
void Processes::broadcast(std::vector<T>& values, int from) {
    static_assert(std::is_trivially_copyable_v<T>);
    std::uint64_t size = values.size();
    broadcast_value(size, from);
    values.resize(size);
    broadcast_bytes(values.data(), size * sizeof(T), from);
}

template <typename T>
void Processes::send(std::span<const T> values, int to) {
    static_assert(std::is_trivially_copyable_v<T>);
    const std::uint64_t size = values.size();
    send_bytes(&size, sizeof size, to);
    send_bytes(values.data(), values.size_bytes(), to);
}

template <typename Values>
Values Processes::receive_values(int from) {
    using Value = typename Values::value_type;
    static_assert(std::is_trivially_copyable_v<Value>);
    std::uint64_t size = 0;
    receive_bytes(&size, sizeof size, from);
    Values values(size, Value{});
    receive_bytes(values.data(), size * sizeof(Value), from);
    return values;
}

template <typename Values>
std::vector<Values> Processes::gathered(Values values) {
    using Value = typename Values::value_type;
    if (!is_first()) {
        send(std::span<const Value>(values), 0);
        return {};
    }
    std::vector<Values> all;
    all.push_back(std::move(values));
    for (int other = 1; other < size_; ++other) {
        all.push_back(receive_values<Values>(other));
    }
    return all;
}

template <typename Values>
std::vector<Values> Processes::exchange(std::vector<Values> for_each) {
    if (size_ == 1) {
        return for_each;
    }
    using Value = typename Values::value_type;
    static_assert(std::is_trivially_copyable_v<Value>);
    std::vector<std::uint64_t> sizes;
    for (const Values& values : for_each) {
        sizes.push_back(values.size());
    }
    sizes = exchanged_sizes(sizes);
    std::vector<Values> from_each(for_each.size());
    const auto own = static_cast<std::size_t>(number_);
    from_each[own] = std::move(for_each[own]);
    for (std::size_t step = 1; step < for_each.size(); ++step) {
        const std::size_t to = (own + step) % for_each.size();
        const std::size_t from = (own + for_each.size() - step) % for_each.size();
        from_each[from].resize(sizes[from]);
        send_and_receive(std::as_bytes(std::span<const Value>(for_each[to])), static_cast<int>(to),
                         std::as_writable_bytes(std::span<Value>(from_each[from])), static_cast<int>(from));
        for_each[to] = Values();  // to hold no more than has to be
    }
    return from_each;
}

template <typename T>
std::vector<T> Processes::all_of(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    std::vector<T> values(static_cast<std::size_t>(size_));
    all_bytes(&value, sizeof value, values.data());
    return values;
}

template <typename Work>
void Processes::together(const Work& work) {
    std::string complaint;
    try {
        within_memory(work, [this] { return "in process " + std::to_string(number_); });
    } catch (const Error& error) {
        complaint = error.what();
        complaint = complaint.empty() ? "failed" : complaint;
    }
    throw_first(complaint);
}

}  // namespace korv::tools
