#include "vndoc6/collections/keyed_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "vndoc6/details/item.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;

// Whatever comes and goes, in any order and at any size, every look-up finds what a search would.
TEST(KeyedStore, FindsWhatASearchWouldFind) {
  KeyedStore<vnItem> store;
  std::vector<std::pair<Text, Ref<vnItem>>> expected;
  std::mt19937 random(1);
  for (int round = 0; round < 4000; ++round) {
    const bool grows = round % 1000 < 600;
    const Text key = u"Key" + automation::NumberText(static_cast<int32_t>(random() % 300));
    const auto found = std::find_if(expected.begin(), expected.end(),
                                    [&](const auto& entry) { return entry.first == key; });
    ASSERT_EQ(store.Find(TextView(automation::AsciiLower(key))),
              found != expected.end() ? found->second.get() : nullptr);
    if (grows) {
      const auto member = Make<vnItem>();
      ASSERT_EQ(store.Add(key, *member), found == expected.end());
      if (found == expected.end()) expected.emplace_back(key, member);
    } else if (!expected.empty()) {
      // The last one most of the time: that is where the index is not made anew.
      const size_t index = random() % 8 == 0 ? random() % expected.size() : expected.size() - 1;
      ASSERT_EQ(store.Remove(Variant(static_cast<int32_t>(index) + 1)), expected[index].second);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
    }
    ASSERT_EQ(store.size(), expected.size());
  }
  for (const auto& [key, member] : expected) EXPECT_EQ(store.Find(TextView(key)), member.get());
}

}  // namespace
}  // namespace vndoc6
