#include "io/Input_Output_Manager.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/files.h"

namespace korv {
namespace {

using test::read_file;
using test::TemporaryDirectory;
using test::write_file;

constexpr auto end_message = "fin de fichier\n";

/// What a call of read_in_a_line gives.
struct Record {
    bool read;
    Itemset itemset;
    Count support;
    std::vector<Itemset> essentials;

    bool operator==(const Record&) const = default;
};

/// What the outputs hold before each call, so that it shows what a call left alone.
const Record stale = {false, {98, 99}, 97, {{96}}};

/// A reader over a text, with its output file in a temporary directory.
class InputOutputManager : public ::testing::Test {
protected:
    InputOutputManager() : manager(input, output_path()) {}

    /// The first record of `text`.
    Record parse(const std::string& text) {
        input.str(text);
        manager.rewind();
        return next();
    }

    /// The record at the read position.
    Record next() {
        Record record = stale;
        record.read = manager.read_in_a_line(record.itemset, record.support, record.essentials);
        return record;
    }

    std::string output_path() const { return (directory_.path() / "lattice.txt").string(); }

private:
    TemporaryDirectory directory_;

protected:
    std::istringstream input;
    Input_Output_Manager manager;
};

// The class file.

TEST_F(InputOutputManager, ReadsRecordAfterRecord) {
    EXPECT_EQ(parse("1\t5\t ,\n3 2\t6\t 2,\n"), (Record{true, {1}, 5, {{}}}));
    EXPECT_EQ(next(), (Record{true, {2, 3}, 6, {{2}}}));
}

TEST_F(InputOutputManager, RecordWithoutItemsIsParsedButYieldsFalse) {
    EXPECT_EQ(parse("\t5\t 1, 2 3,\n"), (Record{false, {}, 5, {{1}, {2, 3}}}));
}

TEST_F(InputOutputManager, EndAfterALineEndIsNoRecordAndNoMessage) {
    parse("1\t5\t ,\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(next(), (Record{false, {}, 0, {}}));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(InputOutputManager, SecondCallAtTheEndPrintsTheMessage) {
    parse("1\t5\t ,\n");
    next();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(next().read);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), end_message);
}

TEST_F(InputOutputManager, EveryCallAfterTheEndPrintsTheMessage) {
    parse("");
    testing::internal::CaptureStdout();
    next();
    next();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(end_message) + end_message);
}

TEST_F(InputOutputManager, CallAfterTheEndLeavesTheOutputsAlone) {
    parse("");
    testing::internal::CaptureStdout();
    EXPECT_EQ(next(), stale);
    testing::internal::GetCapturedStdout();
}

TEST_F(InputOutputManager, CallAfterALastRecordWithoutItsLineEndPrintsTheMessage) {
    parse("1 2\t5\t 1,");
    testing::internal::CaptureStdout();
    EXPECT_FALSE(next().read);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), end_message);
}

TEST_F(InputOutputManager, ReadsTheFirstRecordAgainAfterRewind) {
    parse("1\t5\t ,\n2\t6\t ,\n");
    next();
    next();
    manager.rewind();
    EXPECT_EQ(next(), (Record{true, {1}, 5, {{}}}));
}

// The lattice file.

TEST_F(InputOutputManager, CreatesAnEmptyOutputFile) {
    EXPECT_EQ(read_file(output_path()), "");
}

TEST_F(InputOutputManager, EmptiesAnExistingOutputFile) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "Lattice.txt").string();
    write_file(path, "of an earlier run\n");
    const Input_Output_Manager other(input, path);
    EXPECT_EQ(read_file(path), "");
}

TEST_F(InputOutputManager, WritesBasketsToTheOutputFile) {
    manager.write_out_basket({2, 5, 11});
    manager.write_out_basket({});
    manager.write_out_basket({7});
    manager.flush();
    EXPECT_EQ(read_file(output_path()), "2 5 11 7 ");
}

TEST_F(InputOutputManager, ReadingWritesNothing) {
    parse("1 2\t5\t 1,\n");
    manager.flush();
    EXPECT_EQ(read_file(output_path()), "");
}

TEST_F(InputOutputManager, ReadsWhenItsOutputFileCannotBeCreated) {
    const TemporaryDirectory directory;
    input.str("1 2\t5\t 1,\n");
    testing::internal::CaptureStderr();
    Input_Output_Manager other(input, (directory.path() / "missing" / "Lattice.txt").string());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(other.fail());
    Record record{};
    EXPECT_TRUE(other.read_in_a_line(record.itemset, record.support, record.essentials));
    EXPECT_EQ(record.itemset, (Itemset{1, 2}));
}

TEST_F(InputOutputManager, NeitherReadsNorClosesTheInputByItself) {
    const TemporaryDirectory directory;
    write_file(directory.path() / "classes", "1\t5\t ,\n");
    std::ifstream file(directory.path() / "classes");
    { const Input_Output_Manager other(file, (directory.path() / "Lattice.txt").string()); }
    EXPECT_TRUE(file.is_open());
    EXPECT_EQ(file.tellg(), std::streampos(0));
}

}  // namespace
}  // namespace korv
