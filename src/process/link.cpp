#include "process/link.h"

#include "automation/describe.h"
#include "chart/line.h"
#include "core/document.h"
#include "process/condition.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using common::BagWriter;
using common::KeptText;

// --- vnLink ---

vnLink::vnLink() = default;
vnLink::~vnLink() = default;

void vnLink::InternalSetDocument(vnDocument* document) {
  Member::InternalSetDocument(document);
  if (vnLine* line = line_.built()) line->InternalSetDocument(document);
  if (vnConditions* conditions = conditions_.built()) conditions->InternalSetDocument(document);
}

Ref<vnLine> vnLink::Line() {
  return line_.Get(
      [this] {
        Ref<vnLine> line = automation::Make<vnLine>();
        line->InternalSetDocument(InternalDocument());
        line->SetLink(this);
        return line;
      },
      [](vnLine& line, const KeptText& text) { line.InternalLoad(text); });
}

void vnLink::SetLine(vnLine* poLine) { line_.Set(poLine); }

Ref<vnConditions> vnLink::Conditions() {
  return conditions_.Get(
      [this] {
        Ref<vnConditions> conditions = automation::Make<vnConditions>();
        conditions->InternalSetDocument(InternalDocument());
        conditions->SetLink(this);
        return conditions;
      },
      [](vnConditions& conditions, const KeptText& text) { conditions.InternalLoad(text); });
}

void vnLink::SetConditions(vnConditions* poConditions) { conditions_.Set(poConditions); }

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

vndoc6::Text vnLink::Save() const {
  return common::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

void vnLink::Load(const vndoc6::Text& psLoad, const vndoc6::Text& psKey) {
  InternalLoad(KeptText(psLoad), psKey);
}

// The keys are in every file: never change one.
void vnLink::InternalWrite(BagWriter& writer) const {
  const auto write = [](auto& part, BagWriter& nested) { part.InternalWrite(nested); };
  writer.Add("K", key_);
  writer.Add("TT", tooltip_);
  writer.Add("T", text_);
  writer.Add("OSK", origin_step_key_);
  writer.Add("DSK", destination_step_key_);
  line_.Save(writer, "L", write);
  conditions_.Save(writer, "C", write);
  writer.Add("CE", condition_expression_);
}

void vnLink::InternalLoad(const KeptText& text, const vndoc6::Text& key) {
  common::BagReader reader(text);
  key_ = key.empty() ? reader.GetText("K") : key;
  tooltip_ = reader.GetText("TT");
  text_ = reader.GetText("T");
  origin_step_key_ = reader.GetText("OSK");
  destination_step_key_ = reader.GetText("DSK");
  line_.Reset(reader.GetKept("L"));
  conditions_.Reset(reader.GetKept("C"));
  condition_expression_ = reader.GetText("CE");
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
          with_help(get<&vnLink::OriginStepKey>("OriginStepKey"),
                    "The key of the step that the link leaves."),
          put<&vnLink::SetOriginStepKey>("OriginStepKey", "psOriginStepKey"),
          with_help(get<&vnLink::DestinationStepKey>("DestinationStepKey"),
                    "The key of the step that the link leads to."),
          put<&vnLink::SetDestinationStepKey>("DestinationStepKey", "psDestinationStepKey"),
          with_help(get<&vnLink::Line>("Line"), "The connector that draws the link."),
          putref<&vnLink::SetLine>("Line", "poLine"),
          with_help(get<&vnLink::Conditions>("Conditions"), "The tests for taking this path."),
          putref<&vnLink::SetConditions>("Conditions", "poConditions"),
          with_help(get<&vnLink::ConditionExpression>("ConditionExpression"),
                    "Free text, independent of Conditions."),
          put<&vnLink::SetConditionExpression>("ConditionExpression", "psConditionExpression"),
          method<&vnLink::Save>("Save"),
          method<&vnLink::Load>("Load", "psLoad", optional("psKey", u"")),
          with_help(method<&vnLink::NewCondition>("NewCondition", "psDisplayName", "psCondition"),
                    "Adds a condition to Conditions and gives it."),
          with_help(method<&vnLink::RemoveCondition>("RemoveCondition", "psKey"),
                    "Takes a condition out; True when there was one."),
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
          with_help(get<&vnLinks::Item>("Item", by_reference{"pvIndexKey"}),
                    "A link by position or key; Nothing when there is none."),
          with_help(get<&vnLinks::Count>("Count"), "How many there are."),
          get<&vnLinks::NewEnum>("NewEnum"),
          with_help(method<&vnLinks::Add>("Add", "poLink"), "Adds a link; raises LinkAdded."),
          with_help(method<&vnLinks::Remove>("Remove", "pvRef"),
                    "Takes a link out; raises nothing."),
          with_help(method<&vnLinks::RemoveAll>("RemoveAll"),
                    "Empties the collection; raises nothing."),
      });
  return info;
}

}  // namespace vndoc6
