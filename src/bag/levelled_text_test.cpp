#include "bag/levelled_text.h"

#include <gtest/gtest.h>

#include "tests/hostile_text.h"

namespace vndoc6::bag {
namespace {

std::string Escaped(std::string_view text, uint32_t levels) {
  std::string out;
  AppendEscaped(text, levels, out);
  return out;
}

std::string Unescaped(std::string_view text, uint32_t levels) {
  std::string out;
  AppendUnescaped(text, levels, out);
  return out;
}

TEST(LevelledTextTest, SpellsEveryLevel) {
  const struct {
    std::string_view text;
    uint32_t levels;
    std::string_view escaped;
  } cases[] = {
      {"", 3, ""},
      {"plain: =~64, no quote", 3, "plain: =~64, no quote"},
      {"K=~64\"v\":", 0, "K=~64\"v\":"},
      {"K=~64\"v\":", 1, "K^av^A"},
      {"K=~64\"v\":", 9, "K^iv^I"},
      {"K=~64\"v\":", 10, "K^zo10;v^zc10;"},
      {"a\"b^", 1, "a^jb^J"},
      {"a\"b^", 9, "a^rb^R"},
      {"a\"b^", 4000000000, "a^zq4000000000;b^zi4000000000;"},
      {"^a^A^j^J", 1, "^b^B^k^K"},
      {"^i^I^r^R", 1, "^zo10;^zc10;^zq10;^zi10;"},
      {"^zo99;", 1, "^zo100;"},
      // Greedy from the left: the quote belongs to the opening before it.
      {"=~64\":", 1, "^a:"},
      {"=~64=~64\"\":", 1, "=~64^a^A"},
      // Not the one spelling of an escape, so the caret is escaped alone.
      {"^", 1, "^J"},
      {"^^a", 1, "^J^b"},
      {"^s^S^-", 1, "^Js^JS^J-"},
      {"^zo9;", 1, "^Jzo9;"},
      {"^zo010;", 1, "^Jzo010;"},
      {"^zo10", 1, "^Jzo10"},
      {"^zo;^zx10;^z", 1, "^Jzo;^Jzx10;^Jz"},
      // Levels without end: they are somebody's text, and come back.
      {"^zo999999999999999999;", 1, "^zo1000000000000000000;"},
      {"^zo99999999999999999999;", 4294967295, "^zo100000000004294967294;"},
  };
  for (const auto& [text, levels, escaped] : cases) {
    EXPECT_EQ(Escaped(text, levels), escaped) << text;
    EXPECT_EQ(Unescaped(escaped, levels), text) << escaped;
  }
}

TEST(LevelledTextTest, ReadsWhatNobodyEscapedAsItLies) {
  EXPECT_EQ(Unescaped("^", 2), "^");
  EXPECT_EQ(Unescaped("^^x^z^zo9;", 2), "^^x^z^zo9;");
  EXPECT_EQ(Unescaped("^a^A^j^J", 2), "=~64\"\":\"^");
}

TEST(LevelledTextTest, GivesBackAnyBytesFromAnyLevel) {
  vndoc6::testing::Random random(2);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = vndoc6::testing::HostileBytes(random);
    const auto first = static_cast<uint32_t>(vndoc6::testing::Below(random, 13));
    const auto second = static_cast<uint32_t>(vndoc6::testing::Below(random, 13));
    const std::string once = Escaped(text, first);
    const std::string twice = Escaped(text, first + second);
    ASSERT_EQ(Unescaped(once, first), text);
    ASSERT_EQ(Escaped(once, second), twice) << text;
    ASSERT_EQ(Unescaped(twice, second), once) << text;
    if (first > 0) {
      ASSERT_EQ(once.find('"'), once.npos);
    }
    std::string relevelled;
    AppendRelevelled(once, first, second, relevelled);
    ASSERT_EQ(relevelled, Escaped(text, second)) << text;
  }
}

TEST(LevelledTextTest, CostsTheSameHoweverDeep) {
  const std::string bag = "K=~64\"value\":";
  EXPECT_LE(Escaped(bag, 9).size(), bag.size());
}

}  // namespace
}  // namespace vndoc6::bag
