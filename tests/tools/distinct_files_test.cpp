#include "common/distinct_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/files.h"
#include "support/process.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

class DistinctFiles : public ::testing::Test {
protected:
    void SetUp() override { test::write_file(path("in"), "text"); }

    std::string path(const std::string& name) const { return (directory_.path() / name).string(); }

    static std::string complaint_about(const std::vector<std::string>& inputs,
                                       const std::vector<std::string>& outputs) {
        const auto named = [](const std::vector<std::string>& paths, const std::string& purpose) {
            std::vector<NamedFile> files;
            for (const std::string& each : paths) {
                files.push_back({each, purpose + std::to_string(files.size() + 1)});
            }
            return files;
        };
        return complaint_of([&] { require_distinct(named(inputs, "input "), named(outputs, "output ")); });
    }

    test::TemporaryDirectory directory_;
};

TEST_F(DistinctFiles, MayExistOrNot) {
    test::write_file(path("out"), "text");
    EXPECT_EQ(complaint_about({path("in")}, {path("out"), path("new"), path("newer")}), "");
}

TEST_F(DistinctFiles, AreNotAnInputAndAnOutput) {
    EXPECT_EQ(complaint_about({path("other"), path("in")}, {path("in")}),
              path("in") + ": is both input 2 and output 1; expected two files");
}

TEST_F(DistinctFiles, AreNotTheSameByLinks) {
    std::filesystem::create_symlink("in", path("link"));
    std::filesystem::create_hard_link(path("in"), path("hard"));
    const std::string by_the_parent = "../" + directory_.path().filename().string() + "/in";
    for (const std::string& name : {std::string("link"), std::string("hard"), by_the_parent}) {
        EXPECT_EQ(complaint_about({path("in")}, {path(name)}),
                  path(name) + ": is both input 1 and output 1; expected two files");
    }
}

TEST_F(DistinctFiles, AreNotTheSameByADescriptor) {
    const test::Descriptor open = test::open_file(path("in"), O_RDWR);
    const std::string descriptor = "/dev/fd/" + std::to_string(open.number());
    EXPECT_EQ(complaint_about({path("in")}, {descriptor}),
              descriptor + ": is both input 1 and output 1; expected two files");
    EXPECT_EQ(complaint_about({descriptor}, {path("in")}),
              path("in") + ": is both input 1 and output 1; expected two files");
}

TEST_F(DistinctFiles, AreNotTwoOutputsOfOneNewName) {
    std::filesystem::create_symlink("new", path("link"));
    EXPECT_EQ(complaint_about({}, {path("new"), path("link")}),
              path("link") + ": is both output 1 and output 2; expected two files");
}

TEST_F(DistinctFiles, AreNotTwoOutputsToOnePipe) {
    const test::Channel pipe = test::make_pipe();
    const std::string descriptor = "/dev/fd/" + std::to_string(pipe.write.number());
    EXPECT_EQ(complaint_about({}, {descriptor, descriptor}),
              descriptor + ": is both output 1 and output 2; expected two files");
}

TEST_F(DistinctFiles, MayBeTheSameDevice) {
    EXPECT_EQ(complaint_about({"/dev/null"}, {"/dev/null", "/dev/null"}), "");
}

TEST_F(DistinctFiles, OfAWrongPathAreReported) {
    EXPECT_EQ(complaint_about({}, {path("missing/out")}),
              path("missing/out") + ": cannot be created: No such file or directory");
}

}  // namespace
}  // namespace korv::tools
