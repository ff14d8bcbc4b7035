#include "vndoc6/details/item.h"

#include <gtest/gtest.h>

#include <limits>

#include "automation/inside.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;
using Lines = std::vector<std::string>;

Ref<vnItem> Numbered(int32_t id) {
  const auto item = Make<vnItem>();
  item->SetID(id);
  return item;
}

TEST(Items, NumbersRunFromZero) {
  const auto items = Make<vnItems>();
  for (const int32_t id : {0, 1, 2}) EXPECT_EQ(items->NewItem()->ID(), id);
  EXPECT_EQ(items->Item(Variant(u"1"))->ID(), 1);
  EXPECT_EQ(items->Item(Variant(1))->ID(), 0);
  EXPECT_EQ(items->Item(Variant(1))->DisplayName(), u"New Item");
  EXPECT_EQ(items->Item(Variant(1))->Items(), items);
}

TEST(Items, TheNumberAfterAnExplicitOneIsTaken) {
  const auto document = Make<vnDocument>();
  const auto items = Make<vnItems>();
  Inside::TakeDocument(*items, document.get());
  testing::RecordingListener listener(*document);
  items->Add(Numbered(10).get());
  EXPECT_EQ(listener.Take(), Lines{"ItemChange vnItem 1 0"});
  const auto collides = items->NewItem(u"collides");
  EXPECT_EQ(collides->ID(), 10);
  EXPECT_EQ(collides->DisplayName(), u"collides");
  EXPECT_FALSE(collides->Items());
  EXPECT_EQ(items->Count(), 1);
  EXPECT_EQ(listener.Take(), Lines{});
  EXPECT_EQ(items->NewItem()->ID(), 11);
  EXPECT_EQ(items->Count(), 2);
  // Below the counter nothing moves it.
  items->Add(Numbered(-5).get());
  EXPECT_EQ(Inside::next_id(*items), 12);
  EXPECT_TRUE(items->Item(Variant(u"-5")));
}

TEST(Items, TheCounterEndsQuietlyAtTheHighestNumber) {
  constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();
  const auto items = Make<vnItems>();
  items->Add(Numbered(kHighest).get());
  EXPECT_EQ(items->Count(), 1);
  EXPECT_EQ(items->NewItem()->ID(), kHighest);
  EXPECT_EQ(items->Count(), 1);
  items->RemoveAll();
  items->NewItem();
  EXPECT_EQ(items->Count(), 0);
}

TEST(Items, AddAndRemoveReport) {
  const auto document = Make<vnDocument>();
  const auto items = Make<vnItems>();
  Inside::TakeDocument(*items, document.get());
  testing::RecordingListener listener(*document);
  items->Add(nullptr);
  const auto item = items->NewItem();
  EXPECT_EQ(item->Document(), document);
  item->SetDisplayName(u"name");
  item->SetDescription(u"description");
  items->Remove(Variant(u"7"));
  items->Remove(Variant(u"0"));
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(listener.Take(), (Lines{"ItemChange vnItem 1 0", "ItemChange vnItem 2 0"}));
}

TEST(Items, AreSavedByPositionWithTheCounterLast) {
  const auto items = Make<vnItems>();
  EXPECT_EQ(SavedText(*items), "");
  items->NewItem(u"a");
  items->NewItem(u"b");
  EXPECT_EQ(SavedText(*items), R"(L1=~64"ID=0:DisplayName^aa^ADescription^a^A":)"
                               R"(L2=~64"ID=1:DisplayName^ab^ADescription^a^A":NextID=2:)");
}

TEST(Items, LoadingNumbersAnItemSavedWithZeroAnew) {
  const auto items = Make<vnItems>();
  items->NewItem(u"a");
  items->NewItem(u"b");
  const auto loaded = Make<vnItems>();
  Inside::Read(*loaded, Kept(SavedText(*items)));
  ASSERT_EQ(loaded->Count(), 2);
  EXPECT_EQ(loaded->Item(Variant(u"2"))->DisplayName(), u"a");
  EXPECT_EQ(loaded->Item(Variant(u"1"))->DisplayName(), u"b");
  EXPECT_EQ(Inside::next_id(*loaded), 3);
}

TEST(Items, LoadingRestoresTheCounterBeforeTheItems) {
  const auto items = Make<vnItems>();
  items->NewItem();
  Inside::Read(*items, Kept(""));
  EXPECT_EQ(Inside::next_id(*items), 1);
  items->RemoveAll();
  Inside::Read(*items, Kept(R"(L1=~64"DisplayName^aa^A":L2=~64"ID=9:":L3=~64"ID=9:":NextID=4:)"));
  ASSERT_EQ(items->Count(), 2);
  EXPECT_EQ(items->Item(Variant(1))->ID(), 4);
  EXPECT_EQ(Inside::next_id(*items), 9);
  Inside::Read(*items, Kept("L1=~64\"ID=20:\":NextID=~64\"many\":"));
  EXPECT_EQ(Inside::next_id(*items), 20);
}

}  // namespace
}  // namespace vndoc6
