#include "markup.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <limits>

namespace vndoc6::drawing {
namespace {

TEST(Escaped, LeavesNothingThatMarkupReads) {
  EXPECT_EQ(Escaped(u"<a href='x'>\"&"), "&lt;a href=&#39;x&#39;&gt;&quot;&amp;");
  EXPECT_EQ(Escaped(u"größer\t取\U0001F600"), "größer\t取\U0001F600");
}

TEST(Escaped, ReplacesWhatMarkupCannotHold) {
  const char16_t text[] = {u'a', 0, 0xD800, u'b', 0xDC00, 0xFFFE, 0x1B, 0x85};
  EXPECT_EQ(Escaped({text, 8}), "a\uFFFD\uFFFDb\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Number, IsShort) {
  EXPECT_EQ(Number(12), "12");
  EXPECT_EQ(Number(0.125), "0.12");
  EXPECT_EQ(Number(-0.001), "0");
  EXPECT_EQ(Number(1.5), "1.5");
  EXPECT_EQ(Number(100), "100");
  EXPECT_EQ(Number(std::numeric_limits<double>::infinity()), "0");
}

TEST(Colour, HasRedInItsLowByte) {
  EXPECT_EQ(Colour(0x0080FF), "#ff8000");
  EXPECT_EQ(Colour(-1), "#ffffff");
}

TEST(SniffImage, TellsTypeAndSize) {
  const std::vector<uint8_t> gif = {'G', 'I', 'F', '8', '9', 'a', 3, 0, 4, 1};
  EXPECT_STREQ(SniffImage(gif).type, "image/gif");
  EXPECT_EQ(SniffImage(gif).width, 3);
  EXPECT_EQ(SniffImage(gif).height, 260);
  const std::vector<uint8_t> jpeg = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 0, 0, 0xFF,
                                     0xC0, 0,    17,   8,    0, 9, 0, 7, 3};
  EXPECT_STREQ(SniffImage(jpeg).type, "image/jpeg");
  EXPECT_EQ(SniffImage(jpeg).width, 7);
  EXPECT_EQ(SniffImage(jpeg).height, 9);
}

TEST(SniffImage, NamesMetafilesThatAreNotShown) {
  std::vector<uint8_t> wmf = {0xD7, 0xCD, 0xC6, 0x9A, 0,    0, 0xF6, 0xFF,
                              0,    0,    0x56, 5,    0xA0, 5, 0xA0, 5};
  wmf.resize(22);
  EXPECT_EQ(SniffImage(wmf).type, nullptr);
  EXPECT_STREQ(SniffImage(wmf).name, "WMF");
  EXPECT_NEAR(SniffImage(wmf).width, 91.73, 0.01) << "from -10 to 1366, of 1440 an inch";
  EXPECT_EQ(SniffImage(wmf).height, 96);
  std::vector<uint8_t> emf(44);
  emf[0] = 1;
  emf[16] = 31;
  emf[20] = 15;
  std::copy_n(" EMF", 4, emf.begin() + 40);
  EXPECT_STREQ(SniffImage(emf).name, "EMF");
  EXPECT_EQ(SniffImage(emf).width, 32);
  EXPECT_EQ(SniffImage(emf).height, 16);
  std::vector<uint8_t> plain = {1, 0, 9, 0, 0, 3};
  plain.resize(18);
  EXPECT_STREQ(SniffImage(plain).name, "WMF");
  EXPECT_STREQ(SniffImage({1, 2, 3}).name, "?");
}

TEST(SniffImage, BytesThatEndTooEarlyOrAreNoneHaveNoType) {
  EXPECT_EQ(SniffImage({}).type, nullptr);
  EXPECT_EQ(SniffImage({'B', 'M'}).type, nullptr);
  EXPECT_EQ(SniffImage({0xD7, 0xCD, 0xC6, 0x9A, 0, 0}).type, nullptr);
  EXPECT_EQ(SniffImage({0xFF, 0xD8, 0xFF, 0xE0}).width, 0);
}

}  // namespace
}  // namespace vndoc6::drawing
