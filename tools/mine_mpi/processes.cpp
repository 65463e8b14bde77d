#include "mine_mpi/processes.h"

#include <algorithm>
#include <ctime>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace korv::tools {

namespace {

/// MPI counts in int.
constexpr std::size_t most_bytes = std::size_t{1} << 30;

double processor_seconds() {
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Calls `visit(begin, size)` for pieces of so many bytes that MPI can count them.
template <typename Visit>
void for_each_piece(std::size_t size, Visit visit) {
    for (std::size_t begin = 0; begin < size; begin += most_bytes) {
        visit(begin, static_cast<int>(std::min(most_bytes, size - begin)));
    }
}

int count_of(std::size_t size) {
    if (size > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw std::length_error("more than 2147483647 numbers at once between processes");
    }
    return static_cast<int>(size);
}

bool fits_two_bytes(std::uint32_t number) {
    return number <= std::numeric_limits<std::uint16_t>::max();
}

template <typename To, typename From>
std::vector<To> converted(const std::vector<From>& values) {
    std::vector<To> result(values.size());
    std::ranges::transform(values, result.begin(), [](From value) { return static_cast<To>(value); });
    return result;
}

/// Where the values of each process begin among all.
std::vector<int> begins_of(const std::vector<int>& counts) {
    std::vector<int> begins(counts.size());
    std::exclusive_scan(counts.begin(), counts.end(), begins.begin(), 0);
    return begins;
}

std::size_t total_of(const std::vector<int>& counts) {
    const std::size_t total =
        std::accumulate(counts.begin(), counts.end(), std::size_t{0},
                        [](std::size_t sum, int count) { return sum + static_cast<std::size_t>(count); });
    return static_cast<std::size_t>(count_of(total));
}

}  // namespace

class Processes::Waiting {
public:
    explicit Waiting(Processes& processes) : processes_(processes), begin_(processor_seconds()) {}
    ~Waiting() { processes_.waited_ += processor_seconds() - begin_; }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

private:
    Processes& processes_;
    double begin_;
};

Processes::Processes() {
    MPI_Comm_size(MPI_COMM_WORLD, &size_);
    MPI_Comm_rank(MPI_COMM_WORLD, &number_);
}

void Processes::broadcast(std::string& text, int from) {
    std::vector<char> bytes(text.begin(), text.end());
    broadcast(bytes, from);
    text.assign(bytes.begin(), bytes.end());
}

void Processes::broadcast(std::vector<std::string>& texts, int from) {
    std::uint64_t size = texts.size();
    broadcast_value(size, from);
    texts.resize(size);
    for (std::string& text : texts) {
        broadcast(text, from);
    }
}

void Processes::broadcast_bytes(void* bytes, std::size_t size, int from) {
    if (size_ == 1) {
        return;
    }
    const Waiting waiting(*this);
    bytes_ += number_ == from ? size * others() : 0;
    for_each_piece(size, [&](std::size_t begin, int count) {
        MPI_Bcast(static_cast<char*>(bytes) + begin, count, MPI_BYTE, from, MPI_COMM_WORLD);
    });
}

void Processes::send_bytes(const void* bytes, std::size_t size, int to) {
    const Waiting waiting(*this);
    bytes_ += size;
    for_each_piece(size, [&](std::size_t begin, int count) {
        MPI_Send(static_cast<const char*>(bytes) + begin, count, MPI_BYTE, to, 0, MPI_COMM_WORLD);
    });
}

void Processes::receive_bytes(void* bytes, std::size_t size, int from) {
    const Waiting waiting(*this);
    for_each_piece(size, [&](std::size_t begin, int count) {
        MPI_Recv(static_cast<char*>(bytes) + begin, count, MPI_BYTE, from, 0, MPI_COMM_WORLD,
                 MPI_STATUS_IGNORE);
    });
}

void Processes::all_bytes(const void* mine, std::size_t size, void* all) {
    const Waiting waiting(*this);
    bytes_ += size * others();
    MPI_Allgather(mine, count_of(size), MPI_BYTE, all, count_of(size), MPI_BYTE, MPI_COMM_WORLD);
}

std::vector<std::uint32_t> Processes::all_of(const std::vector<std::uint32_t>& values,
                                             std::uint32_t largest) {
    if (size_ == 1) {
        return values;
    }
    return fits_two_bytes(largest)
               ? converted<std::uint32_t>(all_values(converted<std::uint16_t>(values), MPI_UINT16_T))
               : all_values(values, MPI_UINT32_T);
}

template <typename T>
std::vector<T> Processes::all_values(const std::vector<T>& values, MPI_Datatype type) {
    const std::vector<int> counts = all_of(count_of(values.size()));
    std::vector<T> all(total_of(counts));
    const Waiting waiting(*this);
    bytes_ += values.size() * sizeof(T) * others();
    MPI_Allgatherv(values.data(), count_of(values.size()), type, all.data(), counts.data(),
                   begins_of(counts).data(), type, MPI_COMM_WORLD);
    return all;
}

std::vector<std::uint64_t> Processes::exchanged_sizes(const std::vector<std::uint64_t>& sizes) {
    std::vector<std::uint64_t> exchanged(sizes.size());
    const Waiting waiting(*this);
    MPI_Alltoall(sizes.data(), 1, MPI_UINT64_T, exchanged.data(), 1, MPI_UINT64_T, MPI_COMM_WORLD);
    return exchanged;
}

/// Both in pieces of so many bytes that MPI can count them. The one that is done first waits for the other.
void Processes::send_and_receive(std::span<const std::byte> out, int to, std::span<std::byte> in, int from) {
    const Waiting waiting(*this);
    bytes_ += out.size();
    while (!out.empty() || !in.empty()) {
        const std::size_t given = std::min(most_bytes, out.size());
        const std::size_t taken = std::min(most_bytes, in.size());
        MPI_Sendrecv(out.data(), static_cast<int>(given), MPI_BYTE, given > 0 ? to : MPI_PROC_NULL, 0,
                     in.data(), static_cast<int>(taken), MPI_BYTE, taken > 0 ? from : MPI_PROC_NULL, 0,
                     MPI_COMM_WORLD, MPI_STATUS_IGNORE);
        out = out.subspan(given);
        in = in.subspan(taken);
    }
}

std::uint64_t Processes::sum(std::uint64_t value) {
    const std::vector<std::uint64_t> values = all_of(value);
    return std::accumulate(values.begin(), values.end(), std::uint64_t{0});
}

std::vector<std::uint32_t> Processes::sums(std::vector<std::uint32_t> values, const std::vector<int>& sizes,
                                           std::uint32_t largest) {
    if (size_ == 1) {
        return values;
    }
    return fits_two_bytes(largest) ? converted<std::uint32_t>(reduced(converted<std::uint16_t>(values), sizes,
                                                                      MPI_UINT16_T, MPI_SUM))
                                   : reduced(std::move(values), sizes, MPI_UINT32_T, MPI_SUM);
}

std::vector<std::uint64_t> Processes::unions(std::vector<std::uint64_t> words,
                                             const std::vector<int>& sizes) {
    if (size_ == 1) {
        return words;
    }
    return reduced(std::move(words), sizes, MPI_UINT64_T, MPI_BOR);
}

template <typename T>
std::vector<T> Processes::reduced(std::vector<T> values, const std::vector<int>& sizes, MPI_Datatype type,
                                  MPI_Op operation) {
    count_of(values.size());
    std::vector<T> result(static_cast<std::size_t>(sizes[static_cast<std::size_t>(number_)]));
    const Waiting waiting(*this);
    bytes_ += (values.size() - result.size()) * sizeof(T);
    MPI_Reduce_scatter(values.data(), result.data(), sizes.data(), type, operation, MPI_COMM_WORLD);
    return result;
}

void Processes::throw_first(const std::string& complaint) {
    const std::vector<char> has_failed = all_of(static_cast<char>(complaint.empty() ? 0 : 1));
    const auto first = std::ranges::find(has_failed, 1);
    if (first != has_failed.end()) {
        std::string text = complaint;
        broadcast(text, static_cast<int>(first - has_failed.begin()));
        throw SharedError(text);
    }
}

Processes::Usage Processes::usage_since() {
    const double busy = processor_seconds() - waited_;
    Usage usage;
    usage.bytes = sum(bytes_ - bytes_before_);
    const std::vector<double> all = all_of(busy - busy_before_);
    usage.slowest = std::ranges::max(all);
    usage.fastest = std::ranges::min(all);
    bytes_before_ = bytes_;
    busy_before_ = busy;
    return usage;
}

}  // namespace korv::tools
