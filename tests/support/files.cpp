#include "files.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace korv::test {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (fs::temp_directory_path() / "korv-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary directory like " + name);
    }
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string read_file(const fs::path& path) {
    const std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void write_file(const fs::path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

}  // namespace korv::test
