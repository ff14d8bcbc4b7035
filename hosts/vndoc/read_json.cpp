// Documents from JSON. The JSON is imported as the library lets its hosts import documents of an
// older format: by a converter, which may also set what is otherwise read only, such as the GUID.
#include <algorithm>
#include <memory>
#include <optional>
#include <unordered_map>

#include "automation/inside.h"
#include "document_json.h"
#include "host_object.h"
#include "platform/file_system.h"
#include "scratch_folder.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/content/content.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/titles/title_ref.h"
#include "vndoc6/titles/titles.h"

namespace vndoc {

using vndoc6::ContentMember;
using vndoc6::automation::CallKind;
using vndoc6::automation::Error;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;
using vndoc6::automation::ToUtf8;
using vndoc6::automation::TypeKind;

namespace {

constexpr CallKind kPuts = CallKind::kPut | CallKind::kPutRef;

const MemberInfo* FindNamed(const ClassInfo& info, std::string_view name, CallKind kinds) {
  const int32_t id = info.FindMember(FromUtf8(name));
  return id == vndoc6::automation::kNoMember ? nullptr : info.Find(id, kinds);
}

Variant ValueAt(const JsonNode& json, const char* name) {
  const auto found = json.Find(name);
  return found ? FromJson(*found) : Variant();
}
Text TextAt(const JsonNode& json, const char* name) { return ValueAt(json, name).ToText(); }

// What was read before decides how other parts are taken: whether there is a title handler, and
// which of a step's files are the document's already.
constexpr const char* kFirst[] = {"Properties", "RevisionHistory", "Files", "Jumps"};
// Set when nothing counts any more.
constexpr const char* kCounter = "IR";

bool IsSetApart(std::string_view name) {
  return name == kCounter ||
         std::find(std::begin(kFirst), std::end(kFirst), name) != std::end(kFirst);
}

// What there is to restore of a class, looked up by name once.
class ClassPlan {
 public:
  struct Row {
    ContentMember content;
    const MemberInfo* put;  // null for what can only be read
  };

  ClassPlan(const ClassInfo& info, const JsonTree& json)
      : info_(info),
        rows_of_keys_(json.key_count(), kUnknown),
        document_put_(FindNamed(info, "Document", kPuts)),
        has_load_(FindNamed(info, "Load", CallKind::kCall) != nullptr) {
    for (const ContentMember& content : vndoc6::ContentOf(info)) {
      rows_.push_back({content, FindNamed(info, content.member->name, kPuts)});
    }
  }

  // In published order.
  const std::vector<Row>& rows() const { return rows_; }
  const MemberInfo* document_put() const { return document_put_; }
  bool has_load() const { return has_load_; }

  // The row of a member of an object; kNone for what follows from the others.
  static constexpr int16_t kNone = -1;
  int16_t RowOf(const JsonNode& member) {
    int16_t& row = rows_of_keys_[member.key_number()];
    if (row == kUnknown) row = FindRow(std::string(member.key()));
    return row;
  }

 private:
  static constexpr int16_t kUnknown = -2;

  int16_t FindRow(const std::string& name) const {
    for (size_t row = 0; row < rows_.size(); ++row) {
      if (name == rows_[row].content.member->name) return static_cast<int16_t>(row);
    }
    if (FindNamed(info_, name, CallKind::kGet) != nullptr) return kNone;
    throw Failure(std::string(info_.name()) + " has no " + name);
  }

  const ClassInfo& info_;
  std::vector<Row> rows_;
  std::vector<int16_t> rows_of_keys_;
  const MemberInfo* document_put_;
  bool has_load_;
};

class Importer {
 public:
  Importer(vnDocument& document, const JsonTree& json) : document_(document), json_(json) {}

  void Import() {
    const JsonNode root = json_.root();
    RequireObject(root);
    for (const char* const name : kFirst) {
      const auto part = root.Find(name);
      if (part) At(name, [&] { RestorePart(*Part(document_, name), *part); });
    }
    RestoreContent(document_, root);
    // Stores the value plus one.
    const auto counter = root.Find(kCounter);
    if (counter) At(kCounter, [&] { SetCounter(FromJson(*counter).ToLong()); });
  }

 private:
  void SetCounter(int32_t value) { document_.SetIR(value - 1); }

  static void RequireObject(const JsonNode& json) {
    if (!json.IsObject()) throw Failure("an object is expected, in braces");
  }

  static std::string PlaceName(const char* name) { return name; }
  static std::string PlaceName(size_t position) { return std::to_string(position); }

  // Says where it is when a value can't be restored.
  template <class Place, class Restore>
  static void At(Place place, Restore restore) {
    try {
      restore();
    } catch (const Error& error) {
      throw Failure(PlaceName(place) + ": " + ToUtf8(error.description()));
    } catch (const JsonFormError& error) {
      throw Failure(PlaceName(place) + ": " + error.what());
    } catch (const Failure& failure) {
      throw Failure(PlaceName(place) + "/" + failure.what());
    }
  }

  ClassPlan& PlanOf(const ClassInfo& info) {
    const auto known = plans_.find(&info);
    return known != plans_.end() ? known->second
                                 : plans_.try_emplace(&info, info, json_).first->second;
  }

  static Ref<Object> Part(Object& object, const char* name) {
    return vndoc6::automation::Get(object, FromUtf8(name)).ToObject();
  }

  void RestoreContent(Object& object, const JsonNode& json) {
    RequireObject(json);
    ClassPlan& plan = PlanOf(*object.GetClassInfo());
    std::vector<std::optional<JsonNode>> values(plan.rows().size());
    for (const JsonNode member : json) {
      const int16_t row = plan.RowOf(member);
      if (row != ClassPlan::kNone) values[static_cast<size_t>(row)] = member;
    }
    const bool is_document = &object == &document_;
    for (size_t row = 0; row < values.size(); ++row) {
      const char* const name = plan.rows()[row].content.member->name;
      if (!values[row] || (is_document && IsSetApart(name))) continue;
      At(name, [&] { RestoreMember(object, plan.rows()[row], *values[row]); });
    }
  }

  void RestoreMember(Object& object, const ClassPlan::Row& row, const JsonNode& json) {
    const MemberInfo& member = *row.content.member;
    if (row.content.part != nullptr && json.IsStructure()) {
      // What nobody asks for need not be built.
      if (json.IsList() && json.size() == 0) return;
      RestorePart(*object.InvokeMember(member.id, CallKind::kGet, {}).ToObject(), json);
    } else if (member.result.kind == TypeKind::kDispatch) {
      RestoreForeign(object, row, json);
    } else if (!member.parameters.empty()) {
      RestoreRow(object, member, json);
    } else {
      Put(object, row, FromJson(json, member.result.kind));
    }
  }

  void RestorePart(Object& part, const JsonNode& json) {
    if (!vndoc6::ContentReader::IsCollection(part)) return RestoreContent(part, json);
    if (!json.IsList()) throw Failure("a list is expected, in brackets");
    size_t position = 0;
    for (const JsonNode member : json) {
      At(++position, [&] { AddMember(part, member); });
    }
  }

  // Of a host's object the JSON has the text.
  static void RestoreForeign(Object& object, const ClassPlan::Row& row, const JsonNode& json) {
    const Variant value = object.InvokeMember(row.content.member->id, CallKind::kGet, {});
    const Variant wanted = FromJson(json);
    if (value.IsObject() && value.ToObject() && wanted.IsText()) {
      vndoc6::automation::Put(*value.ToObject(), u"Text", {wanted});
    } else {
      Put(object, row, wanted);
    }
  }

  static void RestoreRow(Object& object, const MemberInfo& member, const JsonNode& json) {
    if (!json.IsList()) throw JsonFormError();
    int32_t position = 0;
    for (const JsonNode value : json) {
      vndoc6::automation::Put(object, FromUtf8(member.name),
                              {Variant(++position), FromJson(value)});
    }
  }

  // What can only be read follows from the rest.
  static void Put(Object& object, const ClassPlan::Row& row, const Variant& value) {
    if (row.put == nullptr || (value.IsEmpty() && row.put->kind == CallKind::kPutRef)) return;
    object.InvokeMember(row.put->id, kPuts, {{&value, 1}, {}});
  }

  // --- Members of collections ---

  void AddMember(Object& collection, const JsonNode& json) {
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
    const ClassPlan& plan = PlanOf(info);
    const Ref<Object> member = info.Create();
    // A key that can't be put comes with a load.
    if (plan.has_load() && json.Find("Key")) {
      vndoc6::automation::Call(*member, u"Load", {Variant(u""), Variant(TextAt(json, "Key"))});
    }
    if (plan.document_put() != nullptr) {
      const Variant document{Ref<vnDocument>(&document_)};
      member->InvokeMember(plan.document_put()->id, kPuts, {{&document, 1}, {}});
    }
    RestoreContent(*member, json);
    vndoc6::automation::Call(collection, u"Add", {Variant(member)});
  }

  static void AddEntry(vndoc6::Properties& bag, const JsonNode& json) {
    const Text key = TextAt(json, "Key");
    bag.Add(key, ValueAt(json, "Value"));
    const Variant object = ValueAt(json, "Object");
    if (object.IsObject()) bag.Item(Variant(key))->SetObject(object.ToObject().get());
  }

  static void AddRole(vndoc6::vnTitleRefs& roles, const JsonNode& json) {
    const Text reference = TextAt(json, "Ref");
    const Text name = TextAt(json, "DisplayName");
    roles.Add(Variant(reference.empty() ? name : reference));
  }

  // 0 where it is left out.
  static Variant Typed(const JsonNode& json, const char* name, TypeKind type) {
    const auto value = json.Find(name);
    return value ? FromJson(*value, type) : Variant(0);
  }

  void AddRevision(vndoc6::vnRevisions& revisions, const JsonNode& json) {
    const auto revision = Make<vndoc6::vnRevision>();
    vndoc6::Inside::StoreRevisionDate(*revision,
                                      Typed(json, "RevisionDate", TypeKind::kDate).ToDate());
    vndoc6::Inside::StoreRevision(*revision, Typed(json, "Revision", TypeKind::kSingle).ToSingle());
    vndoc6::Inside::StoreIR(*revision, ValueAt(json, "IR").ToLong());
    vndoc6::Inside::StoreReason(*revision, TextAt(json, "Reason"));
    revisions.Add(revision.get());
  }

  vnDocument& document_;
  const JsonTree& json_;
  std::unordered_map<const ClassInfo*, ClassPlan> plans_;
};

// --- Titles ---

struct Title {
  Text reference;
  Text name;
};

// References are to titles that a title handler knows; what the JSON says of them is all that is
// known here.
std::vector<Title> CollectTitles(const JsonTree& json) {
  std::vector<Title> titles;
  for (size_t at = 0; at < json.size(); ++at) {
    const JsonNode node = json.Node(at);
    if (node.Find("Ref") && node.Find("DisplayName")) {
      titles.push_back({TextAt(node, "Ref"), TextAt(node, "DisplayName")});
    }
  }
  return titles;
}

Text HandlerNamedIn(const JsonNode& json) {
  const auto entries = json.Find("Properties");
  if (!entries) return {};
  for (const JsonNode entry : *entries) {
    const auto key = entry.Find("Key");
    const auto value = entry.Find("Value");
    if (key && key->IsText("Titles Handler") && value && value->IsText()) {
      return FromUtf8(value->text());
    }
  }
  return {};
}

// Stands in for the title handler that the JSON names.
std::vector<HostObject::MemberFunction> TitleHandler(const JsonTree& json) {
  const auto document = std::make_shared<Ref<vnDocument>>();
  return {{u"RequiresDirect", [](auto) { return Variant(false); }},
          {u"Document",
           [document](std::span<const Variant> arguments) {
             *document = static_cast<vnDocument*>(arguments[0].ToObject().get());
             return Variant();
           }},
          {u"LoadTitles", [document, &json](auto) {
             for (const Title& title : CollectTitles(json)) {
               (*document)->Titles()->AddTitle(0, title.reference, title.name);
             }
             *document = nullptr;
             return Variant(int32_t{0});
           }}};
}

}  // namespace

Ref<vnDocument> DocumentFromJson(const JsonTree& json) {
  const auto document = Make<vnDocument>();
  std::optional<Supplied> title_handler;
  const Text handler = HandlerNamedIn(json.root());
  if (!handler.empty()) title_handler.emplace(handler, TitleHandler(json));
  const Supplied converter(
      u"VNDoc6Converters.VN5",
      {{u"ImportDocument", [&](std::span<const Variant> arguments) {
          Importer(static_cast<vnDocument&>(*arguments[1].ToObject()), json).Import();
          return Variant(int32_t{0});
        }}});
  // A file without content counts as one of the older format.
  const ScratchFolder folder;
  const Text carrier = folder.Name("empty");
  if (!vndoc6::platform::ReplaceFileWith(carrier, {}) || !document->Load(carrier, {})) {
    throw Failure("the document can't be made");
  }
  return document;
}

}  // namespace vndoc
