#include "vndoc6/titles/titles.h"

#include "automation/inside.h"
#include "automation/scoped_value.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/document/document.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::Variant;

constexpr const char16_t* kHandlerProperty = u"Titles Handler";
constexpr TextView kStandardHandler = u"VNPerformers.VNTitlesList";

// Identifiers that older documents name the standard handler by.
bool IsRetired(TextView handler) {
  return handler == u"VNTL2.VNTitlesList" || handler == u"VNTLStd.VNTitlesList";
}

// Handlers that read a directory and are known to need the database.
bool IsEnterprise(TextView handler) {
  return handler == u"VNPerformers.VNEnterpriseList" ||
         handler == u"VNPerformers.VNEnterpriseUsers" ||
         handler == u"VNPerformers.VNEnterpriseGroups";
}

bool RequiresDirect(automation::Object& handler) {
  return automation::Get(handler, u"RequiresDirect").ToBoolean();
}

}  // namespace

automation::Ref<vnTitles> vnTitle::Titles() const { return titles_.get(); }

void vnTitle::StoreTitles(vnTitles* titles) {
  titles_ = titles;
  ParentChanged();
}

automation::Object* vnTitle::FindParent() const { return OwnerOrDocument(titles_.get()); }

vnTitles::vnTitles() : properties_(automation::Make<Properties>().get()) {}

vnTitles::~vnTitles() = default;

automation::Ref<vnTitle> vnTitles::Item(const Variant& pvIndexKey) {
  const automation::Ref<vnTitles> self = Consulted();
  return store_.Find(pvIndexKey);
}

int32_t vnTitles::Count() {
  const automation::Ref<vnTitles> self = Consulted();
  return static_cast<int32_t>(store_.size());
}

automation::Ref<automation::Enumerator> vnTitles::NewEnum() {
  const automation::Ref<vnTitles> self = Consulted();
  return automation::Make<automation::Enumerator>(store_.Snapshot());
}

void vnTitles::Remove(const Variant& pvRef) { store_.Remove(pvRef); }

automation::Ref<vnTitle> vnTitles::AddTitle(int32_t plID, const Text& psReference,
                                            const Text& psDisplayName, const Text& psDescription) {
  const automation::Ref<vnTitle> title = automation::Make<vnTitle>();
  title->SetID(plID);
  title->SetRef(psReference);
  title->SetDisplayName(psDisplayName);
  title->SetDescription(psDescription);
  if (store_.Add(psReference, *title)) {
    Inside::TakeDocument(*title, document());
    Inside::StoreTitles(*title, this);
  }
  return title;
}

automation::Ref<Properties> vnTitles::GetProperties() const { return properties_.get(); }

bool vnTitles::HandlerAvailable() {
  const automation::Ref<vnTitles> self = Consulted();
  return handler_loaded_;
}

automation::Ref<vnTitleRefs> vnTitles::TitleRefsObj() const {
  automation::Ref<vnTitleRefs> references = automation::Make<vnTitleRefs>();
  Inside::TakeDocument(*references, document());
  return references;
}

Text vnTitles::HandlerName() const {
  Scope* const scope = document_scope();
  const automation::Ref<Properties> settings = scope != nullptr ? scope->Settings() : nullptr;
  if (!settings) return {};
  const Variant name = settings->Value(kHandlerProperty, Variant(u""));
  const Text* const text = name.If<Text>();
  return text != nullptr ? *text : Text();
}

VNHandlerRequiresDirect vnTitles::HandlerRequiresDirect() {
  const Text name = HandlerName();
  if (IsEnterprise(name)) return VNRDRequired;
  if (name.empty() || name == kStandardHandler) return VNRDNotRequired;
  try {
    return RequiresDirect(*automation::CreateObject(name)) ? VNRDRequired : VNRDNotRequired;
  } catch (const automation::Error&) {
    // A handler that can't be created, or fails, or answers with something else than a Boolean.
    return VNRDUnknown;
  }
}

automation::Ref<vnTitles> vnTitles::Consulted() {
  automation::Ref<vnTitles> self(this);
  if (!tried_ && !consulting_) Consult();
  return self;
}

void vnTitles::Consult() {
  const automation::ScopedValue consulting(consulting_, true, false);
  store_.Clear();
  handler_loaded_ = false;
  Scope* const scope = document_scope();
  try {
    tried_ = scope == nullptr || LoadFromHandler(*scope);
  } catch (const automation::Error&) {
    // The handler can't be created, or fails. What it added stays.
    tried_ = true;
  }
}

// False when the handler has to wait for a database.
bool vnTitles::LoadFromHandler(Scope& scope) {
  const automation::Ref<automation::Object> document = scope.Root();
  Text name = HandlerName();
  if (name.empty()) return true;
  if (IsRetired(name)) {
    name = kStandardHandler;
    scope.Settings()->SetValue(kHandlerProperty, Variant(name));
  }
  const automation::Ref<automation::Object> handler = automation::CreateObject(name);
  if (!scope.Database() && RequiresDirect(*handler)) return false;
  automation::Put(*handler, u"Document", {Variant(document)});
  if (RequiresDirect(*handler)) {
    automation::Put(*handler, u"Database", {Variant(scope.Database())});
  }
  handler_loaded_ = automation::Call(*handler, u"LoadTitles").ToLong() == 0;
  return true;
}

const automation::ClassInfo& vnTitle::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTitle>(
      "vnTitle", "A role, person or group that steps and details refer to.",
      {0xADFCB9B1, 0xA195, 0x40AF, {0x84, 0x8D, 0x0E, 0x61, 0xC2, 0xCF, 0x69, 0x68}},
      {0x1DF373E2, 0x642A, 0x4E6D, {0x94, 0x4B, 0x30, 0x0F, 0x99, 0xEE, 0x56, 0xA2}},
      std::tuple{
          property<&vnTitle::Document>("Document").not_content("leads back to the root"),
          property<&vnTitle::ID, &vnTitle::SetID>("ID", "plID"),
          property<&vnTitle::DisplayName, &vnTitle::SetDisplayName>("DisplayName", "psDisplayName"),
          property<&vnTitle::Description, &vnTitle::SetDescription>("Description", "psDescription"),
          property<&vnTitle::Titles>("Titles").not_content("leads back to the owner"),
          property<&vnTitle::Ref, &vnTitle::SetRef>("Ref", "psRef"),
      });
  return info;
}

const automation::ClassInfo& vnTitles::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTitles>(
      "vnTitles", "The titles of a document, read from a title handler when they are first needed.",
      {0x644BB7EE, 0x6765, 0x478A, {0xBB, 0x5B, 0x9F, 0x80, 0x70, 0x4D, 0x5A, 0xB2}},
      {0xBF9A60A7, 0x079E, 0x4D50, {0xBB, 0x27, 0xD0, 0x36, 0x23, 0xF8, 0x39, 0xA8}},
      std::tuple{
          property<&vnTitles::Document>("Document").not_content("leads back to the root"),
          property<&vnTitles::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnTitles::Count>("Count").not_content("the members themselves are read"),
          property<&vnTitles::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnTitles::Remove>("Remove", "pvRef"),
          method<&vnTitles::RemoveAll>("RemoveAll"),
          method<&vnTitles::AddTitle>("AddTitle", "plID", "psReference", "psDisplayName",
                                      optional("psDescription", u"")),
          property<&vnTitles::GetProperties>("Properties"),
          property<&vnTitles::HandlerAvailable>("HandlerAvailable"),
          property<&vnTitles::UsingHandler>("UsingHandler"),
          method<&vnTitles::Reset>("Reset"),
          property<&vnTitles::TitleRefsObj>("TitleRefsObj").hidden(),
          property<&vnTitles::HandlerName>("HandlerName"),
          property<&vnTitles::HandlerRequiresDirect>("HandlerRequiresDirect"),
      });
  return info;
}

template <>
const automation::EnumInfo& automation::DescribeEnum<VNHandlerRequiresDirect>() {
  static constexpr EnumValue kValues[] = {{"VNRDNotRequired", VNRDNotRequired},
                                          {"VNRDRequired", VNRDRequired},
                                          {"VNRDUnknown", VNRDUnknown}};
  static constexpr EnumInfo info{
      "VNHandlerRequiresDirect",
      {0x8411B494, 0xAD26, 0x483F, {0x84, 0x47, 0x9A, 0x77, 0x35, 0x0F, 0x94, 0xB3}},
      "Whether a title handler needs the document's database.",
      kValues};
  return info;
}

}  // namespace vndoc6
