#include "mine_mpi/checkpoint.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "common/atomic_output.h"
#include "common/error.h"
#include "common/input_file.h"

namespace korv::tools {

namespace {

/// What a level file begins with.
struct LevelHead {
    std::uint64_t nodes = 0;     ///< found on the level
    std::uint64_t closures = 0;  ///< of the itemsets of the level
    std::uint64_t bytes = 0;     ///< of these closures
    std::uint64_t hash = 0;      ///< of the head file, and of all that follows
};

/// FNV-1a.
std::uint64_t hash_of_bytes(std::string_view bytes, std::uint64_t hash = 0xCBF29CE484222325) {
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    }
    return hash;
}

template <typename T>
void append(const T& value, std::string& bytes) {
    const std::size_t size = bytes.size();
    bytes.resize(size + sizeof value);
    std::memcpy(bytes.data() + size, &value, sizeof value);
}

/// Takes a value from the beginning of bytes that hold it.
template <typename T>
T take(std::string_view& bytes) {
    T value;
    std::memcpy(&value, bytes.data(), sizeof value);
    bytes.remove_prefix(sizeof value);
    return value;
}

/// What is mined, in lines for people.
std::string description_of(const RankedItems& items, std::uint64_t fingerprint,
                           const MiningOptions& options) {
    return "korv-mine-mpi " KORV_VERSION "\nitems " + std::to_string(items.size()) + "\ntransactions " +
           std::to_string(fingerprint) + "\n--min-support " + std::to_string(options.min_support) +
           "\n--min-joint " + std::to_string(options.min_joint.value_or(options.min_support)) +
           "\n--min-own " + std::to_string(options.min_own) + "\n--max-size " +
           std::to_string(options.max_size) + "\n--closure-items " +
           (options.closure_over_all ? "all" : "frequent") + "\n";
}

/// The first line in which a text differs from another one.
std::string first_other_line(std::string_view text, std::string_view other) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (line != other.substr(0, other.find('\n'))) {
            return std::string(line);
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        other.remove_prefix(std::min(line.size() + 1, other.size()));
    }
    return "nothing";
}

/// The bytes of a file, whatever they are.
std::string bytes_of_file(const std::string& path) {
    InputFile file(path);
    std::string bytes(file.expected_size(), '\0');
    bytes.resize(file.read(bytes.data(), bytes.size()));
    return bytes;
}

[[noreturn]] void refuse(const std::string& path) {
    throw Error(path + ": found other bytes than were written; expected the checkpoint of an earlier run");
}

}  // namespace

Checkpoint::Checkpoint(std::string directory, bool resumes, const RankedItems& items,
                       std::uint64_t fingerprint, const MiningOptions& options)
    : directory_(std::move(directory)),
      head_(directory_ + "/head"),
      description_(description_of(items, fingerprint, options)),
      roots_(items.frequent),
      nodes_kept_(items.frequent) {
    const bool is_there = std::filesystem::exists(head_);
    if (is_there && !resumes) {
        throw Error("--checkpoint: found a checkpoint in " + directory_ +
                    "; expected --resume to go on with it, or another directory");
    }
    if (!is_there && resumes) {
        throw Error("--resume: found no checkpoint in " + directory_ + "; expected that of an earlier run");
    }
    if (is_there) {
        const std::string found = bytes_of_file(head_);
        if (found != description_) {
            throw Error("--resume: found a checkpoint of other transactions or options (" +
                        first_other_line(found, description_) + "); expected " +
                        first_other_line(description_, found));
        }
        while (read_level(kept_.state.size + 1)) {
        }
        return;
    }
    std::error_code problem;
    std::filesystem::create_directories(directory_, problem);
    if (problem) {
        throw Error(directory_ + ": cannot be made: " + problem.message());
    }
    AtomicOutput output(head_);
    output.write(description_);
    output.commit();
}

void Checkpoint::keep(const EssentialTree& tree, const LevelState& state,
                      const std::vector<std::string>& closures) {
    std::string bytes;
    const auto end = static_cast<EssentialTree::Node>(tree.size());
    LevelHead head = {.nodes = end - nodes_kept_, .closures = closures.size()};
    for (EssentialTree::Node node = nodes_kept_; node < end; ++node) {
        append(KeptLevels::Node{tree.parent(node), tree.rank(node), tree.joint(node), tree.support(node)},
               bytes);
    }
    for (const std::string& closure : closures) {
        append(static_cast<std::uint32_t>(closure.size()), bytes);
        head.bytes += closure.size();
    }
    for (const std::string& closure : closures) {
        bytes += closure;
    }
    head.hash = hash_of_bytes(bytes, hash_of_bytes(description_));
    std::string begin;
    append(head, begin);
    AtomicOutput output(path_of_level(state.size));
    output.write(begin);
    output.write(bytes);
    output.commit();
    nodes_kept_ = end;
}

std::string Checkpoint::path_of_level(std::size_t size) const {
    return directory_ + "/level-" + std::to_string(size);
}

/// Reads the file of a level. False where there is none.
bool Checkpoint::read_level(std::size_t size) {
    const std::string path = path_of_level(size);
    if (!std::filesystem::exists(path)) {
        return false;
    }
    const std::string text = bytes_of_file(path);
    std::string_view bytes = text;
    if (bytes.size() < sizeof(LevelHead)) {
        refuse(path);
    }
    const auto head = take<LevelHead>(bytes);
    const bool is_whole = bytes.size() == head.nodes * sizeof(KeptLevels::Node) +
                                              head.closures * sizeof(std::uint32_t) + head.bytes;
    if (!is_whole || hash_of_bytes(bytes, hash_of_bytes(description_)) != head.hash) {
        refuse(path);
    }
    for (std::uint64_t node = 0; node < head.nodes; ++node) {
        kept_.nodes.push_back(take<KeptLevels::Node>(bytes));
    }
    std::vector<std::uint32_t> sizes;
    for (std::uint64_t closure = 0; closure < head.closures; ++closure) {
        sizes.push_back(take<std::uint32_t>(bytes));
    }
    for (const std::uint32_t closure : sizes) {
        kept_.closures.emplace_back(bytes.substr(0, closure));
        bytes.remove_prefix(std::min<std::size_t>(closure, bytes.size()));
    }
    kept_.state = {size, static_cast<EssentialTree::Node>(kept_.closures.size())};
    nodes_kept_ = roots_ + static_cast<EssentialTree::Node>(kept_.nodes.size());
    return true;
}

void Checkpoint::remove() {
    std::error_code ignored;
    for (std::size_t size = 1; std::filesystem::remove(path_of_level(size), ignored); ++size) {
    }
    std::filesystem::remove(head_, ignored);
    std::filesystem::remove(directory_, ignored);
}

}  // namespace korv::tools
