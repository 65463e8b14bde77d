#include "support/program_fixture.h"

#include <random>

namespace korv::test {

Outcome ProgramTest::run_here(const std::filesystem::path& program,
                              const std::vector<std::string>& arguments) const {
    return run({program, arguments, directory_.path()});
}

Outcome ProgramTest::shell_with(const std::vector<std::string>& words, const std::string& script) const {
    std::vector<std::string> arguments = {"-c", script};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return run_here("/bin/bash", arguments);
}

void ProgramTest::put(const std::string& name, const std::string& bytes) const {
    write_file(directory_.path() / name, bytes);
}

std::string random_database(std::uint32_t seed, int items, int transactions) {
    std::mt19937 random(seed);
    std::string text;
    for (int transaction = 0; transaction < transactions; ++transaction) {
        for (int item = 1; item <= items; ++item) {
            text += random() % 3 == 0 ? std::to_string(item) + ' ' : "";
        }
        text += '\n';
    }
    return text;
}

std::string large_database() {
    return random_database(1, 60, 2000);
}

}  // namespace korv::test
