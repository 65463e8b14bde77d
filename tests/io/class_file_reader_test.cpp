#include "io/class_file_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korv {
namespace {

/// What a call of read gives.
struct Record {
    bool read;
    Itemset itemset;
    Count support;
    std::vector<Itemset> essentials;

    bool operator==(const Record&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Record& record) {
    return out << (record.read ? "record " : "no record ") << testing::PrintToString(record.itemset)
               << " support " << record.support << " essentials "
               << testing::PrintToString(record.essentials);
}

/// What the outputs hold before each call, so that it shows what a call left alone.
const Record stale = {false, {98, 99}, 97, {{96}}};

/// A reader over a text.
class Reader : public ::testing::Test {
protected:
    /// The first record of `text`.
    Record parse(const std::string& text) {
        input.str(text);
        reader.rewind();
        return next();
    }

    /// The record at the read position.
    Record next() {
        Itemset itemset = stale.itemset;
        data of_class = {stale.support, stale.essentials};
        const bool read = reader.read(itemset, of_class);
        return {read, itemset, of_class.support, of_class.essentials};
    }

    std::istringstream input;
    ClassFileReader reader{input};
};

// The record as it should be.

TEST_F(Reader, ReadsItemsetSupportAndEssentials) {
    EXPECT_EQ(parse("3 1 2\t5\t 1, 2 3,\n"), (Record{true, {1, 2, 3}, 5, {{1}, {2, 3}}}));
}

TEST_F(Reader, SortsByNumber) {
    EXPECT_EQ(parse("10 9 100\t5\t 10 9,\n"), (Record{true, {9, 10, 100}, 5, {{9, 10}}}));
}

TEST_F(Reader, KeepsEssentialsInTheOrderOfTheRecord) {
    EXPECT_EQ(parse("1 2 3 4\t5\t 4, 2 3, 1, 2,\n").essentials,
              (std::vector<Itemset>{{4}, {2, 3}, {1}, {2}}));
}

TEST_F(Reader, KeepsRepeatedEssentials) {
    EXPECT_EQ(parse("1 2 3\t5\t 2, 2,\n").essentials, (std::vector<Itemset>{{2}, {2}}));
}

TEST_F(Reader, KeepsRepeatedItems) {
    EXPECT_EQ(parse("2 2 1\t4\t 2,\n"), (Record{true, {1, 2, 2}, 4, {{2}}}));
    EXPECT_EQ(parse("2 1 3\t4\t 2 2,\n"), (Record{true, {1, 2, 3}, 4, {{2, 2}}}));
}

TEST_F(Reader, ReadsRecordAfterRecord) {
    EXPECT_EQ(parse("1\t5\t ,\n2 3\t6\t 2,\n"), (Record{true, {1}, 5, {{}}}));
    EXPECT_EQ(next(), (Record{true, {2, 3}, 6, {{2}}}));
}

TEST_F(Reader, LeavesTheReadPositionAfterTheLineEnd) {
    parse("1\t5\t ,\n2 3\t6\t 2,\n");
    EXPECT_EQ(input.tellg(), std::streampos(7));
}

// Essentials are kept by their size alone.

TEST_F(Reader, DropsEssentialAsLargeAsItsItemset) {
    EXPECT_EQ(parse("1 4\t3\t 4 1,\n"), (Record{true, {1, 4}, 3, {}}));
}

TEST_F(Reader, DropsEssentialOfOtherItemsAsLargeAsItsItemset) {
    EXPECT_EQ(parse("1 4\t3\t 7 9, 1,\n").essentials, (std::vector<Itemset>{{1}}));
}

TEST_F(Reader, RepeatedItemsCountInTheSizes) {
    EXPECT_EQ(parse("1 2\t3\t 2 2,\n").essentials, std::vector<Itemset>{});
    EXPECT_EQ(parse("1 1 2\t3\t 1 2,\n").essentials, (std::vector<Itemset>{{1, 2}}));
}

TEST_F(Reader, KeepsEssentialLargerThanItsItemset) {
    EXPECT_EQ(parse("1\t3\t 7 8,\n").essentials, (std::vector<Itemset>{{7, 8}}));
}

TEST_F(Reader, KeepsAnEmptyEssential) {
    EXPECT_EQ(parse("1 2\t6\t ,\n"), (Record{true, {1, 2}, 6, {{}}}));
    EXPECT_EQ(parse("1 2\t6\t 1, , 2,\n").essentials, (std::vector<Itemset>{{1}, {}, {2}}));
}

// Records without items.

TEST_F(Reader, ParsesARecordWithoutItemsButYieldsFalse) {
    EXPECT_EQ(parse("\t5\t 1, 2 3,\n4\t6\t ,\n"), (Record{false, {}, 5, {{1}, {2, 3}}}));
    EXPECT_EQ(next(), (Record{true, {4}, 6, {{}}}));
}

TEST_F(Reader, DropsAnEmptyEssentialOfARecordWithoutItems) {
    EXPECT_EQ(parse("\t5\t , 1,\n"), (Record{false, {}, 5, {{1}}}));
}

TEST_F(Reader, ItemPartWithoutDigitsHasNoItems) {
    EXPECT_EQ(parse("none\t5\t ,\n"), (Record{false, {}, 5, {}}));
}

// Separators.

TEST_F(Reader, TabMayFollowABlank) {
    EXPECT_EQ(parse("1 2 \t5\t 1,\n"), (Record{true, {1, 2}, 5, {{1}}}));
}

TEST_F(Reader, AnyByteButDigitAndTabSeparatesItems) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (c != '\t' && (c < '0' || c > '9')) {
            EXPECT_EQ(parse(std::string("1") + c + "2\t5\t 1,\n"), (Record{true, {1, 2}, 5, {{1}}}))
                << "byte " << byte;
        }
    }
}

TEST_F(Reader, AnyByteButDigitAndCommaSeparatesItemsOfAnEssential) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (c != ',' && (c < '0' || c > '9')) {
            EXPECT_EQ(parse(std::string("3\t5\t 1") + c + "2,\n"), (Record{true, {3}, 5, {{1, 2}}}))
                << "byte " << byte;
        }
    }
}

TEST_F(Reader, ItemPartMayRunOverSeveralLines) {
    EXPECT_EQ(parse("\n\n1\r\n2,x\n3\t5\t 1,\n"), (Record{true, {1, 2, 3}, 5, {{1}}}));
}

TEST_F(Reader, MinusIsASeparator) {
    EXPECT_EQ(parse("-7 3-2\t5\t -3,\n"), (Record{true, {2, 3, 7}, 5, {{3}}}));
}

TEST_F(Reader, EssentialMayHoldTabsAndLineEnds) {
    EXPECT_EQ(parse("1 2 3\t5\t 1\t\n2,\n").essentials, (std::vector<Itemset>{{1, 2}}));
}

// The support and the characters around it.

TEST_F(Reader, SupportIsZeroWhenNoDigitFollowsTheTab) {
    EXPECT_EQ(parse("1 2\t \t 1,\n"), (Record{true, {1, 2}, 0, {{1}}}));
    EXPECT_EQ(parse("1 2\t-,1,\n"), (Record{true, {1, 2}, 0, {{1}}}));
}

// The blank stands for the support, the 6 for the separator.
TEST_F(Reader, DigitAfterABlankInPlaceOfTheSupportIsLost) {
    EXPECT_EQ(parse("1 2\t 6\t 1,\n"), (Record{true, {1, 2}, 0, {{1}}}));
}

TEST_F(Reader, DigitsAfterTwoBlanksInPlaceOfTheSupportAreItemsOfTheEssential) {
    EXPECT_EQ(parse("1 2 3\t  6\t 1,\n"), (Record{true, {1, 2, 3}, 0, {{1, 6}}}));
}

TEST_F(Reader, AnyCharacterEndsTheSupport) {
    EXPECT_EQ(parse("1 2\t6x 1,\n"), (Record{true, {1, 2}, 6, {{1}}}));
    EXPECT_EQ(parse("1 2\t6, 1,\n"), (Record{true, {1, 2}, 6, {{1}}}));
}

TEST_F(Reader, SkipsExactlyOneCharacterAfterTheOneThatEndsTheSupport) {
    EXPECT_EQ(parse("1 2\t6\t71,\n").essentials, (std::vector<Itemset>{{1}}));
    EXPECT_EQ(parse("1 2\t6\t\n1,\n").essentials, (std::vector<Itemset>{{1}}));
}

// The comma after the support is the spare character, so the essential runs to the comma of the next line.
TEST_F(Reader, CommaInPlaceOfTheSpareCharacterClosesNothing) {
    EXPECT_EQ(parse("1 2\t6\t,\n3 4\t5\t 3,\n"), (Record{true, {1, 2}, 6, {{3, 3, 4, 5}}}));
}

// The end of a record.

TEST_F(Reader, CharacterAfterACommaIsLost) {
    EXPECT_EQ(parse("1 2 3\t5\t 1,2 3,\n").essentials, (std::vector<Itemset>{{1}, {3}}));
    EXPECT_EQ(parse("1 2 3\t5\t 1,23,\n").essentials, (std::vector<Itemset>{{1}, {3}}));
}

TEST_F(Reader, CommaAfterACommaIsLost) {
    EXPECT_EQ(parse("1 2\t5\t 1,,\n3\t4\t 9,\n").essentials, (std::vector<Itemset>{{1}, {3, 4, 9}}));
}

TEST_F(Reader, CarriageReturnAfterTheLastCommaContinuesTheRecord) {
    EXPECT_EQ(parse("1 2\t5\t 1,\r\n3 4\t6\t 3,\n"), (Record{true, {1, 2}, 5, {{1}, {3, 3, 4, 6}}}));
    EXPECT_FALSE(next().read);
}

TEST_F(Reader, BlankAfterTheLastCommaContinuesTheRecord) {
    EXPECT_EQ(parse("1 2\t5\t 1, \n3 4\t6\t 3,\n"), (Record{true, {1, 2}, 5, {{1}, {3, 3, 4, 6}}}));
    EXPECT_FALSE(next().read);
}

TEST_F(Reader, RecordWithoutACommaSwallowsTheNext) {
    EXPECT_EQ(parse("1 2\t5\t 1\n3 4\t6\t 3,\n5\t7\t ,\n"), (Record{true, {1, 2}, 5, {{1, 3, 3, 4, 6}}}));
    EXPECT_EQ(next(), (Record{true, {5}, 7, {{}}}));
}

// Numbers.

TEST_F(Reader, NumbersWrapAt32Bits) {
    EXPECT_EQ(parse("4294967295 4294967296 4294967299\t4294967298\t 4294967297,\n"),
              (Record{true, {0, 3, 4294967295U}, 2, {{1}}}));
}

// 99999999999 = 23 * 4294967296 + 1215752191.
TEST_F(Reader, NumbersWrapMoreThanOnce) {
    EXPECT_EQ(parse("99999999999\t99999999999\t ,\n"), (Record{true, {1215752191U}, 1215752191U, {{}}}));
}

TEST_F(Reader, LeadingZerosDoNotCount) {
    EXPECT_EQ(parse("007 0\t05\t 08,\n"), (Record{true, {0, 7}, 5, {{8}}}));
}

// The end of the file.

TEST_F(Reader, IsNotAtTheEndBeforeItWasMet) {
    parse("1\t5\t ,\n");
    EXPECT_FALSE(reader.is_at_end());
}

TEST_F(Reader, EndAfterALineEndIsNoRecord) {
    parse("1\t5\t ,\n");
    EXPECT_EQ(next(), (Record{false, {}, 0, {}}));
    EXPECT_TRUE(reader.is_at_end());
}

TEST_F(Reader, EmptyFileHasNoRecord) {
    EXPECT_EQ(parse(""), (Record{false, {}, 0, {}}));
    EXPECT_TRUE(reader.is_at_end());
}

TEST_F(Reader, PrintsNothing) {
    testing::internal::CaptureStdout();
    parse("1\t5\t ,\n");
    next();
    next();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Reader, LastRecordWithoutItsLineEndIsARecord) {
    EXPECT_EQ(parse("1 2\t5\t 1,"), (Record{true, {1, 2}, 5, {{1}}}));
    EXPECT_TRUE(reader.is_at_end());
}

TEST_F(Reader, ItemsCutByTheEndAreARecordWithAnEmptyEssential) {
    EXPECT_EQ(parse("1 2"), (Record{true, {1, 2}, 0, {{}}}));
}

TEST_F(Reader, SupportCutByTheEndIsKept) {
    EXPECT_EQ(parse("1 2\t56"), (Record{true, {1, 2}, 56, {{}}}));
}

TEST_F(Reader, EssentialCutByTheEndIsKept) {
    EXPECT_EQ(parse("1 2 3\t5\t 1, 2 3"), (Record{true, {1, 2, 3}, 5, {{1}, {2, 3}}}));
}

TEST_F(Reader, CommaAndBlankBeforeTheEndAddAnEmptyEssential) {
    EXPECT_EQ(parse("1 2 3\t5\t 1, "), (Record{true, {1, 2, 3}, 5, {{1}, {}}}));
}

/// Text followed by what cannot be read.
class UnreadableAfterText : public std::streambuf {
public:
    explicit UnreadableAfterText(std::string text) : text_(std::move(text)) {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
    }

private:
    int_type underflow() override { throw std::runtime_error("read error"); }

    std::string text_;
};

TEST_F(Reader, EndsWhereTheFileCannotBeReadOn) {
    UnreadableAfterText text("1 2\t5\t 1");
    input.basic_ios<char>::rdbuf(&text);
    EXPECT_EQ(next(), (Record{true, {1, 2}, 5, {{1}}}));
    EXPECT_TRUE(reader.is_at_end());
}

/// Text that goes on after its end was met once, as that of a terminal.
class TextAfterItsEnd : public std::streambuf {
public:
    TextAfterItsEnd(std::string before, std::string after)
        : before_(std::move(before)), after_(std::move(after)) {
        setg(before_.data(), before_.data(), before_.data() + before_.size());
    }

private:
    int_type underflow() override {
        if (std::exchange(ended_, true)) {
            setg(after_.data(), after_.data(), after_.data() + after_.size());
            return traits_type::to_int_type(after_.front());
        }
        return traits_type::eof();
    }

    std::string before_;
    std::string after_;
    bool ended_ = false;
};

TEST_F(Reader, ReadsNothingBehindTheEndOfTheFile) {
    TextAfterItsEnd text("1 2\t5", "7\t 1,\n");
    input.basic_ios<char>::rdbuf(&text);
    EXPECT_EQ(next(), (Record{true, {1, 2}, 5, {{}}}));
    EXPECT_TRUE(reader.is_at_end());
}

// rewind.

TEST_F(Reader, RewindAfterTheEndReadsTheFirstRecordAgain) {
    parse("1\t5\t ,\n");
    next();
    reader.rewind();
    EXPECT_EQ(next(), (Record{true, {1}, 5, {{}}}));
}

TEST_F(Reader, RewindAmidstTheFileReadsTheFirstRecordAgain) {
    parse("1\t5\t ,\n2\t6\t ,\n");
    reader.rewind();
    EXPECT_EQ(next(), (Record{true, {1}, 5, {{}}}));
}

TEST_F(Reader, RewindClearsFailAndBad) {
    parse("1\t5\t ,\n");
    input.setstate(std::ios::failbit | std::ios::badbit);
    reader.rewind();
    EXPECT_EQ(next(), (Record{true, {1}, 5, {{}}}));
}

/// Text that can only be read on, as that of a pipe.
class ForwardOnlyText : public std::streambuf {
public:
    explicit ForwardOnlyText(std::string text) : text_(std::move(text)) {
        setg(text_.data(), text_.data(), text_.data() + text_.size());
    }

private:
    std::string text_;
};

TEST_F(Reader, RewindOfWhatCannotBeRepositionedReadsOn) {
    ForwardOnlyText text("1\t5\t ,\n2\t6\t ,\n");
    input.basic_ios<char>::rdbuf(&text);
    EXPECT_EQ(next(), (Record{true, {1}, 5, {{}}}));
    reader.rewind();
    EXPECT_EQ(next(), (Record{true, {2}, 6, {{}}}));
    EXPECT_FALSE(next().read);
    EXPECT_TRUE(reader.is_at_end());
}

// Damaged files, against a model of what the reader makes of any text.

/// The numbers in `text`: its longest runs of digits, ascending.
Itemset numbers_in(std::string_view text) {
    constexpr std::string_view digits = "0123456789";
    Itemset numbers;
    std::size_t begin = text.find_first_of(digits);
    while (begin != std::string_view::npos) {
        const std::size_t end = std::min(text.find_first_not_of(digits, begin), text.size());
        Count number = 0;
        for (const char digit : text.substr(begin, end - begin)) {
            number = 10 * number + static_cast<Count>(digit - '0');
        }
        numbers.push_back(number);
        begin = text.find_first_of(digits, end);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

/// A text and how far it was read.
struct ModelInput {
    std::string_view text;
    std::size_t position = 0;
    bool end_met = false;

    /// What lies before the next `terminator`, which is passed; without one, all the rest.
    std::string_view take_until(char terminator) {
        const std::size_t end = text.find(terminator, position);
        const std::string_view taken = text.substr(position, end - position);
        end_met = end == std::string_view::npos;
        position = end_met ? text.size() : end + 1;
        return taken;
    }

    /// The next character; at the end a zero.
    char take() {
        end_met = position == text.size();
        return end_met ? '\0' : text[position++];
    }
};

/// What a call is to make of `input`.
Record model_call(ModelInput& input) {
    Record record{};
    record.itemset = numbers_in(input.take_until('\t'));
    record.read = !record.itemset.empty();

    std::string support;
    while (!input.end_met) {
        const char c = input.take();
        if (input.end_met || c < '0' || c > '9') {
            break;
        }
        support += c;
    }
    record.support = support.empty() ? 0 : numbers_in(support).front();

    if (!input.end_met) {
        input.take();
    }
    char after_comma = ' ';
    do {
        const Itemset essential = input.end_met ? Itemset{} : numbers_in(input.take_until(','));
        if (essential.size() != record.itemset.size()) {
            record.essentials.push_back(essential);
        }
        if (!input.end_met) {
            after_comma = input.take();
        }
    } while (!input.end_met && after_comma != '\n');
    return record;
}

class DamagedFile : public Reader {
protected:
    /// Compares every call up to the end of the text.
    void expect_read_as_modelled(const std::string& text) {
        ModelInput model{text};
        input.str(text);
        reader.rewind();
        while (!model.end_met) {
            const Record expected = model_call(model);
            ASSERT_FALSE(reader.is_at_end()) << "in " << testing::PrintToString(text);
            ASSERT_EQ(next(), expected) << "in " << testing::PrintToString(text);
        }
        EXPECT_TRUE(reader.is_at_end()) << "in " << testing::PrintToString(text);
    }
};

TEST_F(DamagedFile, CutAtAnyByteIsReadByTheRules) {
    const std::string whole = "3 1 12\t25\t 1, 12 3,\n4\t7\t ,\n1 4\t30\t 4 1, 1,\n";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        expect_read_as_modelled(whole.substr(0, length));
    }
}

TEST_F(DamagedFile, WithoutAnyOneByteIsReadByTheRules) {
    const std::string whole = "3 1 12\t25\t 1, 12 3,\n4\t7\t ,\n1 4\t30\t 4 1, 1,\n";
    for (std::size_t position = 0; position < whole.size(); ++position) {
        expect_read_as_modelled(std::string(whole).erase(position, 1));
    }
}

TEST_F(DamagedFile, EveryShortTextIsReadByTheRules) {
    constexpr std::string_view alphabet = "12 \t,\n";
    constexpr std::size_t longest = 5;
    std::vector<std::string> texts = {""};
    for (std::size_t length = 0; length < longest; ++length) {
        std::vector<std::string> longer;
        for (const std::string& text : texts) {
            for (const char c : alphabet) {
                longer.push_back(text + c);
            }
        }
        texts = std::move(longer);
        for (const std::string& text : texts) {
            // Begun as a record, so that the texts differ in the later fields too.
            for (const char* const start : {"", "1 2\t", "1 2\t3\t ", "1 2\t3\t 1,"}) {
                expect_read_as_modelled(start + text);
            }
        }
    }
}

}  // namespace
}  // namespace korv
