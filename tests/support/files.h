#pragma once

#include <filesystem>
#include <string>

namespace korv::test {

/// A new empty directory, removed with all that is in it at the end of the scope.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// All bytes of a file. Throws std::runtime_error naming the file when it cannot be read.
std::string read_file(const std::filesystem::path& path);

/// The name of a new file in memory, which lasts as long as the process. Thousands of small files on a disk
/// take longer than what is tested.
std::string memory_file();

/// Writes a file of exactly these bytes.
void write_file(const std::filesystem::path& path, const std::string& bytes);

}  // namespace korv::test
