#include "vndoc6/content/compare.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "vndoc6/automation/picture.h"
#include "vndoc6/content/content.h"
#include "vndoc6/content/unknown_entries.h"
#include "vndoc6/content/walk.h"

namespace vndoc6 {

using automation::Object;
using automation::Picture;
using automation::Variant;
using Kind = Difference::Kind;

namespace {

// What ignore_identity leaves out, all of it the document's own.
constexpr std::string_view kIdentity[] = {"GUID", "IR"};

bool IsIdentity(const Object& object, std::string_view name) {
  if (object.TypeName() != "vnDocument") return false;
  return std::find(std::begin(kIdentity), std::end(kIdentity), name) != std::end(kIdentity);
}

bool IsNaN(const Variant& value) {
  if (const float* number = value.If<float>()) return std::isnan(*number);
  if (const double* number = value.If<double>()) return std::isnan(*number);
  if (const auto* date = value.If<automation::Date>()) return std::isnan(date->days);
  return false;
}

// Pictures by their bytes; of other objects only the kind of object counts.
bool SameObject(Object* left, Object* right) {
  if (left == right) return true;
  if (left == nullptr || right == nullptr) return false;
  const auto* left_picture = dynamic_cast<const Picture*>(left);
  const auto* right_picture = dynamic_cast<const Picture*>(right);
  if (left_picture != nullptr && right_picture != nullptr) {
    return left_picture->Bytes() == right_picture->Bytes();
  }
  return left->TypeName() == right->TypeName();
}

bool SameValue(const Variant& left, const Variant& right) {
  if (left.kind() != right.kind()) return false;
  if (left.IsObject()) return SameObject(left.ToObject().get(), right.ToObject().get());
  return left == right || (IsNaN(left) && IsNaN(right));
}

Text PropertyName(const Content& content) {
  Text name = automation::FromUtf8(content.name);
  if (content.index > 0) name += u"(" + automation::NumberText(content.index) + u")";
  return name;
}

Text Below(const Text& path, const Text& name) { return path.empty() ? name : path + u"/" + name; }

// A member's place in a path.
Text MemberName(const ListMember& member, size_t position) {
  if (member.key.empty()) return u"#" + automation::NumberText(static_cast<int32_t>(position + 1));
  Text name = u"{";
  for (const char16_t unit : member.key) {
    if (TextView(u"\\/{}").find(unit) != TextView::npos) name += u'\\';
    name += unit;
  }
  return name + u"}";
}

// Which of the right each of the left is paired with, by their keys.
using Pairs = std::vector<std::optional<size_t>>;
template <class Keyed>
Pairs PairUp(const std::vector<Keyed>& left, const std::vector<Keyed>& right) {
  // Those with each key that are not paired yet, the next one last.
  std::unordered_map<TextView, std::vector<size_t>> unpaired;
  for (size_t i = right.size(); i-- > 0;) unpaired[right[i].key].push_back(i);
  Pairs pairs(left.size());
  for (size_t i = 0; i < left.size(); ++i) {
    const auto found = unpaired.find(left[i].key);
    if (found == unpaired.end() || found->second.empty()) continue;
    pairs[i] = found->second.back();
    found->second.pop_back();
  }
  return pairs;
}

class Comparison {
 public:
  explicit Comparison(const CompareOptions& options) : options_(options) {}

  void CompareObjects(const Text& path, Object& left, Object& right) {
    if (left.TypeName() != right.TypeName()) {
      AddValue(path, left, {}, Variant(automation::FromUtf8(left.TypeName())),
               Variant(automation::FromUtf8(right.TypeName())));
      return;
    }
    CompareProperties(path, left, right);
    CompareUnknown(path, left, right);
    if (ContentReader::IsCollection(left)) CompareMembers(path, left, right);
  }

  std::vector<Difference> Take() { return std::move(differences_); }

 private:
  void CompareProperties(const Text& path, Object& left, Object& right) {
    const std::vector<Content> lefts = reader_.Read(left);
    const std::vector<Content> rights = reader_.Read(right);
    // The same properties on both sides, but rows of values may differ in length.
    const auto place = [](const Content& content) {
      return std::pair(content.position, content.index);
    };
    size_t l = 0;
    size_t r = 0;
    while (l < lefts.size() || r < rights.size()) {
      if (r == rights.size() || (l < lefts.size() && place(lefts[l]) < place(rights[r]))) {
        AddValue(path, left, PropertyName(lefts[l]), lefts[l].value, {});
        ++l;
      } else if (l == lefts.size() || place(rights[r]) < place(lefts[l])) {
        AddValue(path, left, PropertyName(rights[r]), {}, rights[r].value);
        ++r;
      } else {
        CompareProperty(path, left, lefts[l++], rights[r++]);
      }
    }
  }

  void CompareProperty(const Text& path, Object& owner, const Content& left, const Content& right) {
    if (options_.ignore_identity && IsIdentity(owner, left.name)) return;
    if (left.is_part && right.is_part) {
      CompareObjects(Below(path, PropertyName(left)), *left.value.ToObject(),
                     *right.value.ToObject());
    } else if (!SameValue(left.value, right.value)) {
      AddValue(path, owner, PropertyName(left), left.value, right.value);
    }
  }

  // Told by their whole texts: of values that read the same the types may differ.
  void CompareUnknown(const Text& path, Object& left, Object& right) {
    const std::vector<UnknownEntry> lefts = UnknownEntriesOf(left);
    const std::vector<UnknownEntry> rights = UnknownEntriesOf(right);
    const Pairs pairs = PairUp(lefts, rights);
    const auto name = [](const UnknownEntry& entry) { return u"[" + entry.key + u"]"; };
    const auto all = [](const UnknownEntry& entry) {
      return Variant(automation::FromUtf8(entry.text));
    };
    std::vector<bool> paired(rights.size(), false);
    for (size_t i = 0; i < lefts.size(); ++i) {
      if (pairs[i]) paired[*pairs[i]] = true;
      if (pairs[i] && rights[*pairs[i]].text == lefts[i].text) continue;
      AddValue(path, left, name(lefts[i]), all(lefts[i]),
               pairs[i] ? all(rights[*pairs[i]]) : Variant());
    }
    for (size_t i = 0; i < rights.size(); ++i) {
      if (!paired[i]) AddValue(path, left, name(rights[i]), {}, all(rights[i]));
    }
  }

  void CompareMembers(const Text& path, Object& left, Object& right) {
    const std::vector<ListMember> lefts = ContentReader::Members(left);
    const std::vector<ListMember> rights = ContentReader::Members(right);
    const Pairs pairs = PairUp(lefts, rights);
    std::vector<bool> paired(rights.size(), false);
    size_t last = 0;
    bool in_order = true;
    for (size_t i = 0; i < lefts.size(); ++i) {
      const Text member_path = Below(path, MemberName(lefts[i], i));
      if (!pairs[i]) {
        AddMember(Kind::kOnlyLeft, member_path, *lefts[i].object);
        continue;
      }
      const size_t other = *pairs[i];
      paired[other] = true;
      if (in_order && other < last) {
        in_order = false;
        AddOrder(member_path, *lefts[i].object, i, other);
      }
      last = other;
      const PassingRead reading_left(*lefts[i].object);
      const PassingRead reading_right(*rights[other].object);
      CompareObjects(member_path, *lefts[i].object, *rights[other].object);
    }
    for (size_t i = 0; i < rights.size(); ++i) {
      if (paired[i]) continue;
      AddMember(Kind::kOnlyRight, Below(path, MemberName(rights[i], i)), *rights[i].object);
    }
  }

  void AddValue(const Text& path, const Object& object, Text property, Variant left,
                Variant right) {
    differences_.push_back({Kind::kValue, path, std::string(object.TypeName()), std::move(property),
                            std::move(left), std::move(right)});
  }
  void AddMember(Kind kind, const Text& path, const Object& object) {
    differences_.push_back({kind, path, std::string(object.TypeName()), {}, {}, {}});
  }
  void AddOrder(const Text& path, const Object& object, size_t left, size_t right) {
    const auto position = [](size_t index) { return Variant(static_cast<int32_t>(index + 1)); };
    differences_.push_back(
        {Kind::kOrder, path, std::string(object.TypeName()), {}, position(left), position(right)});
  }

  const CompareOptions& options_;
  ContentReader reader_;
  std::vector<Difference> differences_;
};

Text DescribeValue(const Variant& value) {
  if (value.IsText()) return u"\"" + value.ToText() + u"\"";
  if (value.IsObject()) {
    const auto* picture = dynamic_cast<const Picture*>(value.ToObject().get());
    if (picture == nullptr) return automation::FromUtf8(value.TypeName());
    return u"picture of " + automation::NumberText(static_cast<int32_t>(picture->Bytes().size())) +
           u" bytes";
  }
  if (value.IsEmpty() || value.kind() == automation::ValueKind::kNull) {
    return automation::FromUtf8(value.TypeName());
  }
  if (const auto* error = value.If<automation::ErrorValue>()) {
    return u"error " + automation::NumberText(error->scode & 0xFFFF);
  }
  if (const auto* date = value.If<automation::Date>()) return automation::DayText(*date);
  return value.ToText();
}

}  // namespace

std::vector<Difference> Compare(Object& left, Object& right, const CompareOptions& options) {
  const QuietReading quiet_left(left);
  const QuietReading quiet_right(right);
  Comparison comparison(options);
  comparison.CompareObjects({}, left, right);
  return comparison.Take();
}

Text DescribeDifference(const Difference& difference) {
  const auto values = [&] {
    return DescribeValue(difference.left) + u" | " + DescribeValue(difference.right);
  };
  switch (difference.kind) {
    case Kind::kOnlyLeft:
      return u"- " + difference.object;
    case Kind::kOnlyRight:
      return u"+ " + difference.object;
    case Kind::kOrder:
      return difference.object + u": position " + values();
    case Kind::kValue:
      break;
  }
  return (difference.property.empty() ? difference.object
                                      : Below(difference.object, difference.property)) +
         u": " + values();
}

}  // namespace vndoc6
