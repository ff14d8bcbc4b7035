#include "vndoc6/document/document.h"

#include <limits>
#include <memory>

#include "automation/inside.h"
#include "bag/bag_part.h"
#include "core/part.h"
#include "core/scope.h"
#include "document/document_scope.h"
#include "document/own_files.h"
#include "fields/fields.h"
#include "platform/keys.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/item.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6 {

using automation::Error;
using automation::Object;
using automation::Owned;
using automation::Ref;
using automation::Variant;
using bag::KeptText;

namespace {

// The copy gets its document last: hosts hear of it when it is there, not of its parts before.
template <class T, class List>
Ref<T> CopyInto(vnDocument& document, List& list, T* source) {
  if (source == nullptr) throw Error(automation::kObjectNotSet);
  // What copying builds of the original is reported: a host's handler may let go of both.
  const Ref<vnDocument> self(&document);
  const Ref<T> original(source);
  auto copy = automation::Make<T>();
  Inside::CopyFrom(*copy, *original);
  try {
    Inside::Join(*copy, document);
    list.Add(copy.get());
  } catch (...) {
    // It is in all of the document's lists or in none.
    if (!Inside::store(list).Contains(*copy)) Inside::Leave(*copy, document);
    throw;
  }
  return copy;
}

}  // namespace

vnDocument::vnDocument()
    : own_files_(std::make_unique<OwnFiles>()), scope_(std::make_unique<OwnScope>(*this)) {
  details_ = Owned<vnDetails>(MakePart<vnDetails>(*this).get());
  steps_ = Owned<vnSteps>(MakePart<vnSteps>(*this).get());
  SetProperties(automation::Make<Properties>().get());
  titles_ = Owned<vnTitles>(MakePart<vnTitles>(*this).get());
}

// Hosts whose own objects hang in the document (field definitions, forms, a database) see them go
// in this order.
vnDocument::~vnDocument() {
  details_ = nullptr;
  steps_ = nullptr;
  chart_.Reset({});
  revision_history_.Reset({});
  properties_ = nullptr;
  titles_ = nullptr;
  for (Definitions* definitions :
       {&details_definitions_, &steps_definitions_, &links_definitions_}) {
    definitions->field_defs.object.Reset({});
    definitions->form.object.Reset({});
  }
  containers_.Reset({});
}

// --- Parts ---

Ref<vnChart> vnDocument::Chart() { return ReadPart(chart_, *this); }
Ref<vnSteps> vnDocument::Steps() const { return steps_.get(); }
Ref<vnDetails> vnDocument::Details() const { return details_.get(); }
Ref<vnRevisions> vnDocument::RevisionHistory() { return ReadPart(revision_history_, *this); }
Ref<vnTitles> vnDocument::Titles() const { return titles_.get(); }
Ref<Properties> vnDocument::GetProperties() const { return properties_.get(); }
void vnDocument::SetProperties(Properties* poProperties) {
  if (properties_) Inside::StoreOwner(*properties_, nullptr);
  properties_ = Owned<Properties>(poProperties);
  if (properties_) Inside::StoreOwner(*properties_, this);
}

Variant vnDocument::Containers() { return Variant(ContainerCollection()); }
Ref<vnContainers> vnDocument::ContainerCollection() { return ReadPart(containers_, *this); }
Ref<vnLinks> vnDocument::Links() { return ReadPart(links_, *this); }
Ref<vnFiles> vnDocument::Files() { return ReadPart(files_, *this); }
Ref<vnJumps> vnDocument::Jumps() { return ReadPart(jumps_, *this); }

Ref<Properties> vnDocument::Attachments() {
  KeepLoadedAttachments();
  return bag::BagPart(attachments_, this);
}

// Hosts that take their bag away get what was loaded back, in the next read and the next save.
void vnDocument::SetAttachments(Properties* poAttachments) {
  KeepLoadedAttachments();
  bag::SetBagPart(attachments_, poAttachments, this);
  if (poAttachments == nullptr) attachments_.Reset(loaded_attachments_);
}

// In bytes of its own: a document that was read whole lets go of the file's.
void vnDocument::KeepLoadedAttachments() {
  const KeptText& text = attachments_.text();
  if (!text.empty()) loaded_attachments_ = text.Unescaped();
}

// --- Identity ---

EnumVantrelDocumentType vnDocument::DocumentType() const {
  return static_cast<EnumVantrelDocumentType>(document_type_);
}
void vnDocument::SetDocumentType(EnumVantrelDocumentType peDocumentType) {
  document_type_ = peDocumentType;
}
EnumVantrelDocType vnDocument::DocType() const {
  return static_cast<EnumVantrelDocType>(document_type_);
}
void vnDocument::SetDocType(EnumVantrelDocType peDocType) { document_type_ = peDocType; }

int32_t vnDocument::IR() {
  if (ir_ == 0) scope_->IncrementIR();
  return ir_;
}

void vnDocument::SetIR(int32_t plIR) {
  if (!assignment_unlocked_) {
    throw Error(automation::kReadOnlyProperty, {}, u"vnDocument.IR");
  }
  // One more than was asked for: converters have always passed the last number used.
  if (plIR == std::numeric_limits<int32_t>::max()) throw Error(automation::kOverflow);
  ir_ = plIR + 1;
  ir_changed_ = true;
}

void vnDocument::RestoreIR(int32_t ir) {
  ir_ = ir;
  ir_changed_ = true;
}

void vnDocument::SetGUID(const Text& psGUID) {
  const auto allowed = [this] {
    if (!properties_) return false;
    const Variant value = properties_->Value(u"AllowGUIDAssign", Variant(false));
    const bool* flag = value.If<bool>();
    return flag != nullptr && *flag;
  };
  if (!assignment_unlocked_ && !allowed()) {
    throw Error(automation::kReadOnlyProperty, {}, u"vnDocument.GUID");
  }
  guid_ = psGUID;
}

// --- Field definitions and the database ---

Ref<Object> vnDocument::FieldDefsDetails() { return FieldDefs(details_definitions_); }
Ref<Object> vnDocument::FieldDefsSteps() { return FieldDefs(steps_definitions_); }
Ref<Object> vnDocument::FieldDefsLinks() { return FieldDefs(links_definitions_); }
Ref<Object> vnDocument::FormDetails() { return Form(details_definitions_); }
Ref<Object> vnDocument::FormSteps() { return Form(steps_definitions_); }
Ref<Object> vnDocument::FormLinks() { return Form(links_definitions_); }

Ref<Object> vnDocument::FieldDefs(Definitions& definitions) {
  return fields::Read(*this, definitions.field_defs.object, &fields::MakeFieldDefs);
}
Ref<Object> vnDocument::Form(Definitions& definitions) {
  return fields::Read(*this, definitions.form.object, &fields::MakeFormDef);
}

void vnDocument::SetFieldDefsDetails(const Text& psFieldDefs, const Text& psForm) {
  SetDefinitions(details_definitions_, psFieldDefs, psForm, u"vnDocument.FieldDefsDetails");
}
void vnDocument::SetFieldDefsSteps(const Text& psFieldDefs, const Text& psForm) {
  SetDefinitions(steps_definitions_, psFieldDefs, psForm, u"vnDocument.FieldDefsSteps");
}

void vnDocument::SetDefinitions(Definitions& definitions, const Text& field_defs, const Text& form,
                                const char16_t* source) {
  if (!assignment_unlocked_) throw Error(automation::kWrongState, {}, source);
  definitions.field_defs.object.Reset(KeptText(field_defs));
  definitions.form.object.Reset(KeptText(form));
}

Ref<Object> vnDocument::Database() const { return database_.get(); }

void vnDocument::SetDatabase(Object* poDatabase) {
  if (poDatabase == nullptr || poDatabase->TypeName() != "osDatabase") return;
  const Ref<vnDocument> self(this);
  database_ = Owned<Object>(poDatabase);
  for (const Ref<Object>& field_defs : {FieldDefsDetails(), FieldDefsSteps(), FieldDefsLinks()}) {
    fields::SetDatabase(*field_defs, poDatabase);
  }
  // The titles may come from that database.
  Inside::ClearTried(*titles_);
  scope_->Raise<&DocumentListener::DatabaseConnected>();
}

// --- New objects ---

Ref<vnStep> vnDocument::NewStep(const Text& psSourceKey, const Text& psLoadData) {
  KeptText load_data(psLoadData);
  if (!psSourceKey.empty()) {
    if (vnStep* source = Inside::store(*steps_).Find(TextView(psSourceKey))) {
      load_data = KeptText(source->Save());
    }
  }
  auto step = automation::Make<vnStep>();
  Inside::TakeDocument(*step, this);
  if (!load_data.empty()) Inside::ReadFrom(*step, load_data, Text(), true);
  steps_->Add(step.get());
  return step;
}

Ref<vnStep> vnDocument::CopyStep(vnStep* poStep) { return CopyInto(*this, *steps_, poStep); }

Ref<vnContainer> vnDocument::CopyContainer(vnContainer* poContainer) {
  return CopyInto(*this, *ContainerCollection(), poContainer);
}

// --- Events ---

void vnDocument::AddListener(DocumentListener* listener) { scope_->listeners().Add(listener); }
void vnDocument::RemoveListener(DocumentListener* listener) {
  scope_->listeners().Remove(listener);
}
void vnDocument::Connect(automation::EventSink* sink) { scope_->listeners().Connect(sink); }
void vnDocument::Disconnect(automation::EventSink* sink) { scope_->listeners().Disconnect(sink); }

bool vnDocument::ChangeEvents() const { return scope_->change_events(); }
void vnDocument::SetChangeEvents(bool pbChangeEvents) { scope_->SetChangeEvents(pbChangeEvents); }

void vnDocument::RaiseLinkChange(vnLink* poLink, int32_t plDetailID) {
  if (poLink == nullptr) return;
  scope_->Report<&DocumentListener::LinkChange>(*poLink, plDetailID);
}

// --- The document as its parts see it ---

Scope& ScopeOf(vnDocument& document) { return *document.scope_; }

vnSteps& vnDocument::OwnScope::Steps() { return *document_.steps_; }
vnFiles& vnDocument::OwnScope::Files() { return *document_.Files(); }
vnJumps& vnDocument::OwnScope::Jumps() { return *document_.Jumps(); }
vnTitles& vnDocument::OwnScope::Titles() { return *document_.titles_; }
vnRevisions& vnDocument::OwnScope::RevisionHistory() { return *document_.RevisionHistory(); }
Properties* vnDocument::OwnScope::Settings() { return document_.properties_.get(); }

void vnDocument::OwnScope::IncrementIR() {
  if (document_.ir_ == std::numeric_limits<int32_t>::max()) throw Error(automation::kOverflow);
  ++document_.ir_;
  document_.ir_changed_ = true;
}

}  // namespace vndoc6
