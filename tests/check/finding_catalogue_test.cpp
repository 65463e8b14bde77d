#include "check/finding_catalogue.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace korv::tools {
namespace {

TEST(FindingCatalogue, HasADifferentCodeForEachKind) {
    std::set<std::string_view> codes;
    for (const FindingDescription& each : finding_catalogue()) {
        EXPECT_EQ(&description(each.kind), &each);
        EXPECT_EQ(each.code.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos);
        EXPECT_TRUE(each.meaning.ends_with('.'));
        codes.insert(each.code);
    }
    EXPECT_EQ(codes.size(), finding_catalogue().size());
}

TEST(FindingCatalogue, IsATableOfTabs) {
    EXPECT_TRUE(
        catalogue_text().starts_with("other-file\terror\t-\tThe file is one of another kind.\n"
                                     "compressed\terror\tmended\tThe file is compressed.\n"));
}

}  // namespace
}  // namespace korv::tools
