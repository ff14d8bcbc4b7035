#include "process/link.h"

#include <string_view>
#include <utility>

#include "automation/describe.h"
#include "bag/lazy.h"
#include "bag/unchanged_text.h"
#include "chart/line.h"
#include "document/document.h"
#include "process/condition.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

// --- vnLink ---

struct vnLink::Content {
  vndoc6::Text text, tooltip, origin_step_key, destination_step_key, condition_expression;
  bag::Lazy<vnLine> line;
  bag::Lazy<vnConditions> conditions;
};

namespace {

// The entries of a link's text in the order in which they are written. In every file: never change
// one.
constexpr bag::EntryForm kEntries[] = {{"K", '"', true}, {"TT", '"'}, {"T", '"'}, {"OSK", '"'},
                                       {"DSK", '"'},     {"L", '"'},  {"C", '"'}, {"CE", '"'}};

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
  content.tooltip = reader.GetText("TT");
  content.text = reader.GetText("T");
  content.origin_step_key = reader.GetText("OSK");
  content.destination_step_key = reader.GetText("DSK");
  content.line.Reset(reader.GetKept("L"));
  content.conditions.Reset(reader.GetKept("C"));
  content.condition_expression = reader.GetText("CE");
}

void vnLink::InternalSetDocument(vnDocument* document) {
  Member::InternalSetDocument(document);
  if (!content_) return;
  if (vnLine* line = content_->line.built()) line->InternalSetDocument(document);
  if (vnConditions* conditions = content_->conditions.built()) {
    conditions->InternalSetDocument(document);
  }
}

const vndoc6::Text& vnLink::Text() { return content().text; }
void vnLink::SetText(const vndoc6::Text& psText) { content().text = psText; }
const vndoc6::Text& vnLink::Tooltip() { return content().tooltip; }
void vnLink::SetTooltip(const vndoc6::Text& psTooltip) { content().tooltip = psTooltip; }
const vndoc6::Text& vnLink::OriginStepKey() { return content().origin_step_key; }
void vnLink::SetOriginStepKey(const vndoc6::Text& psOriginStepKey) {
  content().origin_step_key = psOriginStepKey;
}
const vndoc6::Text& vnLink::DestinationStepKey() { return content().destination_step_key; }
void vnLink::SetDestinationStepKey(const vndoc6::Text& psDestinationStepKey) {
  content().destination_step_key = psDestinationStepKey;
}
const vndoc6::Text& vnLink::ConditionExpression() { return content().condition_expression; }
void vnLink::SetConditionExpression(const vndoc6::Text& psConditionExpression) {
  content().condition_expression = psConditionExpression;
}

Ref<vnLine> vnLink::Line() {
  return content().line.Get(
      [this] {
        Ref<vnLine> line = automation::Make<vnLine>();
        line->InternalSetDocument(InternalDocument());
        line->SetLink(this);
        return line;
      },
      [](vnLine& line, const KeptText& text) { line.InternalLoad(text); });
}

void vnLink::SetLine(vnLine* poLine) { content().line.Set(poLine); }

Ref<vnConditions> vnLink::Conditions() {
  // Building them reports them; a host's handler may let go of this link.
  const Ref<vnLink> self(this);
  return content().conditions.Get(
      [this] {
        Ref<vnConditions> conditions = automation::Make<vnConditions>();
        conditions->InternalSetDocument(InternalDocument());
        conditions->SetLink(this);
        return conditions;
      },
      [](vnConditions& conditions, const KeptText& text) { conditions.InternalLoad(text); });
}

void vnLink::SetConditions(vnConditions* poConditions) { content().conditions.Set(poConditions); }

Ref<vnCondition> vnLink::NewCondition(const vndoc6::Text& psDisplayName,
                                      const vndoc6::Text& psCondition) {
  const Ref<vnLink> self(this);
  const Ref<vnCondition> condition = automation::Make<vnCondition>();
  condition->InternalSetDocument(InternalDocument());
  condition->SetLink(this);
  condition->SetDisplayName(psDisplayName);
  condition->SetConditionTest(psCondition);
  Conditions()->Add(condition.get());
  return condition;
}

bool vnLink::RemoveCondition(const vndoc6::Text& psKey) {
  return Conditions()->InternalRemove(Variant(psKey));
}

vndoc6::Text vnLink::Save() {
  return bag::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

void vnLink::Load(const vndoc6::Text& psLoad, const vndoc6::Text& psKey) {
  InternalLoad(KeptText(psLoad), psKey);
}

void vnLink::InternalWrite(BagWriter& writer) {
  if (!content_ && CopyUnread(writer)) return;
  const Content& read = content();
  const auto write = [](auto& part, BagWriter& nested) { part.InternalWrite(nested); };
  writer.Add("K", key_);
  writer.Add("TT", read.tooltip);
  writer.Add("T", read.text);
  writer.Add("OSK", read.origin_step_key);
  writer.Add("DSK", read.destination_step_key);
  read.line.Save(writer, "L", write);
  read.conditions.Save(writer, "C", write);
  writer.Add("CE", read.condition_expression);
}

// Copies the text of a link that nobody read, if that is what writing it would give: every entry
// in its place, the key as it was.
bool vnLink::CopyUnread(BagWriter& writer) const {
  const auto is_same = [this](std::string_view, const automation::Variant& key) {
    return key == automation::Variant(key_);
  };
  return bag::CopyIfUnchanged(unread_, kEntries, writer, is_same);
}

void vnLink::InternalLoad(const KeptText& text, const vndoc6::Text& key) {
  key_ = key.empty() ? KeyIn(text) : key;
  if (content_) {
    ReadContent(text, *content_);
  } else {
    unread_ = text;
  }
}

const automation::ClassInfo& vnLink::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnLink>(
      "vnLink", "Joins two steps.",
      {0x4209BE42, 0x86A5, 0x4127, {0x98, 0xC1, 0xEC, 0x90, 0xDA, 0xCA, 0x7C, 0xE6}},
      {0x835B8B1F, 0x41CE, 0x4055, {0xBA, 0xA1, 0x2F, 0x0D, 0x9A, 0xAE, 0xBB, 0x0E}},
      {
          get<&vnLink::Document>("Document"),
          putref<&vnLink::SetDocument>("Document", "poDocument"),
          get<&vnLink::Key>("Key"),
          get<&vnLink::Text>("Text"),
          put<&vnLink::SetText>("Text", "psText"),
          get<&vnLink::Tooltip>("Tooltip"),
          put<&vnLink::SetTooltip>("Tooltip", "psTooltip"),
          get<&vnLink::OriginStepKey>("OriginStepKey"),
          put<&vnLink::SetOriginStepKey>("OriginStepKey", "psOriginStepKey"),
          get<&vnLink::DestinationStepKey>("DestinationStepKey"),
          put<&vnLink::SetDestinationStepKey>("DestinationStepKey", "psDestinationStepKey"),
          get<&vnLink::Line>("Line"),
          putref<&vnLink::SetLine>("Line", "poLine"),
          get<&vnLink::Conditions>("Conditions"),
          putref<&vnLink::SetConditions>("Conditions", "poConditions"),
          get<&vnLink::ConditionExpression>("ConditionExpression"),
          put<&vnLink::SetConditionExpression>("ConditionExpression", "psConditionExpression"),
          method<&vnLink::Save>("Save"),
          method<&vnLink::Load>("Load", "psLoad", optional("psKey", u"")),
          method<&vnLink::NewCondition>("NewCondition", "psDisplayName", "psCondition"),
          method<&vnLink::RemoveCondition>("RemoveCondition", "psKey"),
      });
  return info;
}

// --- vnLinks ---

void vnLinks::Add(vnLink* poLink) {
  if (poLink == nullptr || !AddUnderOwnKey(*poLink)) return;
  vnDocument* const document = InternalDocument();
  if (document == nullptr) return;
  poLink->InternalSetDocument(document);
  document->InternalLinkAdded(*poLink);
}

void vnLinks::Remove(const Variant& pvRef) { store_.Remove(pvRef); }

void vnLinks::InternalWrite(BagWriter& writer) const { WriteByKey(writer, u'L'); }

void vnLinks::InternalLoad(const KeptText& text) {
  ReadMembers(text, [this](vnLink* link) { Add(link); });
}

void vnLinks::InternalLoadQuietly(const KeptText& text) { ReadMembersQuietly(text); }

const automation::ClassInfo& vnLinks::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnLinks>(
      "vnLinks", "The links of a document, or a step's working list of links.",
      {0x960FB4D6, 0x7971, 0x4801, {0xA7, 0xFE, 0xBB, 0xB4, 0x73, 0x24, 0xC0, 0x1A}},
      {0xDCA370BA, 0xCBA1, 0x4F9A, {0xB5, 0x07, 0xDF, 0xD8, 0xB2, 0x73, 0x56, 0xDD}},
      {
          get<&vnLinks::Document>("Document"),
          putref<&vnLinks::SetDocument>("Document", "poDocument"),
          get<&vnLinks::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnLinks::Count>("Count"),
          get<&vnLinks::NewEnum>("NewEnum"),
          method<&vnLinks::Add>("Add", "poLink"),
          method<&vnLinks::Remove>("Remove", "pvRef"),
          method<&vnLinks::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
