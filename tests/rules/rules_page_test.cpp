#include "rules/rules_page.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "made_rules.h"
#include "rules/page_program.h"

namespace korv::tools {

namespace {

class RulesPageTest : public testing::Test {
protected:
    std::string page(const std::string& title) {
        std::string text;
        write_rules_page(found_, made_.book(8), {input_, title, "", {}, request_, std::nullopt},
                         [&text](std::string_view piece) { text += piece; });
        return text;
    }

    SearchResult found_;
    MadeRules made_{{}};
    RuleInput input_;
    RuleRequest request_;
};

TEST_F(RulesPageTest, HasTitleAndDataInTheGapsOfTheProgram) {
    const std::string text = page("a.dat");
    const PageProgram& program = page_program();
    ASSERT_TRUE(
        text.starts_with(std::string(program.before_title) + "a.dat" + std::string(program.before_data)));
    ASSERT_TRUE(text.ends_with(program.after_data));
    const std::size_t begin = program.before_title.size() + 5 + program.before_data.size();
    const std::string data = text.substr(begin, text.size() - begin - program.after_data.size());
    EXPECT_EQ(data.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
              std::string::npos);
    EXPECT_EQ(data.size() % 4, 0U);
    EXPECT_GT(data.size(), 1000U);
}

TEST_F(RulesPageTest, HasATitleThatIsNoMarkup) {
    const std::string text = page("</title><script>\"&'\xFF");
    EXPECT_NE(text.find("&lt;/title&gt;&lt;script&gt;&quot;&amp;&#39;\xEF\xBF\xBD"), std::string::npos);
    EXPECT_EQ(text.find("</title><script>\""), std::string::npos);
}

TEST_F(RulesPageTest, IsTheSameForTheSameRules) {
    found_.rules = {known_rule(made_.any({1}), made_.none({2}), {4, 5, 3})};
    EXPECT_EQ(page("a"), page("a"));
}

}  // namespace

}  // namespace korv::tools
