#include "vndoc6/process/link.h"

#include <string_view>
#include <utility>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/part.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

// --- vnLink ---

struct vnLink::Content : Values, bag::Carrier {
  bag::Lazy<vnLine> line;
  bag::Lazy<vnConditions> conditions;
};

struct vnLink::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnLink::Document, &vnLink::SetDocument>("Document", "poDocument")
            .not_content("leads back to the root"),
        property<&vnLink::Key>("Key").identity(&vnLink::key_, "K"),
        property<&vnLink::Text, &vnLink::SetText>("Text", "psText").field(&Values::text, "T"),
        property<&vnLink::Tooltip, &vnLink::SetTooltip>("Tooltip", "psTooltip")
            .field(&Values::tooltip, "TT"),
        property<&vnLink::OriginStepKey, &vnLink::SetOriginStepKey>("OriginStepKey",
                                                                    "psOriginStepKey")
            .field(&Values::origin_step_key, "OSK"),
        property<&vnLink::DestinationStepKey, &vnLink::SetDestinationStepKey>(
            "DestinationStepKey", "psDestinationStepKey")
            .field(&Values::destination_step_key, "DSK"),
        property<&vnLink::Line, &vnLink::SetLine>("Line", "poLine").field(&Content::line, "L"),
        property<&vnLink::Conditions, &vnLink::SetConditions>("Conditions", "poConditions")
            .field(&Content::conditions, "C"),
        property<&vnLink::ConditionExpression, &vnLink::SetConditionExpression>(
            "ConditionExpression", "psConditionExpression")
            .field(&Values::condition_expression, "CE"),
        method<&vnLink::Save>("Save"),
        method<&vnLink::Load>("Load", "psLoad", optional("psKey", u"")),
        method<&vnLink::NewCondition>("NewCondition", "psDisplayName", "psCondition"),
        method<&vnLink::RemoveCondition>("RemoveCondition", "psKey"),
    };
  }();
  static constexpr std::string_view kFileOrder[] = {"K", "TT", "T", "OSK", "DSK", "L", "C", "CE"};
};

namespace {

constexpr MemberEntries kLinkEntries{"L"};

// The key in a link's text, without reading on when it comes first, as it does in what is written
// here.
vndoc6::Text KeyIn(const KeptText& text) {
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  if (scanner.Next(entry) && entry.key == "K" && entry.tag == '"') {
    return scanner.TextOf(entry).ToText();
  }
  return bag::BagReader(text).GetText("K");
}

}  // namespace

vnLink::vnLink() = default;
vnLink::~vnLink() = default;

vnLink::Content& vnLink::content() {
  if (!content_) {
    auto content = std::make_unique<Content>();
    ReadContent(unread_, *content);
    content_ = std::move(content);
    unread_ = {};
  }
  return *content_;
}

void vnLink::ReadContent(const KeptText& text, Content& content) {
  bag::BagReader reader(text);
  schema::ReadEntries<Schema, schema::AtOnce::kReadElsewhere>(reader, *this, content);
}

std::function<void()> vnLink::RememberUnread() {
  if (content_) return schema::RememberUnreadParts<Schema>(*content_);
  return [this, text = unread_] {
    if (!content_ || !schema::HoldsNoPart<Schema>(*content_)) return;
    const std::unique_ptr<Content> read = std::move(content_);
    unread_ = text;
  };
}

vnLink::Values& vnLink::values() { return content(); }
bag::UnknownEntries& vnLink::unknown_entries() { return Inside::unknown_entries(content()); }

void vnLink::TakeDocument(vnDocument* document) {
  Member::TakeDocument(document);
  if (!content_) return;
  schema::ForEachPart<Schema>(*content_, [document](auto& part) {
    if (part.built() != nullptr) Inside::TakeDocument(*part.built(), document);
  });
}

Ref<vnLine> vnLink::Line() { return ReadPart(content().line, *this); }
void vnLink::SetLine(vnLine* poLine) { content().line.Set(poLine); }

Ref<vnConditions> vnLink::Conditions() { return ReadPart(content().conditions, *this); }
void vnLink::SetConditions(vnConditions* poConditions) { content().conditions.Set(poConditions); }

Ref<vnCondition> vnLink::NewCondition(const vndoc6::Text& psDisplayName,
                                      const vndoc6::Text& psCondition) {
  const Ref<vnLink> self(this);
  const Ref<vnCondition> condition = automation::Make<vnCondition>();
  Inside::TakeDocument(*condition, document());
  condition->SetLink(this);
  condition->SetDisplayName(psDisplayName);
  condition->SetConditionTest(psCondition);
  Conditions()->Add(condition.get());
  return condition;
}

bool vnLink::RemoveCondition(const vndoc6::Text& psKey) {
  return Inside::RemoveMember(*Conditions(), Variant(psKey));
}

vndoc6::Text vnLink::Save() {
  return bag::BagTextOf([this](BagWriter& writer) { Write(writer); });
}

void vnLink::Load(const vndoc6::Text& psLoad, const vndoc6::Text& psKey) {
  Read(KeptText(psLoad), psKey);
}

void vnLink::Write(BagWriter& writer) {
  if (!content_ && schema::CopyUnread<Schema>(unread_, writer, *this)) return;
  schema::WriteEntries<Schema>(writer, *this, content());
}

void vnLink::Read(const KeptText& text, const vndoc6::Text& key) {
  key_ = key.empty() ? KeyIn(text) : key;
  if (content_) {
    ReadContent(text, *content_);
  } else {
    unread_ = text;
  }
}

const automation::ClassInfo& vnLink::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnLink>(
      "vnLink", "Joins two steps.",
      {0x4209BE42, 0x86A5, 0x4127, {0x98, 0xC1, 0xEC, 0x90, 0xDA, 0xCA, 0x7C, 0xE6}},
      {0x835B8B1F, 0x41CE, 0x4055, {0xBA, 0xA1, 0x2F, 0x0D, 0x9A, 0xAE, 0xBB, 0x0E}},
      Schema::kRows);
  return info;
}

// --- vnLinks ---

void vnLinks::Add(vnLink* poLink) {
  if (poLink == nullptr || !AddUnderOwnKey(*poLink)) return;
  Scope* const scope = document_scope();
  if (scope == nullptr) return;
  Inside::TakeDocument(*poLink, document());
  scope->Report<&DocumentListener::LinkAdded>(*poLink);
}

void vnLinks::Remove(const Variant& pvRef) { store_.Remove(pvRef); }

void vnLinks::Write(BagWriter& writer) const { WriteText(writer, kLinkEntries); }

void vnLinks::Read(const KeptText& text) {
  ReadMembers(text, kLinkEntries, [this](vnLink* link) { Add(link); });
}

void vnLinks::ReadQuietly(const KeptText& text) { ReadMembersQuietly(text, kLinkEntries); }

const automation::ClassInfo& vnLinks::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnLinks>(
      "vnLinks", "The links of a document, or a step's working list of links.",
      {0x960FB4D6, 0x7971, 0x4801, {0xA7, 0xFE, 0xBB, 0xB4, 0x73, 0x24, 0xC0, 0x1A}},
      {0xDCA370BA, 0xCBA1, 0x4F9A, {0xB5, 0x07, 0xDF, 0xD8, 0xB2, 0x73, 0x56, 0xDD}},
      std::tuple{
          property<&vnLinks::Document, &vnLinks::SetDocument>("Document", "poDocument")
              .not_content("leads back to the root"),
          property<&vnLinks::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnLinks::Count>("Count").not_content("the members themselves are read"),
          property<&vnLinks::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnLinks::Add>("Add", "poLink"),
          method<&vnLinks::Remove>("Remove", "pvRef"),
          method<&vnLinks::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
