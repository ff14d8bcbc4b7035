#include "templates/tag_text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace vndoc6 {
namespace {

Text Repeat(TextView part, size_t count) {
  Text text;
  for (size_t i = 0; i < count; ++i) text += part;
  return text;
}

TEST(TagText, FieldsBecomeTags) {
  struct Case {
    const char16_t* value;
    const char16_t* expected;
  };
  constexpr Case kCases[] = {
      {u"{\\rtf1 a{\\field{\\*\\fldinst NAME}{\\fldrslt x}}b}", u"{\\rtf1 a{<NAME>}b}"},
      {u"{\\rtf1{\\field\\fldedit{\\*\\fldinst  MERGEFIELD  Title \\\\* MERGEFORMAT }"
       u"{\\fldrslt {\\b old}}}}",
       u"{\\rtf1{<Title>}}"},
      {u"{\\rtf1{\\field{\\*\\fldinst {\\rtlch\\f1 mergefield }{\\b\\f2 \"Two words\"}}}}",
       u"{\\rtf1{<Two words>}}"},
      // Words go on over groups and line ends, which mean nothing.
      {u"{\\rtf1{\\field{\\fldinst Ti{\\b t\r\nle}}}}", u"{\\rtf1{<Title>}}"},
      // Escaped characters stay escaped.
      {u"{\\rtf1{\\field{\\*\\fldinst A\\{\\'e4\\}\\u228 ?}}}",
       u"{\\rtf1{<A\\{\\'e4\\}\\u228 ?>}}"},
      {u"{\\rtf1{\\field{\\*\\fldinst m\\u178 2}}}", u"{\\rtf1{<m\\u178 2>}}"},
      {u"{\\rtf1 \\{\\field\\} {\\field{\\*\\fldinst N}}}", u"{\\rtf1 \\{\\field\\} {<N>}}"},
      // Fields in the result go with it; those of an instruction have instructions of their own.
      {u"{\\rtf1{\\field{\\*\\fldinst Outer {\\field{\\*\\fldinst Inner}}}"
       u"{\\fldrslt {\\field{\\*\\fldinst Gone}}}}}",
       u"{\\rtf1{<Outer>}}"},
      // Other destinations within an instruction are no part of it.
      {u"{\\rtf1{\\field{\\*\\fldinst{\\*\\datafield 0000}N}}}", u"{\\rtf1{<N>}}"},
      // Binary runs hold anything.
      {u"{\\rtf1{\\pict\\bin4 }}{\\}{\\field{\\*\\fldinst N}{\\fldrslt{\\bin2 {{}}}}",
       u"{\\rtf1{\\pict\\bin4 }}{\\}{<N>}}"},
      // An instruction that lies in nothing is none.
      {u"{\\rtf1{\\field{\\*\\fldinst N}}}{\\fldinst M}", u"{\\rtf1{<N>}}{\\fldinst M}"},
      // Nor is a field whose word comes behind another group.
      {u"{\\rtf1{\\field{\\*\\fldinst N}}{{\\b x}\\field{\\*\\fldinst M}}}",
       u"{\\rtf1{<N>}{{\\b x}\\field{\\*\\fldinst M}}}"},
      // Fields without a name stay; what they hold is still looked at.
      {u"{\\rtf1{\\field{\\*\\fldinst \\\\* UPPER}{\\fldrslt {\\field{\\*\\fldinst N}}}}}",
       u"{\\rtf1{\\field{\\*\\fldinst \\\\* UPPER}{\\fldrslt {<N>}}}}"},
      {u"{\\rtf1{\\field{\\fldrslt x}}}", u"{\\rtf1{\\field{\\fldrslt x}}}"},
      // Cut short: what is closed is replaced.
      {u"{\\rtf1{\\field{\\*\\fldinst N}}{\\field{\\*\\fldinst M",
       u"{\\rtf1{<N>}{\\field{\\*\\fldinst M"},
      {u"{\\rtf1{\\field{\\*\\fldinst N}\\bin99999999999999999999 }}",
       u"{\\rtf1{\\field{\\*\\fldinst N}\\bin99999999999999999999 }}"},
      {u"{\\rtf1{\\field{\\*\\fldinst N}}}}}{\\field{\\*\\fldinst M}}\\",
       u"{\\rtf1{<N>}}}}{<M>}\\"},
  };
  for (const Case& each : kCases) EXPECT_EQ(TagProcessorText(each.value), each.expected);
}

TEST(TagText, RichTextWithoutFieldsNamesItsGeneratorBehindItsHeader) {
  // What stands before the generator, and behind it.
  constexpr std::pair<TextView, TextView> kCases[] = {
      {u"{\\rtf1\\ansi ", u"text}"},
      {u"{\\rtf1 ", u"text \\field}"},
      {u"{\\rtf", u""},
      {u"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}}\r\n{\\colortbl ;}",
       u"\r\n\\viewkind4\\uc1\\pard x}"},
      {u"{\\rtf1{\\*\\listtable}", u"{\\info{\\title {\\*\\generator No;}}}{\\fonttbl}"},
      {u"{\\rtf1", u"{\\b x}\\ansi}{\\*\\generator Elsewhere;}"},
      {u"{\\rtf1", u"{\\*\\generator never closed"},
  };
  for (const auto& [before, behind] : kCases) {
    const Text stamped = Text(before) + u"{\\*\\generator VNDoc6;}" + Text(behind);
    EXPECT_EQ(TagProcessorText(Text(before) + Text(behind)), stamped);
    EXPECT_EQ(TagProcessorText(stamped), stamped);
  }
  EXPECT_EQ(TagProcessorText(u"{\\rtf1\\ansi{\\info}{\\*\\generator A {x};}y{\\*\\generator B;}z}"),
            u"{\\rtf1\\ansi{\\info}{\\*\\generator VNDoc6;}yz}");
}

TEST(TagText, OtherTextIsGivenBack) {
  for (const char16_t* value : {u"", u"plain", u"{", u"{\\rtfx1 {\\field{\\*\\fldinst N}}}",
                                u" {\\rtf1}", u"\\rtf1", u"{\\field{\\*\\fldinst N}}"}) {
    EXPECT_EQ(TagProcessorText(value), value);
  }
}

TEST(TagText, DeepNestingTakesNoMoreThanItsLength) {
  constexpr size_t kDeep = 50000;
  const Text open = Repeat(u"{\\field{\\*\\fldinst N", kDeep);
  EXPECT_EQ(TagProcessorText(u"{\\rtf1" + open), u"{\\rtf1" + open);
  EXPECT_EQ(TagProcessorText(u"{\\rtf1" + open + Repeat(u"}}", kDeep) + u"}"), u"{\\rtf1{<N>}}");
}

}  // namespace
}  // namespace vndoc6
