#include "vndoc6/process/container.h"

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/part.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

namespace {

constexpr MemberEntries kContainerEntries{"C"};

// What a container reports for any change of its own.
constexpr int32_t kChanged = 1;

}  // namespace

// --- vnContainer ---

struct vnContainer::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnContainer::Document, &vnContainer::SetDocument>("Document", "poDocument")
            .not_content("leads back to the root"),
        put<&vnContainer::SetKey>("Key", "psKey"),
        property<&vnContainer::Key>("Key").identity(&vnContainer::key_, "K"),
        property<&vnContainer::Label, &vnContainer::SetLabel>("Label", "psLabel")
            .field(&vnContainer::label_, "L")
            .reports(kChanged),
        property<&vnContainer::Description, &vnContainer::SetDescription>("Description",
                                                                          "psDescription")
            .field(&vnContainer::description_, "D"),
        property<&vnContainer::Figure>("Figure").field(&vnContainer::figure_, "F"),
        method<&vnContainer::Load>("Load", "psLoad", optional("psKey", u"")),
        method<&vnContainer::Save>("Save"),
    };
  }();
};

vnContainer::vnContainer() = default;
vnContainer::~vnContainer() = default;

Variant vnContainer::Document() const { return Variant(Member::Document()); }

void vnContainer::TakeDocument(vnDocument* document) {
  Member::TakeDocument(document);
  if (vnFigure* figure = figure_.built()) Inside::TakeDocument(*figure, document);
}

void vnContainer::ReportChange() {
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ContainerChange>(*this, kChanged);
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

Ref<vnFigure> vnContainer::Figure() { return ReadPart(figure_, *this); }

void vnContainer::Load(const Text& psLoad, const Text& psKey) { Read(KeptText(psLoad), psKey); }

Text vnContainer::Save() const {
  return bag::BagTextOf([this](BagWriter& writer) { Write(writer); });
}

void vnContainer::Write(BagWriter& writer) const {
  schema::WriteEntries<Schema>(writer, *this, *this);
}

void vnContainer::Read(const KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
}

void vnContainer::CopyFrom(vnContainer& other) {
  schema::CopyValues<Schema>(other, *this);
  Inside::CopyFrom(*Figure(), *other.Figure());
}

const automation::ClassInfo& vnContainer::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnContainer>(
      "vnContainer", "A named group on the chart.",
      {0x4FCAC881, 0x5158, 0x485D, {0x98, 0xA5, 0xDA, 0xA4, 0x49, 0x67, 0x0C, 0x4F}},
      {0x811BE168, 0x243A, 0x4308, {0x81, 0xD0, 0x0E, 0x22, 0x88, 0x9F, 0x77, 0xA9}},
      Schema::kRows);
  return info;
}

// --- vnContainers ---

Ref<vnContainer> vnContainers::Container() const { return container_.get(); }

void vnContainers::SetContainer(vnContainer* poContainer) { container_ = poContainer; }

void vnContainers::Add(vnContainer* poContainer) {
  if (poContainer == nullptr || !AddUnderOwnKey(*poContainer)) return;
  Scope* const scope = document_scope();
  if (scope == nullptr) return;
  Inside::TakeDocument(*poContainer, document());
  scope->Report<&DocumentListener::ContainerAdded>(*poContainer);
}

void vnContainers::Remove(const Variant& pvRef) {
  const Ref<vnContainer> container(store_.Find(pvRef));
  if (!container) return;
  const Ref<vnContainers> self(this);
  // Hosts that are told still find the container here.
  if (Scope* scope = document_scope())
    scope->Report<&DocumentListener::ContainerRemoved>(*container);
  store_.RemoveMember(*container);
}

void vnContainers::Write(BagWriter& writer) const { WriteText(writer, kContainerEntries); }

void vnContainers::Read(const KeptText& text) {
  ReadMembers(text, kContainerEntries, [this](vnContainer* container) { Add(container); });
}

void vnContainers::ReadQuietly(const KeptText& text) {
  ReadMembersQuietly(text, kContainerEntries);
}

const automation::ClassInfo& vnContainers::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnContainers>(
      "vnContainers", "The containers of a document.",
      {0xD6615E44, 0xE39B, 0x4689, {0x96, 0x7D, 0x11, 0x1E, 0xA2, 0x84, 0x13, 0xC9}},
      {0xC870A382, 0x1FFA, 0x4E70, {0xBB, 0x77, 0x32, 0x7F, 0xDD, 0x6A, 0x86, 0x35}},
      std::tuple{
          property<&vnContainers::Container, &vnContainers::SetContainer>("Container",
                                                                          "poContainer")
              .not_content("leads back to the owner"),
          property<&vnContainers::Document>("Document").not_content("leads back to the root"),
          property<&vnContainers::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnContainers::Count>("Count").not_content("the members themselves are read"),
          property<&vnContainers::NewEnum>("NewEnum").not_content(
              "the members themselves are read"),
          method<&vnContainers::Add>("Add", "poContainer"),
          method<&vnContainers::Remove>("Remove", "pvRef"),
          method<&vnContainers::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
