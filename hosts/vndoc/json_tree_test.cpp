#include "json_tree.h"

#include <gtest/gtest.h>

namespace vndoc {
namespace {

// The node's value, written out again.
std::string Written(const JsonNode& json) {
  std::string text;
  switch (json.kind()) {
    case JsonKind::kNull:
      return "null";
    case JsonKind::kBoolean:
      return json.boolean() ? "true" : "false";
    case JsonKind::kInteger:
      return std::to_string(json.integer());
    case JsonKind::kReal:
      return std::to_string(json.real());
    case JsonKind::kText:
      return "'" + std::string(json.text()) + "'";
    case JsonKind::kList:
      for (const JsonNode member : json) text += Written(member) + ' ';
      return std::to_string(json.size()) + "[ " + text + "]";
    case JsonKind::kObject:
      for (const JsonNode member : json) {
        text += std::string(member.key()) + ": " + Written(member) + ' ';
      }
      return std::to_string(json.size()) + "{ " + text + "}";
  }
  return text;
}

TEST(JsonTree, KeepsValuesOfEveryKindInTheirPlaces) {
  const JsonTree tree(
      R"({"a": [1, -2, [], {"b": null}], "c": {"a": "x\u00e9\"", "": true}, "d": [0.5, "", false]})");
  EXPECT_EQ(Written(tree.root()),
            "3{ a: 4[ 1 -2 0[ ] 1{ b: null } ] c: 2{ a: 'x\xc3\xa9\"' : true } "
            "d: 3[ 0.500000 '' false ] }");
  EXPECT_EQ(tree.key_count(), 5u);
  EXPECT_EQ(Written(*tree.root().Find("c")->Find("a")), "'x\xc3\xa9\"'");
  EXPECT_FALSE(tree.root().Find("b"));
  EXPECT_FALSE(tree.root().Find("a")->Find("b"));
}

TEST(JsonTree, OfMembersWithOneKeyTheLastCounts) {
  EXPECT_EQ(JsonTree(R"({"a": 1, "a": 2})").root().Find("a")->integer(), 2);
}

TEST(JsonTree, NumbersBeyondIntegersAreReal) {
  const JsonTree tree("[9223372036854775807, 9223372036854775808, 1e300, 2.9]");
  auto number = tree.root().begin();
  EXPECT_EQ((*number).integer(), 9223372036854775807);
  EXPECT_EQ((*++number).kind(), JsonKind::kReal);
  EXPECT_THROW((*++number).integer(), JsonFormError);
  EXPECT_EQ((*++number).integer(), 2);
}

TEST(JsonTree, ValuesOfAnotherKindAreRefused) {
  const JsonTree tree(R"(["1", 1, null])");
  auto value = tree.root().begin();
  EXPECT_THROW((*value).integer(), JsonFormError);
  EXPECT_THROW((*++value).text(), JsonFormError);
  EXPECT_THROW((*++value).boolean(), JsonFormError);
}

TEST(JsonTree, WhatIsNoJsonIsRefusedWithItsPlace) {
  for (const auto& [text, why] :
       std::vector<std::pair<const char*, const char*>>{{"", "not JSON, at byte 1"},
                                                        {"{\"a\": 1", "not JSON, at byte 8"},
                                                        {"[1] 2", "not JSON, at byte 5"},
                                                        {"1e999", "not JSON, at byte 5"},
                                                        {"\"\xff\"", "not JSON, at byte 2"}}) {
    try {
      const JsonTree tree{std::string_view(text)};
      ADD_FAILURE() << text;
    } catch (const Failure& failure) {
      EXPECT_STREQ(failure.what(), why) << text;
    }
  }
}

// As deep as a file likes: nothing here calls itself once for each level.
TEST(JsonTree, DepthCostsNoStack) {
  constexpr size_t kDeep = 500000;
  const JsonTree tree(std::string(kDeep, '[') + std::string(kDeep, ']'));
  EXPECT_EQ(tree.size(), kDeep);
}

}  // namespace
}  // namespace vndoc
