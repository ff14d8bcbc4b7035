#include "vndoc6/automation/text.h"

#include <gtest/gtest.h>

#include <iterator>

#include "automation/case_folding.h"
#include "tests/hostile_text.h"

namespace vndoc6::automation {
namespace {

using namespace std::string_literals;

TEST(TextTest, ConvertsEveryLengthOfSequence) {
  const struct {
    Text text;
    std::string bytes;
  } cases[] = {
      {u"", ""},
      {u"plain ASCII, longer than one block"s, "plain ASCII, longer than one block"},
      {u"a\0b"s, "a\0b"s},
      {u"\x7F\x80\x7FF\x800\xFFFF"s, "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
      {u"sixteen letters.\u00E4 and more of them"s, "sixteen letters.\xC3\xA4 and more of them"},
      {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {u"\xD800x\xDC00"s, "\xED\xA0\x80x\xED\xB0\x80"},
      {u"\xDC00\xD800"s, "\xED\xB0\x80\xED\xA0\x80"},
  };
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(ToUtf8(text), bytes);
    EXPECT_EQ(FromUtf8(bytes), text);
  }
}

TEST(TextTest, ReplacesEveryByteThatBelongsToNoSequence) {
  EXPECT_EQ(FromUtf8("\x80x\xFF"), u"\uFFFDx\uFFFD");
  EXPECT_EQ(FromUtf8("\xC0\x80\xC1\xBF"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromUtf8("\xE0\x9F\xBF"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromUtf8("\xF0\x8F\xBF\xBF"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromUtf8("\xE2\x82"), u"\uFFFD\uFFFD");
  EXPECT_EQ(FromUtf8("\xE2\x82z\xC3\xA4"), u"\uFFFD\uFFFDz\u00E4");
}

TEST(TextTest, GivesBackAnySequenceOfUnits) {
  vndoc6::testing::Random random(1);
  for (int round = 0; round < 5000; ++round) {
    const Text text = vndoc6::testing::HostileText(random, 20);
    ASSERT_EQ(FromUtf8(ToUtf8(text)), text);
  }
}

TEST(TextTest, AppendsBehindWhatIsThere) {
  std::string bytes = "a";
  AppendUtf8(u"\u00E4b", bytes);
  EXPECT_EQ(bytes, "a\xC3\xA4"s + "b");
  Text text = u"a";
  AppendFromUtf8(bytes, text);
  EXPECT_EQ(text, u"aa\u00E4b");
}

TEST(TextTest, FoldsCaseAlikeInEveryLocale) {
  EXPECT_EQ(FoldCase(u"Step AZ@[`{ 09"), u"step az@[`{ 09");
  EXPECT_EQ(FoldCase(u"\u00C4\u00D7\u00DE\u00DF\u0178\u017F"), u"\u00E4\u00D7\u00FE\u00DF\u00FFs");
  // A pair that alternates, the dotted capital I that has no simple folding, a titlecase letter.
  EXPECT_EQ(FoldCase(u"\u0100\u0101\u0102\u0130\u01C5"), u"\u0101\u0101\u0103\u0130\u01C6");
  EXPECT_EQ(FoldCase(u"\u03A3\u03C2\u1E9E\u212A\u13F8\uAB70"), u"\u03C3\u03C3\u00DFk\u13F0\u13A0");
  EXPECT_EQ(FoldCase(u"\U00010400\U0001E921\U0010FFFF"), u"\U00010428\U0001E943\U0010FFFF");
  EXPECT_EQ(FoldCase(u"\xD801\xDFFFZ\xD801"), u"\xD801\xDFFFz\xD801"s);
}

TEST(TextTest, ComparesFolded) {
  EXPECT_TRUE(EqualsFolded(u"", u""));
  EXPECT_TRUE(EqualsFolded(u"STRA\u1E9EE \u03A3", u"stra\u00DFe \u03C2"));
  EXPECT_FALSE(EqualsFolded(u"step", u"steps"));
  EXPECT_FALSE(EqualsFolded(u"\u0130", u"i"));
}

TEST(TextTest, KeepsTheFoldingTableInOrder) {
  uint32_t previous = 0;
  for (size_t i = 0; i < kCaseFoldingRows; ++i) {
    const CaseFoldingRow& row = kCaseFolding[i];
    EXPECT_TRUE(previous < row.first && row.first <= row.last) << row.first;
    EXPECT_EQ((row.last - row.first) % row.step, 0U) << row.first;
    EXPECT_EQ(FoldCodePoint(row.last), row.last + static_cast<uint32_t>(row.delta));
    previous = row.last;
  }
}

TEST(TextTest, FoldsOnlyAsciiInNames) {
  EXPECT_EQ(AsciiLower(u"File.VND\u00C4@["), u"file.vnd\u00C4@[");
  EXPECT_TRUE(EqualsAsciiFolded("NewStep", u"NEWsTEP"));
  EXPECT_FALSE(EqualsAsciiFolded("NewStep", u"NewSteps"));
  EXPECT_FALSE(EqualsAsciiFolded("k", u"\u212A"));
}

}  // namespace
}  // namespace vndoc6::automation
