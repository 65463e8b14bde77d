#include "mine_mpi/class_batch.h"

#include <gtest/gtest.h>

#include <utility>

namespace korv::tools {
namespace {

/// Classes of the items 1 to 4, one in as many transactions as its number says. Ranks are one less.
MinedClasses classes_of(const std::vector<std::pair<Rank, Itemset>>& essentials) {
    EssentialTree tree(std::vector<Count>{1, 2, 3, 4});
    MinedClasses classes({{1}, {2}, {3}, {4}});
    for (const auto& [rank, closure] : essentials) {
        classes.add(rank, tree, closure);
    }
    classes.finish(std::move(tree));
    return classes;
}

std::string merged(const std::vector<std::string>& batches) {
    std::string text;
    write_merged(batches, [&text](std::string_view record) { text += record; });
    return text;
}

TEST(ClassBatch, HoldsTheRecordsFromAPositionToAnother) {
    const MinedClasses classes = classes_of({{0, {1}}, {1, {2}}, {2, {1, 3}}, {3, {1, 2, 4}}});
    EXPECT_EQ(merged({batch_of(classes, 1, 3)}), "2\t2\t 2,\n1 3\t3\t 3,\n");
    EXPECT_EQ(merged({batch_of(classes, 3, 3)}), "");
}

TEST(ClassBatch, IsMergedWithOthersBySizeOfTheClosureAndThenByItems) {
    const MinedClasses first = classes_of({{1, {2}}, {3, {1, 2, 4}}});
    const MinedClasses second = classes_of({{0, {1}}, {2, {1, 3}}});
    const std::string all = "1\t1\t 1,\n2\t2\t 2,\n1 3\t3\t 3,\n1 2 4\t4\t 4,\n";
    EXPECT_EQ(merged({batch_of(first, 0, 2), batch_of(second, 0, 2)}), all);
    EXPECT_EQ(merged({batch_of(second, 0, 2), "", batch_of(first, 0, 2)}), all);
}

}  // namespace
}  // namespace korv::tools
