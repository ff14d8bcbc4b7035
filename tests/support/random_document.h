// Random content through the member tables: every property that can be put gets a random value,
// every collection random members, below any object. A new member of a class is covered by itself.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "tests/hostile_text.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/document/document.h"

namespace vndoc6::testing {

class RandomContent {
 public:
  explicit RandomContent(uint32_t seed) : random_(seed) {}

  // Fills the object and all that lies below it. Texts are hostile; the keys of one object and of
  // all those below it are told apart by a number at their end, as collections need it.
  void Fill(automation::Object& object);

  // The properties that were put so far: "vnFigure.Left".
  const std::set<std::string>& put() const { return put_; }

  // A random value of a plain type; of TypeKind::kVariant any kind of value but an object.
  automation::Variant Value(const automation::TypeInfo& type);
  automation::Ref<automation::Picture> Picture();
  Text Key();
  Random& random() { return random_; }

 private:
  void CallMakers(automation::Object& object);
  void PutProperties(automation::Object& object);
  void Put(automation::Object& object, const automation::MemberInfo& member);
  void FillParts(automation::Object& object);
  void AddMembers(automation::Object& collection);
  void AddMember(automation::Object& collection, const automation::MemberInfo& add);
  automation::Variant AnyValue();
  bool OneIn(size_t count) { return Below(random_, count) == 0; }

  Random random_;
  int32_t next_key_ = 1;
  std::set<std::string> put_;
};

// A document filled with RandomContent, its steps depending on each other, its links joining them.
automation::Ref<vnDocument> RandomDocument(RandomContent& content);

}  // namespace vndoc6::testing
