#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/process.h"

namespace korv::test {

/// Tests of a program as a process that runs in a directory of its own.
class ProgramTest : public ::testing::Test {
protected:
    /// Runs a program to its end.
    Outcome run_here(const std::filesystem::path& program, const std::vector<std::string>& arguments) const;

    /// Runs a script of bash, in which "$0", "$1" and so on are these words.
    Outcome shell_with(const std::vector<std::string>& words, const std::string& script) const;

    /// Writes a file in the directory.
    void put(const std::string& name, const std::string& bytes) const;

    /// The files in the directory.
    Files files() const { return read_files(directory_.path()); }

    TemporaryDirectory directory_;
};

/// Lines of transactions that hold each item from 1 to `items` about every third time.
std::string random_database(std::uint32_t seed, int items, int transactions);

/// A database whose classes take far longer than any test: 60 items, each in about every third of 2,000
/// transactions.
std::string large_database();

}  // namespace korv::test
