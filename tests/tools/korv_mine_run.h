#pragma once

#include <string>
#include <vector>

#include "support/program_fixture.h"

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

/// korv-mine as a process.
class KorvMine : public ProgramTest {
protected:
    Outcome mine(const std::vector<std::string>& arguments) const {
        return run_here(KORV_MINE_PROGRAM, arguments);
    }

    /// Runs a script of bash, in which "$0" is korv-mine.
    Outcome shell(const std::string& script) const { return shell_with({KORV_MINE_PROGRAM}, script); }
};

}  // namespace korv::test
