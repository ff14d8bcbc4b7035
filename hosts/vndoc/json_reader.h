// JSON as show wrote it, told as it is read: a large one needs no tree.
#pragma once

#include <iosfwd>

#include "objects.h"
#include "vndoc6/content/content.h"

namespace vndoc {

using vndoc6::ContentMember;

// Is told what a JSON says of an object, in its order: see content/restore.h.
class ContentSink {
 public:
  virtual ~ContentSink() = default;
  virtual void Begin(const ContentMember& part) = 0;
  virtual void BeginMember() = 0;
  virtual void End() = 0;
  // `index` counts from 1 in a row of values, else it is 0.
  virtual void Value(const ContentMember& member, const Variant& value, int32_t index) = 0;
};

// Reads the JSON of an object of that class. Throws Failure, with the place, where it is no JSON or
// says what such an object can't have, and for errors of the sink's.
void ReadJson(std::istream& json, const ClassInfo& info, ContentSink& sink);

}  // namespace vndoc
