#include "vndoc6/bag/properties.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "automation/inside.h"
#include "platform/file_system.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/picture.h"

namespace vndoc6 {
namespace {

using automation::Currency;
using automation::Date;
using automation::ErrorValue;
using automation::Make;
using automation::MakePlainPicture;
using automation::Null;
using automation::Picture;
using automation::Ref;
using automation::Variant;

Ref<Properties> BagOf(TextView text) {
  auto bag = Make<Properties>();
  bag->LoadText(text, 0, 0, u":");
  return bag;
}

// Keys and values in order, spelled as a script would print them.
Text Spelled(const Properties& bag) {
  Text spelled;
  for (int32_t i = 1; i <= bag.Count(); ++i) {
    const auto entry = bag.Item(i);
    spelled += entry->Key() + u"=" + entry->Value().ToText() + u" ";
  }
  return spelled;
}

TEST(Properties, AddReplacesInPlaceAndTellsKeysApartExactly) {
  auto bag = Make<Properties>();
  bag->Add(u"a", 1);
  bag->Add(u"A", 2);
  bag->SetValue(u"b", u"x");
  bag->SetValue(u"a", 3);
  EXPECT_EQ(Spelled(*bag), u"a=3 A=2 b=x ");
  EXPECT_TRUE(bag->Exists(u"A"));
  EXPECT_FALSE(bag->Exists(u"B"));
}

TEST(Properties, MissingEntriesReadAsNothingOrTheDefaultAndAddNothing) {
  auto bag = BagOf(u"a=1:");
  for (const Variant& missing : {Variant(0), Variant(2), Variant(-1), Variant(1e300), Variant(u"b"),
                                 Variant(), Variant(Null())}) {
    EXPECT_FALSE(bag->Item(missing));
  }
  EXPECT_EQ(bag->Item(1.4)->Key(), u"a");
  EXPECT_EQ(bag->Value(u"b", 1.5f), Variant(1.5f));
  EXPECT_EQ(bag->ItemDefault(u"b", u"d")->Value(), Variant(u"d"));
  EXPECT_EQ(bag->ItemDefault(u"b", u"d")->Key(), u"b");
  EXPECT_EQ(bag->ItemDefault(u"a", u"d").get(), bag->Item(u"a").get());
  EXPECT_EQ(bag->Key(1), u"a");
  EXPECT_EQ(bag->Key(2), u"");
  bag->Remove(u"b");
  EXPECT_EQ(bag->Count(), 1);
}

TEST(Properties, AnEntryIsTheBagsOwnAndOutlivesItsRemoval) {
  auto bag = BagOf(u"a=1:b=2:");
  const Ref<Property> entry = bag->Item(u"a");
  entry->SetValue(u"new");
  EXPECT_EQ(bag->Value(u"a", {}), Variant(u"new"));
  bag->Remove(u"a");
  EXPECT_EQ(Spelled(*bag), u"b=2 ");
  EXPECT_EQ(entry->Value(), Variant(u"new"));
  bag->Add(u"a", 5);
  entry->SetValue(6);
  EXPECT_EQ(Spelled(*bag), u"b=2 a=5 ");
}

TEST(Properties, AHeldEntryHoldsItsBagAndTheBagsOwner) {
  auto owner = Make<Properties>();
  auto bag = Make<Properties>();
  const automation::Owned<Properties> owned(bag.get());
  Inside::StoreOwner(*bag, owner.get());
  bag->Add(u"a", 1);
  Ref<Property> entry = bag->Item(u"a");
  automation::Weak<Properties> owner_alive(owner.get());
  owner = nullptr;
  bag = nullptr;
  EXPECT_TRUE(owner_alive);
  owned->RemoveAll();
  EXPECT_FALSE(owner_alive);
  EXPECT_EQ(entry->Value(), Variant(1));
}

TEST(Properties, EveryKindOfValueComesBackFromTheText) {
  auto bag = Make<Properties>();
  bag->Add(u"text \":=~64\"^a", Text(u"\":x=~64\"\0^^z\xD800", 13));
  bag->Add(u"", u"");
  bag->Add(u"long", std::numeric_limits<int32_t>::min());
  bag->Add(u"short", int16_t{-5});
  bag->Add(u"single", 1.2f);
  bag->Add(u"double", 0.1);
  bag->Add(u"inf", -std::numeric_limits<double>::infinity());
  bag->Add(u"money", Currency{std::numeric_limits<int64_t>::min()});
  bag->Add(u"date", Date{45000.5});
  bag->Add(u"true", true);
  bag->Add(u"false", false);
  bag->Add(u"empty", {});
  bag->Add(u"null", Null());
  bag->Add(u"error", ErrorValue{-2147352572});
  auto outer = Make<Properties>();
  outer->Add(u"nested", bag->GetText());
  const auto outer_read = BagOf(outer->GetText());
  const auto read = BagOf(outer_read->Value(u"nested", {}).ToText());
  ASSERT_EQ(read->Count(), bag->Count());
  for (int32_t i = 1; i <= bag->Count(); ++i) {
    EXPECT_EQ(read->Key(i), bag->Key(i));
    EXPECT_EQ(read->Item(i)->Value(), bag->Item(i)->Value()) << i;
  }
  EXPECT_EQ(read->SaveText(), bag->SaveText());
}

TEST(Properties, APictureStandsBesideOrInPlaceOfItsEntrysValue) {
  const std::vector<uint8_t> bytes{'B', 'M', 0, 255};
  auto bag = Make<Properties>();
  bag->Add(u"Pic", 0);
  const auto entry = bag->Item(u"Pic");
  EXPECT_EQ(entry->ValueTypeName(), u"Long");
  entry->SetObject(MakePlainPicture(bytes).get());
  EXPECT_EQ(entry->ValueTypeName(), u"Picture");
  EXPECT_EQ(entry->Value(), Variant(0));
  bag->Add(u"logo", MakePlainPicture());
  EXPECT_EQ(bag->Item(u"logo")->Object().get(), bag->Value(u"logo", {}).ToObject().get());

  for (const Ref<Properties>& copy : {bag->Clone(), BagOf(bag->GetText())}) {
    EXPECT_EQ(copy->Item(u"Pic")->ValueTypeName(), u"Picture");
    const auto object = copy->Item(u"Pic")->Object();
    const auto* picture = dynamic_cast<const Picture*>(object.get());
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->Bytes(), bytes);
    EXPECT_TRUE(copy->Value(u"logo", {}).ToObject());
  }

  entry->SetObject(nullptr);
  EXPECT_EQ(entry->ValueTypeName(), u"Long");
  bag->SetValue(u"logo", u"none");
  EXPECT_EQ(bag->Item(u"logo")->ValueTypeName(), u"String");
  EXPECT_FALSE(bag->Item(u"logo")->Object());
}

TEST(Properties, AnotherObjectIsKeptButReadBackAsNothing) {
  auto bag = Make<Properties>();
  bag->Add(u"other", Make<Properties>());
  EXPECT_EQ(bag->Item(u"other")->ValueTypeName(), u"Properties");
  const auto read = BagOf(bag->GetText());
  EXPECT_EQ(read->Item(u"other")->Value(), Variant(Ref<automation::Object>()));
  EXPECT_EQ(read->Item(u"other")->ValueTypeName(), u"Nothing");
}

TEST(Properties, DamagedTextsGiveTheEntriesBeforeTheFirstFault) {
  const struct {
    const char16_t* text;
    const char16_t* entries;
    bool well_formed;
  } cases[] = {
      {u"", u"", true},
      {u"a=1:b=~64\"x\":", u"a=1 b=x ", true},
      {u"a=1:a=2:b=3:", u"a=1 b=3 ", true},
      {u"a=1:b=2", u"a=1 ", false},
      {u"a=1:b=12x:c=3:", u"a=1 ", false},
      {u"a=1:b=99999999999:c=3:", u"a=1 ", false},
      {u"a=1:b=~64\"x:c=3:", u"a=1 ", false},
      {u"a=1:b=~64\"x\"c=3:", u"a=1 ", false},
      {u"a=1:b=?:c=3:", u"a=1 ", false},
      {u"a=1:b=p***:c=3:", u"a=1 ", false},
      {u"nonsense", u"", false},
  };
  for (const auto& one : cases) {
    auto bag = BagOf(u"old=1:");
    EXPECT_EQ(bag->IsWellFormed(one.text, u":"), one.well_formed) << automation::ToUtf8(one.text);
    EXPECT_EQ(Spelled(*bag), u"old=1 ");
    bag->LoadText(one.text, 0, 0, u":");
    EXPECT_EQ(Spelled(*bag), one.entries) << automation::ToUtf8(one.text);
  }
}

TEST(Properties, LoadTextTakesOtherSeparators) {
  auto bag = Make<Properties>();
  bag->LoadText(u"a=1;;b=~64\"x:\";;", 0, 0, u";;");
  EXPECT_EQ(Spelled(*bag), u"a=1 b=x: ");
  EXPECT_EQ(bag->GetText(), u"a=1:b=~64\"x:\":");
  EXPECT_FALSE(bag->IsWellFormed(u"a=1;;", u":"));
}

// Would take minutes if any step looked at all entries.
TEST(Properties, LargeBagsStayQuick) {
  constexpr int32_t kMany = 100000;
  Text text;
  for (int32_t i = 0; i < kMany; ++i) {
    const Text number = automation::NumberText(i);
    text.append(number).append(u"=").append(number).append(u":same=1:");
  }
  auto bag = BagOf(text);
  ASSERT_EQ(bag->Count(), kMany + 1);
  EXPECT_EQ(bag->Key(2), u"same");
  for (int32_t i = 0; i < kMany / 2; ++i) {
    bag->Remove(automation::NumberText(i));
    bag->Remove(automation::NumberText(kMany - 1 - i));
    if (i == kMany / 4) bag->Add(u"0", u"again");
  }
  EXPECT_EQ(Spelled(*bag), u"same=1 0=again ");
}

TEST(Properties, MergeReplacesAndAppends) {
  auto bag = BagOf(u"a=1:b=2:");
  bag->Merge(BagOf(u"c=4:b=3:").get());
  bag->Merge(bag.get());
  bag->Merge(nullptr);
  EXPECT_EQ(Spelled(*bag), u"a=1 b=3 c=4 ");
}

TEST(Properties, ForEachWalksTheEntriesThereWereAtItsStart) {
  auto bag = BagOf(u"a=1:b=2:c=3:");
  const auto entries = automation::Enumerate(*bag);
  Text keys;
  for (Ref<automation::Object> entry; entries->Next(entry);) {
    keys += automation::Get(*entry, u"Key").ToText();
    bag->RemoveAll();
  }
  EXPECT_EQ(keys, u"abc");
  EXPECT_TRUE(bag->IsEmpty());
}

TEST(Properties, FilesAreWrittenWholeAndReadAsFarAsTheyAreWellFormed) {
  const vndoc6::testing::TemporaryFolder folder;
  const Text name = folder.Name("bag");
  auto bag = BagOf(u"a=1:b=~64\"\u20AC\":");
  ASSERT_TRUE(bag->WriteToFile(name, u""));
  EXPECT_FALSE(bag->WriteToFile(name + u"/below", u""));
  auto read = Make<Properties>();
  EXPECT_TRUE(read->ReadFromFile(name, u""));
  EXPECT_EQ(read->GetText(), bag->GetText());
  EXPECT_FALSE(read->ReadFromFile(name + u".missing", u""));
  EXPECT_EQ(read->GetText(), bag->GetText());
  ASSERT_TRUE(platform::ReplaceFileWith(name, "c=1:damaged"));
  EXPECT_FALSE(read->ReadFromFile(name, u""));
  EXPECT_EQ(Spelled(*read), u"c=1 ");
}

TEST(Properties, HostsReachMembersByName) {
  auto bag = Make<Properties>();
  automation::Call(*bag, u"LoadText", {u"a=1:"});
  automation::Call(*bag, u"SetValue", {u"b", 2});
  automation::Put(*automation::Get(*bag, u"Item", {u"b"}).ToObject(), u"Value", {u"x"});
  EXPECT_EQ(automation::Get(*bag, u"Value", {u"b", 0}), Variant(u"x"));
  EXPECT_EQ(automation::Get(*bag, u"Exists", {u"B"}), Variant(false));
  const auto entry = automation::Get(*bag, u"ItemDefault", {u"p", 0}).ToObject();
  automation::Put(*entry, u"Object", {Variant(MakePlainPicture())});
  EXPECT_EQ(automation::Get(*entry, u"TypeName"), Variant(u"Picture"));
}

}  // namespace
}  // namespace vndoc6
