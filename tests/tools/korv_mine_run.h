#pragma once

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/process.h"

namespace korv::test {

inline const std::string small_database = "1 3\n1 3\n2 3\n2 4\n2 4\n";
inline const std::string small_classes =
    "1\t2\t 1,\n"
    "4\t2\t 4,\n"
    "1 3\t3\t 3,\n"
    "2 4\t3\t 2,\n"
    "1 2 3 4\t5\t 2 3,\n";

inline const std::string small_baskets =
    "first,survived\nfirst,survived\nthird,survived\nthird,died\nthird,died\n";
inline const std::string small_names = "1\tfirst\n2\tsurvived\n3\tthird\n4\tdied\n";
inline const std::string small_basket_classes =
    "1\t2\t 1,\n"
    "4\t2\t 4,\n"
    "1 2\t3\t 2,\n"
    "3 4\t3\t 3,\n"
    "1 2 3 4\t5\t 2 3,\n";

/// A database whose classes take far longer than any test: 60 items, each in about every third transaction.
inline std::string large_database() {
    std::mt19937 random(1);
    std::string text;
    for (int transaction = 0; transaction < 2000; ++transaction) {
        for (int item = 0; item < 60; ++item) {
            text += random() % 3 == 0 ? std::to_string(item) + ' ' : "";
        }
        text += '\n';
    }
    return text;
}

/// korv-mine as a process that runs in a directory of its own.
class KorvMine : public ::testing::Test {
protected:
    Outcome mine(const std::vector<std::string>& arguments) const {
        return run({KORV_MINE_PROGRAM, arguments, directory_.path()});
    }

    /// Runs a script of bash, in which "$0" is korv-mine.
    Outcome shell(const std::string& script) const {
        return run({"/bin/bash", {"-c", script, KORV_MINE_PROGRAM}, directory_.path()});
    }

    void put(const std::string& name, const std::string& bytes) const {
        write_file(directory_.path() / name, bytes);
    }

    Files files() const { return read_files(directory_.path()); }

    TemporaryDirectory directory_;
};

}  // namespace korv::test
