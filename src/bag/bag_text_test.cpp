// Writing a bag's text and reading it, together: what one writes the other has to find.
#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "bag/levelled_text.h"
#include "tests/hostile_text.h"
#include "vndoc6/automation/picture.h"

namespace vndoc6::bag {
namespace {

using automation::Currency;
using automation::Date;
using automation::Variant;
using vndoc6::testing::Below;
using vndoc6::testing::HostileText;
using vndoc6::testing::Random;

// A bag as a tree: an entry is a value or a bag of its own.
struct Node {
  Text key;
  Variant value;
  std::vector<Node> bag;
  friend bool operator==(const Node&, const Node&) = default;
};
using Bag = std::vector<Node>;

Variant HostileValue(Random& random) {
  const auto bits = static_cast<int32_t>(random());
  switch (Below(random, 12)) {
    case 0:
      return {};
    case 1:
      return automation::Null();
    case 2:
      return bits < 0;
    case 3:
      return static_cast<int16_t>(bits);
    case 4:
      return bits;
    case 5:
      return static_cast<float>(bits) / 10;
    case 6:
      return static_cast<double>(bits) * 1e-300;
    case 7:
      return Currency{bits * static_cast<int64_t>(random())};
    case 8:
      return Date{bits / 7.0};
    case 9:
      return automation::ErrorValue{bits};
    default:
      return HostileText(random);
  }
}

Bag HostileBag(Random& random, int depth) {
  Bag bag(Below(random, 4) + (depth > 0 ? 1 : 0));
  for (Node& node : bag) {
    node.key = HostileText(random, 3);
    if (depth > 0 && &node == &bag.front()) {
      node.bag = HostileBag(random, depth - 1);
      node.value = u"bag";
    } else {
      node.value = HostileValue(random);
    }
  }
  return bag;
}

void Write(const Bag& bag, BagWriter& writer) {
  for (const Node& node : bag) {
    if (node.bag.empty()) {
      writer.AddVariant(node.key, node.value);
    } else {
      writer.AddNestedUnder(node.key, [&](BagWriter& nested) { Write(node.bag, nested); });
    }
  }
}

// The same in the slow way: each nested text on its own, then escaped as a whole.
std::string WriteStepwise(const Bag& bag) {
  std::string bytes;
  BagWriter writer(bytes);
  for (const Node& node : bag) {
    if (node.bag.empty()) {
      writer.AddVariant(node.key, node.value);
    } else {
      const std::string whole = WriteStepwise(node.bag);
      writer.AddNestedUnder(
          node.key, [&](BagWriter& nested) { AppendEscaped(whole, nested.depth(), nested.out()); });
    }
  }
  return bytes;
}

// Reads back what `shape` says is a bag as one.
Bag Read(const KeptText& text, const Bag& shape) {
  Bag bag;
  BagScanner scanner(text);
  BagEntry entry;
  while (scanner.Next(entry)) {
    Node node;
    node.key = scanner.KeyOf(entry);
    EXPECT_TRUE(scanner.ValueOf(entry, node.value));
    if (bag.size() < shape.size() && !shape[bag.size()].bag.empty()) {
      node.bag = Read(scanner.TextOf(entry), shape[bag.size()].bag);
      node.value = u"bag";
    }
    bag.push_back(std::move(node));
  }
  EXPECT_FALSE(scanner.faulty());
  return bag;
}

TEST(BagTextTest, WritesTheSameInOnePassAndReadsItBack) {
  Random random(3);
  for (int round = 0; round < 3000; ++round) {
    const Bag bag = HostileBag(random, round % 13);
    std::string bytes;
    BagWriter writer(bytes);
    Write(bag, writer);
    ASSERT_EQ(bytes, WriteStepwise(bag));
    ASSERT_EQ(Read(KeptText(SharedBytes(bytes)), bag), bag) << bytes;
    // Through a host's hands, and at some level of somebody else's bag.
    ASSERT_EQ(Read(KeptText(automation::FromUtf8(bytes)), bag), bag);
    const auto depth = static_cast<uint32_t>(Below(random, 13));
    std::string escaped;
    AppendEscaped(bytes, depth, escaped);
    const KeptText whole{SharedBytes(escaped)};
    const KeptText nested(whole, whole.raw(), depth);
    ASSERT_EQ(Read(nested, bag), bag) << escaped;
    ASSERT_EQ(nested.Unescaped().raw(), bytes);
    ASSERT_EQ(nested.ToText(), automation::FromUtf8(bytes));
  }
}

TEST(BagTextTest, WritesKeptTextsAsIfTheyWereNew) {
  Random random(4);
  for (int round = 0; round < 1000; ++round) {
    const Text value = HostileText(random);
    std::string new_bytes;
    std::string kept_bytes;
    const auto depth = static_cast<uint32_t>(Below(random, 12));
    BagWriter(new_bytes, depth).Add("K", value);
    const auto kept_depth = static_cast<uint32_t>(Below(random, 12));
    std::string escaped;
    AppendEscaped(automation::ToUtf8(value), kept_depth, escaped);
    const KeptText whole{SharedBytes(escaped)};
    BagWriter(kept_bytes, depth).Add("K", KeptText(whole, whole.raw(), kept_depth));
    ASSERT_EQ(kept_bytes, new_bytes);
  }
}

TEST(BagTextTest, WritesTheFormsThatFilesHold) {
  std::string bytes;
  BagWriter writer(bytes);
  writer.Add("L", -2147483647 - 1);
  writer.Add("B", true);
  writer.Add("B2", false);
  writer.Add("S", 1.2F);
  writer.Add("C", Currency{95000});
  writer.Add("C2", Currency{std::numeric_limits<int64_t>::min()});
  writer.Add("C3", Currency{-1});
  writer.Add("D", Date{45000.5});
  writer.Add("T", TextView(u"say \"x\": \u00E4"));
  writer.AddPicture("P", {});
  writer.AddVariant(u"a=b", 0.1);
  writer.AddVariant(u"", std::numeric_limits<float>::infinity());
  writer.AddVariant(u"N", -std::numeric_limits<double>::quiet_NaN());
  writer.AddVariant(u"Pic", automation::MakePlainPicture({'B', 'M', 0, 0xFF}));
  writer.AddVariant(u"O", automation::Ref<automation::Object>());
  writer.AddNested("Bag", [](BagWriter& nested) {
    nested.AddVariant(u"=", int16_t{5});
    nested.Add("T", TextView(u"=~64"));
  });
  EXPECT_EQ(bytes,
            "L=-2147483648:B=T:B2=F:S=s1.2:C=c9.5:C2=c-922337203685477.5808:C3=c-0.0001:"
            "D=t45000.5:T=~64\"say ^jx^A \xC3\xA4\":P=p:a^-b=d0.1:=sinf:N=dnan:Pic=pQk0A/w==:O=o:"
            "Bag=~64\"^J-=i5:T^a^a:\":");
}

TEST(BagTextTest, AcceptsTextsBuiltByHand) {
  BagReader reader(KeptText(u"R=~64\"the ^jR^j\":DN=~64\"\":"));
  EXPECT_EQ(reader.GetText("R"), u"the \"R\"");
  EXPECT_EQ(reader.GetText("DN"), u"");
}

TEST(BagTextTest, EndsAtTheFirstFault) {
  const struct {
    TextView text;
    int entries;
    size_t fault;
  } cases[] = {
      {u"A=1", 0, 0},
      {u"A=1:B", 1, 4},
      {u"A=1:B=", 1, 4},
      {u"A=1:B=:C=2:", 1, 4},
      {u"A=1:B=?:C=2:", 1, 4},
      {u"A=1:B=\"x\":", 1, 4},
      {u"A=1:B=~64x\":", 1, 4},
      {u"A=1:B=~65\"x\":", 1, 4},
      {u"A=1:B=~64\"x\"", 1, 4},
      {u"A=1:B=~64\"x", 1, 4},
      {u"A=1:B=~64\"x\"y\":C=2:", 1, 4},
      {u"A=1::B=2:C", 2, 9},
  };
  for (const auto& [text, entries, fault] : cases) {
    BagScanner scanner{KeptText(text)};
    BagEntry entry;
    int found = 0;
    while (scanner.Next(entry)) ++found;
    EXPECT_EQ(found, entries) << automation::ToUtf8(text);
    EXPECT_TRUE(scanner.faulty()) << automation::ToUtf8(text);
    EXPECT_EQ(scanner.fault_offset(), fault) << automation::ToUtf8(text);
  }
}

TEST(BagTextTest, RefusesValuesThatDoNotFollowTheirTag) {
  BagScanner scanner(
      KeptText(u"a=12x:b=2147483648:c=-:d=Tx:e=s:f=s1,5:g=c1.:h=c.5:i=c1.00001:"
               u"j=c922337203685477.5808:k=c1.-2:l=pQ:m=pQk0=x===:n=i40000:o=e1:"
               u"p=d 1:q=d1e999:r=t:s=x:t=nn:u=o1:v=--1:w=c-:"));
  BagEntry entry;
  Variant value;
  int found = 0;
  for (; scanner.Next(entry); ++found) EXPECT_FALSE(scanner.ValueOf(entry, value)) << entry.key;
  EXPECT_EQ(found, 23);
  EXPECT_FALSE(scanner.faulty());
}

TEST(BagTextTest, ReadsAtAnyOtherSeparatorOfAHost) {
  for (const TextView separator : {u";", u"\r\n", u"::"}) {
    const Text text =
        u"A=1" + Text(separator) + u"B=~64\"x:;\"" + Text(separator) + u"C=T" + Text(separator);
    for (const uint32_t depth : {0U, 2U}) {
      std::string escaped;
      AppendEscaped(automation::ToUtf8(text), depth, escaped);
      const KeptText whole{SharedBytes(escaped)};
      BagScanner scanner(KeptText(whole, whole.raw(), depth), automation::ToUtf8(separator));
      BagEntry entry;
      std::string tags;
      while (scanner.Next(entry)) tags += entry.tag;
      EXPECT_EQ(tags, "0\"T");
      EXPECT_FALSE(scanner.faulty());
    }
  }
  BagScanner scanner(KeptText(u"A=1:"), "");
  BagEntry entry;
  EXPECT_TRUE(scanner.Next(entry));
}

// What is found in place is what is found after unescaping, also in a text that was not escaped as
// a whole.
void ExpectSameUnescaped(std::string_view raw, uint32_t depth) {
  const KeptText whole{SharedBytes(std::string(raw))};
  const KeptText nested(whole, whole.raw(), depth);
  BagScanner in_place(nested);
  BagScanner unescaped(nested.Unescaped());
  BagEntry left;
  BagEntry right;
  while (unescaped.Next(right)) {
    ASSERT_TRUE(in_place.Next(left)) << raw;
    EXPECT_EQ(in_place.KeyOf(left), unescaped.KeyOf(right)) << raw;
    ASSERT_EQ(left.tag, right.tag) << raw;
    if (left.tag == '"') {
      EXPECT_EQ(in_place.TextOf(left).ToText(), unescaped.TextOf(right).ToText()) << raw;
    } else {
      EXPECT_EQ(left.value, right.value) << raw;
    }
  }
  EXPECT_FALSE(in_place.Next(left)) << raw;
  EXPECT_EQ(in_place.faulty(), unescaped.faulty()) << raw;
}

TEST(BagTextTest, ReadsNestedTextsThatHoldUnusualEscapes) {
  ExpectSameUnescaped("A=1:B^ax^a:C=2:", 1);
  ExpectSameUnescaped("A=1:B=~64^jx^A", 1);
  ExpectSameUnescaped("A=1:B=5^AC=2:", 1);
  ExpectSameUnescaped("A=1:B^zo10;x^zc10;C=2:", 10);
  const std::string_view pieces[] = {
      "A", "=1:", "^a", "^A",   "^b", "^B", "^c", "^C", "^j", "^k",   "^J",  "^K",  "^",   "^-",
      "-", "x",   "j",  "=~64", ":",  "=",  "~",  "^a", "^A", "C=T:", "B^a", "x^A", "B^b", "x^B"};
  Random random(6);
  for (int round = 0; round < 50000; ++round) {
    std::string raw;
    for (size_t left = Below(random, 12); left > 0; --left) {
      raw += pieces[Below(random, std::size(pieces))];
    }
    ExpectSameUnescaped(raw, static_cast<uint32_t>(1 + Below(random, 3)));
    if (HasFailure()) break;
  }
}

TEST(BagTextTest, SaysWhereANestedTextIsAtFault) {
  const KeptText whole{SharedBytes("A=1:B^ax^a:CC^bDD")};
  BagScanner scanner(KeptText(whole, whole.raw(), 1));
  BagEntry entry;
  while (scanner.Next(entry)) {
  }
  EXPECT_TRUE(scanner.faulty());
  EXPECT_EQ(whole.raw().substr(scanner.fault_offset()), "CC^bDD");
}

std::string DocumentLikeText() {
  std::string bytes;
  BagWriter writer(bytes);
  writer.Add("FV", 2.0F);
  writer.AddNested("S", [](BagWriter& steps) {
    for (const TextView key : {u"{1}", u"{=}"}) {
      steps.AddNestedUnder(u"T" + Text(key), [](BagWriter& step) {
        step.Add("L", TextView(u"A \"quoted\": ^label =~64"));
        step.AddNested("F", [](BagWriter& figure) {
          figure.Add("F.N", TextView(u"Tahoma"));
          figure.Add("X", 120);
        });
      });
    }
  });
  writer.Add("CT", TextView(u"chart"));
  return bytes;
}

// Walks everything that might be a bag, and adds the keys to `keys`.
void WalkAll(const KeptText& text, std::vector<Text>& keys) {
  BagScanner scanner(text);
  BagEntry entry;
  while (scanner.Next(entry)) {
    keys.push_back(scanner.KeyOf(entry));
    Variant value;
    scanner.ValueOf(entry, value);
    if (entry.tag == '"' && text.depth() < 6) WalkAll(scanner.TextOf(entry), keys);
  }
  if (scanner.faulty()) {
    EXPECT_LT(scanner.fault_offset(), text.raw().size());
  }
}

struct Found {
  size_t end;  // where the entry ends in the raw bytes
  std::string key;
  std::string value;
  friend bool operator==(const Found&, const Found&) = default;
};

// The entries that lie in the raw bytes themselves.
std::vector<Found> FindAll(const KeptText& text) {
  std::vector<Found> all;
  BagScanner scanner(text);
  BagEntry entry;
  while (scanner.Next(entry)) {
    const char* const end = entry.value.data() + entry.value.size() + (entry.tag == '"' ? 2 : 1);
    const std::ptrdiff_t offset = end - text.raw().data();
    all.push_back({static_cast<size_t>(offset), std::string(entry.key), std::string(entry.value)});
  }
  return all;
}

TEST(BagTextTest, KeepsWhatStandsBeforeTheDamage) {
  for (const uint32_t depth : {0U, 1U}) {
    std::string whole;
    AppendEscaped(DocumentLikeText(), depth, whole);
    const auto find_in = [depth](std::string bytes) {
      const KeptText text{SharedBytes(std::move(bytes))};
      const KeptText nested(text, text.raw(), depth);
      std::vector<Text> keys;
      WalkAll(nested, keys);
      return FindAll(nested);
    };
    const std::vector<Found> complete = find_in(whole);
    ASSERT_EQ(complete.size(), 3U);
    ASSERT_EQ(complete.back().end, whole.size());
    for (size_t cut = 0; cut <= whole.size(); ++cut) {
      std::vector<Found> intact = complete;
      std::erase_if(intact, [cut](const Found& found) { return found.end > cut; });
      ASSERT_EQ(find_in(whole.substr(0, cut)), intact) << cut;
    }
    Random random(5);
    for (int round = 0; round < 5000; ++round) {
      std::string damaged = whole;
      const size_t at = Below(random, whole.size());
      damaged[at] = static_cast<char>(random());
      const std::vector<Found> found = find_in(damaged);
      for (size_t i = 0; i < complete.size() && complete[i].end <= at; ++i) {
        ASSERT_LT(i, found.size());
        ASSERT_EQ(found[i], complete[i]);
      }
    }
  }
}

TEST(BagReaderTest, FindsKeysInAnyOrder) {
  for (const int count : {0, 1, 64, 65, 1000}) {
    std::string bytes;
    BagWriter writer(bytes);
    for (int i = 0; i < count; ++i) writer.Add("K" + std::to_string(i), i);
    // Of several entries with one key the first counts, wherever the search begins.
    for (int i = 0; i < count; i += 3) writer.Add("K" + std::to_string(i), -1);
    BagReader reader{KeptText(SharedBytes(bytes))};
    for (int i = 0; i < count; ++i) ASSERT_EQ(reader.GetLong("K" + std::to_string(i), -2), i);
    for (int i = count; i-- > 0;) ASSERT_EQ(reader.GetLong("K" + std::to_string(i), -2), i);
    EXPECT_EQ(reader.GetLong("k0", -2), -2);
    EXPECT_EQ(reader.GetLong("", -2), -2);
  }
}

TEST(BagReaderTest, GivesDefaultsForWhatIsMissingOrUnreadable) {
  BagReader reader(KeptText(u"L=1x:B=Tx:S=sx:C=cx:P=p?:"));
  for (const std::string_view suffix : {"", "?"}) {
    EXPECT_EQ(reader.GetLong("L" + std::string(suffix), 7), 7);
    EXPECT_TRUE(reader.GetBoolean("B" + std::string(suffix), true));
    EXPECT_EQ(reader.GetSingle("S" + std::string(suffix), 1.5F), 1.5F);
    EXPECT_EQ(reader.GetCurrency("C" + std::string(suffix), Currency{90000}), Currency{90000});
    EXPECT_EQ(reader.GetPicture("P" + std::string(suffix)), std::nullopt);
    EXPECT_EQ(reader.GetText("L" + std::string(suffix)), u"");
    EXPECT_TRUE(reader.GetKept("L" + std::string(suffix)).empty());
    EXPECT_EQ(reader.Get("L" + std::string(suffix)), std::nullopt);
  }
}

TEST(BagReaderTest, ConvertsValuesOfOtherTypes) {
  BagReader reader(KeptText(u"T=~64\"12\":W=~64\"word\":S=s2.5:B=T:L=300:C=c9.5:P=pQk0=:L0=0:"));
  EXPECT_EQ(reader.GetLong("T"), 12);
  EXPECT_EQ(reader.GetSingle("T"), 12.0F);
  EXPECT_EQ(reader.GetLong("S"), 2);
  EXPECT_EQ(reader.GetLong("B"), -1);
  EXPECT_EQ(reader.GetLong("C"), 10);
  EXPECT_EQ(reader.GetSingle("L"), 300.0F);
  EXPECT_EQ(reader.GetCurrency("L", {}), Currency{3000000});
  EXPECT_TRUE(reader.GetBoolean("L"));
  EXPECT_FALSE(reader.GetBoolean("L0", true));
  EXPECT_EQ(reader.GetText("L"), u"300");
  EXPECT_EQ(reader.GetKept("L").ToText(), u"300");
  EXPECT_EQ(reader.GetKept("W").raw(), "word");
  EXPECT_EQ(reader.GetPicture("P"), (std::vector<uint8_t>{'B', 'M'}));
  EXPECT_EQ(reader.GetPicture("L"), std::nullopt);
  EXPECT_EQ(reader.Get("S"), Variant(2.5F));
  EXPECT_EQ(reader.Get("P")->ToObject()->TypeName(), "Picture");
}

TEST(BagReaderTest, GivesDefaultsForWhatCannotBeConverted) {
  BagReader reader(KeptText(u"W=~64\"word\":D=d1e10:N=n:"));
  for (const std::string_view key : {"W", "D", "N"}) EXPECT_EQ(reader.GetLong(key, 7), 7) << key;
  EXPECT_TRUE(reader.GetBoolean("W", true));
  EXPECT_EQ(reader.GetCurrency("W", Currency{90000}), Currency{90000});
  EXPECT_TRUE(reader.GetKept("N").empty());
}

TEST(BagReaderTest, ReadsNestedTextsThatWereNotEscapedAsAWhole) {
  const KeptText whole{SharedBytes("A=1:B^ax^a:C=2:")};
  BagReader reader(KeptText(whole, whole.raw(), 1));
  EXPECT_EQ(reader.GetText("B"), u"x=~64");
  EXPECT_EQ(reader.GetLong("A"), 1);
  EXPECT_EQ(reader.GetLong("C"), 2);
}

}  // namespace
}  // namespace vndoc6::bag
