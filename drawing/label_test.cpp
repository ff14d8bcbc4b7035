#include "label.h"

#include <gtest/gtest.h>

namespace vndoc6::drawing {
namespace {

using Lines = std::vector<Text>;

TEST(WrapText, BreaksBetweenWords) {
  EXPECT_EQ(WrapText(u"Check the supplier", 6, false), (Lines{u"Check the", u"supplier"}));
  EXPECT_EQ(WrapText(u"one\r\ntwo\nthree", 50, false), (Lines{u"one", u"two", u"three"}));
  EXPECT_EQ(WrapText(u"well-known", 3.5, false), (Lines{u"well-", u"known"}));
  EXPECT_EQ(WrapText(u"", 5, false), Lines{});
}

TEST(WrapText, BreaksAWordOnlyWhereItAloneIsTooWide) {
  EXPECT_EQ(WrapText(u"an abcdefghkm", 3, false), (Lines{u"an", u"abcde", u"fghk", u"m"}));
}

TEST(WrapText, BreaksBetweenIdeographsButNotBeforeTheirFullStop) {
  EXPECT_EQ(WrapText(u"取締役会の承認", 4.5, false), (Lines{u"取締役会", u"の承認"}));
  EXPECT_EQ(WrapText(u"取締役会。", 4.5, false), (Lines{u"取締役", u"会。"}));
}

TEST(WrapText, BreaksKoreanBetweenItsWords) {
  EXPECT_EQ(WrapText(u"주문을 확인한다", 5, false), (Lines{u"주문을", u"확인한다"}));
}

TEST(WrapText, KeepsPairsAndMarksTogether) {
  EXPECT_EQ(WrapText(u"\U0001F600\U0001F600", 1.2, false), (Lines{u"\U0001F600", u"\U0001F600"}));
  EXPECT_EQ(WrapText(u"e\u0301e\u0301", 0.7, false), (Lines{u"e\u0301", u"e\u0301"}));
}

TEST(CutLines, TellsThatSomethingIsMissing) {
  Lines lines{u"one", u"two", u"three"};
  CutLines(lines, 2);
  EXPECT_EQ(lines, (Lines{u"one", u"tw\u2026"}));
}

TEST(RunsRightToLeft, FirstLetterDecides) {
  EXPECT_TRUE(RunsRightToLeft(u"12 - הסחורה OK"));
  EXPECT_TRUE(RunsRightToLeft(u"«مرحبا»"));
  EXPECT_FALSE(RunsRightToLeft(u"OK הסחורה"));
  EXPECT_FALSE(RunsRightToLeft(u"12 - "));
}

}  // namespace
}  // namespace vndoc6::drawing
