#include "process/container.h"

#include "automation/describe.h"
#include "chart/figure.h"
#include "document/document.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

namespace {

// What a container reports for any change of its own.
constexpr int32_t kChanged = 1;

}  // namespace

// --- vnContainer ---

vnContainer::vnContainer() = default;
vnContainer::~vnContainer() = default;

Variant vnContainer::Document() const { return Variant(Member::Document()); }

void vnContainer::InternalSetDocument(vnDocument* document) {
  Member::InternalSetDocument(document);
  if (vnFigure* figure = figure_.built()) figure->InternalSetDocument(document);
}

void vnContainer::ReportChange() {
  if (vnDocument* document = InternalDocument()) {
    document->InternalContainerChange(*this, kChanged);
  }
}

void vnContainer::SetLabel(const Text& psLabel) {
  label_ = psLabel;
  ReportChange();
}

Text vnContainer::Description() {
  Text description = description_;
  // It is the reading that hosts are told of, not the putting.
  ReportChange();
  return description;
}

Ref<vnFigure> vnContainer::Figure() {
  return figure_.Get(
      [this] {
        Ref<vnFigure> figure = automation::Make<vnFigure>();
        figure->InternalSetDocument(InternalDocument());
        figure->SetContainer(this);
        return figure;
      },
      [](vnFigure& figure, const KeptText& text) { figure.InternalLoad(text, Text()); });
}

void vnContainer::Load(const Text& psLoad, const Text& psKey) {
  InternalLoad(KeptText(psLoad), psKey);
}

Text vnContainer::Save() const {
  return bag::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

// The keys are in every file: never change one.
void vnContainer::InternalWrite(BagWriter& writer) const {
  writer.Add("K", key_);
  writer.Add("L", label_);
  writer.Add("D", description_);
  figure_.Save(writer, "F",
               [](vnFigure& figure, BagWriter& nested) { figure.InternalWrite(nested); });
}

void vnContainer::InternalLoad(const KeptText& text, const Text& key) {
  bag::BagReader reader(text);
  key_ = key.empty() ? reader.GetText("K") : key;
  label_ = reader.GetText("L");
  description_ = reader.GetText("D");
  figure_.Reset(reader.GetKept("F"));
}

void vnContainer::InternalCopyFrom(vnContainer& other) {
  label_ = other.label_;
  description_ = other.description_;
  Figure()->InternalCopyFrom(*other.Figure());
}

const automation::ClassInfo& vnContainer::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnContainer>(
      "vnContainer", "A named group on the chart.",
      {0x4FCAC881, 0x5158, 0x485D, {0x98, 0xA5, 0xDA, 0xA4, 0x49, 0x67, 0x0C, 0x4F}},
      {0x811BE168, 0x243A, 0x4308, {0x81, 0xD0, 0x0E, 0x22, 0x88, 0x9F, 0x77, 0xA9}},
      {
          get<&vnContainer::Document>("Document"),
          putref<&vnContainer::SetDocument>("Document", "poDocument"),
          put<&vnContainer::SetKey>("Key", "psKey"),
          get<&vnContainer::Key>("Key"),
          get<&vnContainer::Label>("Label"),
          put<&vnContainer::SetLabel>("Label", "psLabel"),
          get<&vnContainer::Description>("Description"),
          put<&vnContainer::SetDescription>("Description", "psDescription"),
          get<&vnContainer::Figure>("Figure"),
          method<&vnContainer::Load>("Load", "psLoad", optional("psKey", u"")),
          method<&vnContainer::Save>("Save"),
      });
  return info;
}

// --- vnContainers ---

Ref<vnContainer> vnContainers::Container() const { return container_.get(); }

void vnContainers::SetContainer(vnContainer* poContainer) { container_ = poContainer; }

void vnContainers::Add(vnContainer* poContainer) {
  if (poContainer == nullptr || !AddUnderOwnKey(*poContainer)) return;
  vnDocument* const document = InternalDocument();
  if (document == nullptr) return;
  poContainer->InternalSetDocument(document);
  document->InternalContainerAdded(*poContainer);
}

void vnContainers::Remove(const Variant& pvRef) {
  const Ref<vnContainer> container(store_.Find(pvRef));
  if (!container) return;
  const Ref<vnContainers> self(this);
  // Hosts that are told still find the container here.
  if (vnDocument* document = InternalDocument()) document->InternalContainerRemoved(*container);
  store_.RemoveMember(*container);
}

void vnContainers::InternalWrite(BagWriter& writer) const { WriteByKey(writer, u'C'); }

void vnContainers::InternalLoad(const KeptText& text) {
  ReadMembers(text, [this](vnContainer* container) { Add(container); });
}

void vnContainers::InternalLoadQuietly(const KeptText& text) { ReadMembersQuietly(text); }

const automation::ClassInfo& vnContainers::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnContainers>(
      "vnContainers", "The containers of a document.",
      {0xD6615E44, 0xE39B, 0x4689, {0x96, 0x7D, 0x11, 0x1E, 0xA2, 0x84, 0x13, 0xC9}},
      {0xC870A382, 0x1FFA, 0x4E70, {0xBB, 0x77, 0x32, 0x7F, 0xDD, 0x6A, 0x86, 0x35}},
      {
          get<&vnContainers::Container>("Container"),
          putref<&vnContainers::SetContainer>("Container", "poContainer"),
          get<&vnContainers::Document>("Document"),
          get<&vnContainers::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnContainers::Count>("Count"),
          get<&vnContainers::NewEnum>("NewEnum"),
          method<&vnContainers::Add>("Add", "poContainer"),
          method<&vnContainers::Remove>("Remove", "pvRef"),
          method<&vnContainers::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
