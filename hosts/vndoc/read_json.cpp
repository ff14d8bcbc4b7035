// Documents from JSON. The JSON is imported as the library lets its hosts import documents of an
// older format: by a converter, which may also set what is otherwise read only, such as the GUID.
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "automation/error.h"
#include "common/file_system.h"
#include "common/properties.h"
#include "common/scoped_value.h"
#include "compare/content.h"
#include "details/details.h"
#include "details/revision.h"
#include "document_json.h"
#include "host_object.h"
#include "scratch_folder.h"
#include "titles/title_ref.h"
#include "titles/titles.h"

namespace vndoc {

using vndoc6::ContentMember;
using vndoc6::automation::CallKind;
using vndoc6::automation::Error;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;
using vndoc6::automation::ToUtf8;
using vndoc6::automation::TypeKind;

namespace {

const MemberInfo* FindNamed(const ClassInfo& info, std::string_view name, CallKind kinds) {
  const int32_t id = info.FindMember(FromUtf8(name));
  return id == vndoc6::automation::kNoMember ? nullptr : info.Find(id, kinds);
}

constexpr CallKind kPuts = CallKind::kPut | CallKind::kPutRef;

Variant ValueAt(const Json& json, const char* name) {
  const auto found = json.find(name);
  return found == json.end() ? Variant() : FromJson(*found);
}
Text TextAt(const Json& json, const char* name) { return ValueAt(json, name).ToText(); }

// What was read before decides how other parts are taken: whether there is a title handler, and
// which of a step's files are the document's already.
constexpr const char* kFirst[] = {"Properties", "RevisionHistory", "Files", "Jumps"};
// Set when nothing counts any more.
constexpr const char* kCounter = "IR";

bool ComesFirst(std::string_view name) {
  return std::find(std::begin(kFirst), std::end(kFirst), name) != std::end(kFirst);
}

class Importer {
 public:
  explicit Importer(vnDocument& document) : document_(document) {}

  void Import(const Json& json) {
    RequireObject(json);
    for (const char* const name : kFirst) {
      if (json.contains(name)) RestoreParts(document_, name, json[name]);
    }
    RestoreContent(document_, json, true);
    // Stores the value plus one.
    if (json.contains(kCounter)) SetCounter(ValueAt(json, kCounter).ToLong());
  }

 private:
  void SetCounter(int32_t value) { document_.SetIR(value - 1); }

  static void RequireObject(const Json& json) {
    if (!json.is_object()) throw Failure("an object is expected, in braces");
  }

  // Says where it is when a value can't be restored.
  template <class Restore>
  static void At(const std::string& place, Restore restore) {
    try {
      restore();
    } catch (const Error& error) {
      throw Failure(place + ": " + ToUtf8(error.description()));
    } catch (const Json::exception&) {
      throw Failure(place + ": a value of another form is expected");
    } catch (const Failure& failure) {
      throw Failure(place + "/" + failure.what());
    }
  }

  void RestoreContent(Object& object, const Json& json, bool is_document = false) {
    RequireObject(json);
    const ClassInfo& info = *object.GetClassInfo();
    for (const auto& [name, value] : json.items()) {
      if (FindNamed(info, name, CallKind::kGet) == nullptr) {
        throw Failure(std::string(info.name()) + " has no " + name);
      }
    }
    for (const ContentMember& content : vndoc6::ContentOf(info)) {
      const char* const name = content.member->name;
      const auto found = json.find(name);
      if (found == json.end()) continue;
      if (is_document && (ComesFirst(name) || std::string_view(name) == kCounter)) continue;
      At(name, [&] { RestoreMember(object, content, *found); });
    }
  }

  void RestoreMember(Object& object, const ContentMember& content, const Json& json) {
    const MemberInfo& member = *content.member;
    if (content.part != nullptr && json.is_structured()) {
      RestorePart(*vndoc6::automation::Get(object, FromUtf8(member.name)).ToObject(), json);
    } else if (member.result.kind == TypeKind::kDispatch) {
      RestoreForeign(object, member, json);
    } else if (!member.parameters.empty()) {
      RestoreRow(object, member, json);
    } else {
      Put(object, member.name, FromJson(json, member.result.kind));
    }
  }

  void RestoreParts(Object& object, const char* name, const Json& json) {
    At(name,
       [&] { RestorePart(*vndoc6::automation::Get(object, FromUtf8(name)).ToObject(), json); });
  }

  void RestorePart(Object& part, const Json& json) {
    if (!vndoc6::ContentReader::IsCollection(part)) return RestoreContent(part, json);
    if (!json.is_array()) throw Failure("a list is expected, in brackets");
    for (size_t i = 0; i < json.size(); ++i) {
      At(std::to_string(i + 1), [&] { AddMember(part, json[i]); });
    }
  }

  // Of a host's object the JSON has the text.
  static void RestoreForeign(Object& object, const MemberInfo& member, const Json& json) {
    const Variant value = vndoc6::automation::Get(object, FromUtf8(member.name));
    const Variant wanted = FromJson(json);
    if (value.IsObject() && value.ToObject() && wanted.IsText()) {
      vndoc6::automation::Put(*value.ToObject(), u"Text", {wanted});
    } else {
      Put(object, member.name, wanted);
    }
  }

  static void RestoreRow(Object& object, const MemberInfo& member, const Json& json) {
    for (size_t i = 0; i < json.size(); ++i) {
      vndoc6::automation::Put(object, FromUtf8(member.name),
                              {Variant(static_cast<int32_t>(i + 1)), FromJson(json[i])});
    }
  }

  // What can only be read follows from the rest.
  static void Put(Object& object, const char* name, const Variant& value) {
    const MemberInfo* const put = FindNamed(*object.GetClassInfo(), name, kPuts);
    if (put == nullptr || (value.IsEmpty() && put->kind == CallKind::kPutRef)) return;
    object.InvokeMember(put->id, kPuts, {{&value, 1}, {}});
  }

  // --- Members of collections ---

  void AddMember(Object& collection, const Json& json) {
    RequireObject(json);
    if (auto* const bag = dynamic_cast<vndoc6::Properties*>(&collection))
      return AddEntry(*bag, json);
    if (auto* const roles = dynamic_cast<vndoc6::vnTitleRefs*>(&collection)) {
      return AddRole(*roles, json);
    }
    if (auto* const revisions = dynamic_cast<vndoc6::vnRevisions*>(&collection)) {
      return AddRevision(*revisions, json);
    }
    const ClassInfo& info = *vndoc6::MemberClassOf(*collection.GetClassInfo());
    const Ref<Object> member = info.Create();
    SetKey(*member, json);
    if (FindNamed(info, "Document", kPuts) != nullptr) {
      vndoc6::automation::Put(*member, u"Document", {Variant(Ref<vnDocument>(&document_))});
    }
    RestoreContent(*member, json);
    vndoc6::automation::Call(collection, u"Add", {Variant(member)});
  }

  // A key that can't be put comes with a load.
  static void SetKey(Object& member, const Json& json) {
    const ClassInfo& info = *member.GetClassInfo();
    if (!json.contains("Key") || FindNamed(info, "Load", CallKind::kCall) == nullptr) return;
    vndoc6::automation::Call(member, u"Load", {Variant(u""), Variant(TextAt(json, "Key"))});
  }

  static void AddEntry(vndoc6::Properties& bag, const Json& json) {
    const Text key = TextAt(json, "Key");
    bag.Add(key, ValueAt(json, "Value"));
    const Variant object = ValueAt(json, "Object");
    if (object.IsObject()) bag.Item(Variant(key))->SetObject(object.ToObject().get());
  }

  static void AddRole(vndoc6::vnTitleRefs& roles, const Json& json) {
    const Text reference = TextAt(json, "Ref");
    const Text name = TextAt(json, "DisplayName");
    roles.Add(Variant(reference.empty() ? name : reference));
  }

  // A whole number can be imported. Any other is entered by the details, from what the document is
  // at that time; the details and the counter themselves come later.
  void AddRevision(vndoc6::vnRevisions& revisions, const Json& json) {
    const auto date = FromJson(json.value("RevisionDate", Json(0)), TypeKind::kDate).ToDate();
    const int32_t counter = ValueAt(json, "IR").ToLong();
    const Text reason = TextAt(json, "Reason");
    const float number = FromJson(json.value("Revision", Json(0)), TypeKind::kSingle).ToSingle();
    if (std::nearbyint(number) == number && std::abs(number) < 1e9f) {
      return revisions.AddImport(counter, reason, static_cast<int32_t>(number), date);
    }
    auto& clock = vndoc6::automation::services().today;
    const vndoc6::common::ScopedValue<std::function<vndoc6::automation::Date()>> today(
        clock, [date] { return date; }, clock);
    document_.Details()->SetRevision(number);
    SetCounter(counter);
    document_.Details()->NewRevision(reason);
  }

  vnDocument& document_;
};

// --- Titles ---

struct Title {
  Text reference;
  Text name;
};

// References are to titles that a title handler knows; what the JSON says of them is all that is
// known here.
void CollectTitles(const Json& json, std::vector<Title>& titles) {
  if (json.is_object() && json.contains("Ref") && json.contains("DisplayName")) {
    titles.push_back({TextAt(json, "Ref"), TextAt(json, "DisplayName")});
  } else if (json.is_structured()) {
    for (const Json& part : json) CollectTitles(part, titles);
  }
}

Text HandlerNamedIn(const Json& json) {
  if (!json.is_object() || !json.contains("Properties")) return {};
  for (const Json& entry : json["Properties"]) {
    const bool is_handler = entry.is_object() && entry.value("Key", Json()) == "Titles Handler";
    if (is_handler && entry.value("Value", Json()).is_string()) return TextAt(entry, "Value");
  }
  return {};
}

// Stands in for the title handler that the JSON names.
std::vector<HostObject::MemberFunction> TitleHandler(const Json& json) {
  const auto document = std::make_shared<Ref<vnDocument>>();
  return {{u"RequiresDirect", [](auto) { return Variant(false); }},
          {u"Document",
           [document](std::span<const Variant> arguments) {
             *document = static_cast<vnDocument*>(arguments[0].ToObject().get());
             return Variant();
           }},
          {u"LoadTitles", [document, &json](auto) {
             std::vector<Title> titles;
             CollectTitles(json, titles);
             for (const Title& title : titles) {
               (*document)->Titles()->AddTitle(0, title.reference, title.name);
             }
             *document = nullptr;
             return Variant(int32_t{0});
           }}};
}

}  // namespace

Ref<vnDocument> DocumentFromJson(const Json& json) {
  const auto document = Make<vnDocument>();
  std::optional<Supplied> title_handler;
  const Text handler = HandlerNamedIn(json);
  if (!handler.empty()) title_handler.emplace(handler, TitleHandler(json));
  const Supplied converter(
      u"VNDoc6Converters.VN5",
      {{u"ImportDocument", [&](std::span<const Variant> arguments) {
          Importer(static_cast<vnDocument&>(*arguments[1].ToObject())).Import(json);
          return Variant(int32_t{0});
        }}});
  // A file without content counts as one of the older format.
  const ScratchFolder folder;
  const Text carrier = folder.Name("empty");
  if (!vndoc6::common::ReplaceFileWith(carrier, {}) || !document->Load(carrier, {})) {
    throw Failure("the document can't be made");
  }
  return document;
}

}  // namespace vndoc
