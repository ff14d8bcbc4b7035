#include "member_path.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "command.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/content/content.h"

namespace vndoc {

using vndoc6::automation::CallKind;
using vndoc6::automation::EnumInfo;
using vndoc6::automation::EqualsAsciiFolded;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::kNoMember;
using vndoc6::automation::ParameterInfo;
using vndoc6::automation::TypeKind;

namespace {

// Reads a path from left to right.
class PathReader {
 public:
  explicit PathReader(std::string_view path) : rest_(path) {}

  std::vector<PathPart> Read() {
    std::vector<PathPart> parts;
    do {
      parts.push_back(ReadPart());
    } while (Take('/'));
    if (!rest_.empty()) throw Failure("what is \"" + std::string(rest_) + "\" in the path?");
    return parts;
  }

 private:
  PathPart ReadPart() {
    PathPart part;
    part.quoted = !rest_.empty() && rest_.front() == '"';
    part.name = part.quoted ? ReadQuoted() : ReadUntil("/(");
    if (part.name.empty()) throw Failure("the path has an empty part");
    if (!Take('(')) return part;
    while (!Take(')')) {
      part.arguments.push_back(ReadArgument());
      if (!Take(',') && (rest_.empty() || rest_.front() != ')')) {
        throw Failure("the path has a bracket that is not closed");
      }
    }
    return part;
  }

  // Quotes stay: they tell a text from a number.
  std::string ReadArgument() {
    while (Take(' ')) {
    }
    if (rest_.empty() || rest_.front() != '"') return ReadUntil(",)");
    return '"' + ReadQuoted() + '"';
  }

  std::string ReadQuoted() {
    std::string text;
    Take('"');
    while (!rest_.empty()) {
      const char c = rest_.front();
      rest_.remove_prefix(1);
      if (c == '"' && !Take('"')) return text;
      text += c;
    }
    throw Failure("the path has a quote that is not closed");
  }

  std::string ReadUntil(const char* ends) {
    const size_t size = std::min(rest_.find_first_of(ends), rest_.size());
    const std::string text(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return text;
  }

  bool Take(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string_view rest_;
};

// --- Arguments ---

template <class T>
std::optional<T> Whole(std::string_view text) {
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// For a member that takes any value.
Variant Guess(const std::string& text) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    return Variant(FromUtf8(std::string_view(text).substr(1, text.size() - 2)));
  }
  if (const auto number = Whole<int32_t>(text)) return Variant(*number);
  if (const auto number = Whole<double>(text)) return Variant(*number);
  const Text wide = FromUtf8(text);
  if (EqualsAsciiFolded("true", wide)) return Variant(true);
  if (EqualsAsciiFolded("false", wide)) return Variant(false);
  return Variant(wide);
}

Variant Named(const EnumInfo& enumeration, const std::string& text) {
  const Text wide = FromUtf8(text);
  for (const auto& value : enumeration.values) {
    if (EqualsAsciiFolded(value.name, wide)) return Variant(value.value);
  }
  return Variant(wide);
}

Variant PictureIn(const std::string& file) {
  std::ifstream stream(std::filesystem::path(FromUtf8(file)), std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});
  if (!stream) throw Failure(file + ": can't be read");
  return Variant(vndoc6::automation::services().make_picture({bytes.begin(), bytes.end()}));
}

Variant ObjectFor(const Ref<Object>& root, const ParameterInfo& parameter,
                  const std::string& text) {
  if (text == "Nothing") return Variant(Ref<Object>());
  if (text.empty() || text.front() != '@') {
    throw Failure(std::string(parameter.name) + " takes an object: @ and its path, or Nothing");
  }
  if (parameter.type.kind == TypeKind::kPicture) return PictureIn(text.substr(1));
  return GetAt(root, FindPlace(root, std::string_view(text).substr(1)));
}

Variant ValueFor(const Ref<Object>& root, const ParameterInfo& parameter, const std::string& text) {
  switch (parameter.type.kind) {
    case TypeKind::kClass:
    case TypeKind::kDispatch:
    case TypeKind::kFont:
    case TypeKind::kPicture:
      return ObjectFor(root, parameter, text);
    case TypeKind::kEnum:
      return Named(parameter.type.enumeration(), text);
    case TypeKind::kVariant:
      return Guess(text);
    default:
      return Variant(FromUtf8(text));
  }
}

// --- Members ---

const MemberInfo& FindMember(Object& object, const PathPart& part, CallKind kinds) {
  const ClassInfo* const info = object.GetClassInfo();
  const int32_t id = info == nullptr ? kNoMember : info->FindMember(FromUtf8(part.name));
  const MemberInfo* const member = id == kNoMember ? nullptr : info->Find(id, kinds);
  if (member != nullptr) return *member;
  const std::string class_name(object.TypeName());
  if (id == kNoMember) throw Failure(class_name + " has no member " + part.name);
  throw Failure(class_name + '.' + part.name +
                (Allows(kinds, CallKind::kPut) ? " can only be read" : " can't be read"));
}

Variant Invoke(const Ref<Object>& root, Object& object, const MemberInfo& member, CallKind kind,
               std::span<const std::string> texts) {
  if (texts.size() > member.parameters.size()) {
    throw Failure(std::string(member.name) + " takes " + std::to_string(member.parameters.size()) +
                  " values");
  }
  std::vector<Variant> values;
  for (size_t i = 0; i < texts.size(); ++i) {
    values.push_back(ValueFor(root, member.parameters[i], texts[i]));
  }
  return object.InvokeMember(member.id, kind, {values, {}});
}

bool IsCollection(Object& object) { return vndoc6::ContentReader::IsCollection(object); }

// On a collection that has no member of that name, the part is a position or a key.
bool IsIndex(Object& object, const PathPart& part) {
  if (!part.arguments.empty() || !IsCollection(object)) return false;
  return part.quoted || object.FindMember(FromUtf8(part.name)) == kNoMember;
}

Variant Read(const Ref<Object>& root, Object& object, const PathPart& part) {
  if (IsIndex(object, part)) {
    const Variant index = part.quoted ? Variant(FromUtf8(part.name)) : Guess(part.name);
    return object.InvokeMember(vndoc6::automation::kDefaultMember, CallKind::kGet,
                               {{&index, 1}, {}});
  }
  return Invoke(root, object, FindMember(object, part, CallKind::kGet), CallKind::kGet,
                part.arguments);
}

}  // namespace

std::vector<PathPart> ParsePath(std::string_view path) { return PathReader(path).Read(); }

Place FindPlace(const Ref<Object>& root, std::string_view path) {
  std::vector<PathPart> parts = ParsePath(path);
  Place place{root, std::move(parts.back())};
  parts.pop_back();
  for (const PathPart& part : parts) {
    const Variant next = Read(root, *place.object, part);
    if (!next.IsObject()) throw Failure("\"" + part.name + "\" is no object");
    if (next.ToObject() == nullptr) throw Failure("there is no \"" + part.name + "\"");
    place.object = next.ToObject();
  }
  return place;
}

Variant GetAt(const Ref<Object>& root, const Place& place) {
  return Read(root, *place.object, place.member);
}

void SetAt(const Ref<Object>& root, const Place& place, const std::string& value) {
  const CallKind puts = CallKind::kPut | CallKind::kPutRef;
  std::vector<std::string> values = place.member.arguments;
  values.push_back(value);
  Invoke(root, *place.object, FindMember(*place.object, place.member, puts), puts, values);
}

Variant CallAt(const Ref<Object>& root, const Place& place, std::span<const std::string> values) {
  const CallKind calls = CallKind::kCall | CallKind::kGet;
  std::vector<std::string> all = place.member.arguments;
  all.insert(all.end(), values.begin(), values.end());
  return Invoke(root, *place.object, FindMember(*place.object, place.member, calls), calls, all);
}

}  // namespace vndoc
