#include "idl/doc_comments.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vndoc6 {
namespace {

DocComments Read(const char* header) {
  DocComments comments;
  comments.ReadHeader(header);
  return comments;
}

constexpr const char* kHeader = R"(#pragma once
namespace vndoc6 {
class vnStep;

class Member : public Object {
 public:
  // The whole machine.
  Ref<Machine> Machine() const;
  // The name of the class.
  virtual Text TypeName() const;
};

// What all have.
template <class T, class Base = Member>
class Collection : public Base {
 public:
  // How many there are.
  int32_t Count() const { return 0; }
};

// A wheel. It
// turns.
//
// It has a hub.
class vnWheel : public Collection<vnWheel, StepMember>, public automation::EventSource {
 public:
  static const ClassInfo& classInfo();

  // The size, in inches.
  int32_t Size() const;
  void SetSize(int32_t plSize) {
    if (plSize > 0) {
      size_ = plSize;
    }
  }
  // Free values.
  Ref<Properties> GetProperties();
  // Only set.
  void SetHub(vnHub* poHub);
  // The name of the type.
  Text ValueTypeName() const;
  // Builds the wheel into a machine.
  void SetMachine(vnMachine* poMachine);

  // --- Inside; hosts have no use for these. ---

  void Turn(const Text& how,
            int32_t times = 1);

 private:
  struct Spoke {
    // Not published.
    int32_t Length() const;
  };
  int32_t size_ = 0;
};

// Not a member of the class above.
int32_t Turns();
}  // namespace vndoc6
)";

TEST(DocComments, BelongToTheDeclarationDirectlyBelow) {
  const DocComments comments = Read(kHeader);
  EXPECT_EQ(comments.OfClass("vnWheel"), "A wheel. It turns. It has a hub.");
  EXPECT_EQ(comments.OfClass("Collection"), "What all have.");
  EXPECT_EQ(comments.OfClass("vnStep"), "");
  EXPECT_EQ(comments.OfMember("vnWheel", "Size"), "The size, in inches.");
}

TEST(DocComments, AnInheritedFunctionHasThatOfItsClass) {
  const DocComments comments = Read(kHeader);
  EXPECT_EQ(comments.OfMember("vnWheel", "Count"), "How many there are.");
  EXPECT_EQ(comments.OfMember("vnWheel", "Machine"), "The whole machine.");
  EXPECT_EQ(comments.OfMember("vnWheel", "TypeName"), "The name of the type.");
}

TEST(DocComments, ASetterHasItsOwnOrElseTheGetters) {
  const DocComments comments = Read(kHeader);
  EXPECT_EQ(comments.OfPut("vnWheel", "Machine"), "Builds the wheel into a machine.");
  EXPECT_EQ(comments.OfPut("vnWheel", "Size"), "The size, in inches.");
}

TEST(DocComments, AnAccessorMayBearAnotherName) {
  EXPECT_EQ(Read(kHeader).OfMember("vnWheel", "Properties"), "Free values.");
  EXPECT_EQ(Read(kHeader).OfMember("vnWheel", "Hub"), "Only set.");
}

TEST(DocComments, AMemberWithoutOneIsAnError) {
  const DocComments comments = Read(kHeader);
  for (const char* member : {"Turn", "Turns", "Length", "Spin"}) {
    EXPECT_THROW(comments.OfMember("vnWheel", member), std::runtime_error) << member;
  }
}

TEST(DocComments, TheFirstSentenceEndsWhereAnotherBegins) {
  EXPECT_EQ(FirstSentence("Free text. Setting it reports nothing."), "Free text.");
  EXPECT_EQ(FirstSentence("The version, 1.2 in a new document."),
            "The version, 1.2 in a new document.");
  EXPECT_EQ(FirstSentence("Files, jumps etc. of a step; none. 0 is none."),
            "Files, jumps etc. of a step; none.");
}

}  // namespace
}  // namespace vndoc6
