#include "details/revision.h"

#include "automation/describe.h"
#include "document/document.h"

namespace vndoc6 {

using automation::Variant;

void vnRevision::InternalWrite(bag::BagWriter& writer) const {
  writer.Add("D", revision_date_);
  writer.Add("R", revision_);
  writer.Add("IR", ir_);
  writer.Add("Rs", reason_);
}

bool vnRevision::InternalLoad(const bag::KeptText& text) {
  bag::BagReader reader(text);
  // A missing number or date can't be converted either.
  const auto value = [&](std::string_view key) { return reader.Get(key).value_or(Variant(u"")); };
  try {
    const automation::Date date = value("D").ToDate();
    const float revision = value("R").ToSingle();
    const int32_t ir = value("IR").ToLong();
    reason_ = value("Rs").ToText();
    revision_date_ = date;
    revision_ = revision;
    ir_ = ir;
  } catch (const automation::Error&) {
    return false;
  }
  return true;
}

// Hosts hear nothing of revisions that come: they never did.
void vnRevisions::Add(vnRevision* poRevision) {
  if (poRevision == nullptr) return;
  if (!store_.Add(automation::NumberText(poRevision->IR()), *poRevision)) return;
  poRevision->InternalSetDocument(InternalDocument());
}

void vnRevisions::AddImport(int32_t plIR, const Text& psReason, int32_t plRevision,
                            automation::Date pdDate) {
  const vnDocument* const document = InternalDocument();
  if (document == nullptr || !document->InternalAssignmentUnlocked()) {
    throw automation::Error(automation::kWrongState, {}, u"vnRevisions.AddImport");
  }
  const automation::Ref<vnRevision> revision = automation::Make<vnRevision>();
  revision->InternalSetIR(plIR);
  revision->InternalSetReason(psReason);
  revision->InternalSetRevision(static_cast<float>(plRevision));
  revision->InternalSetRevisionDate(pdDate);
  Add(revision.get());
}

// Hosts have always been told of a file that is none.
void vnRevisions::Remove(const Variant& pvRef) {
  if (!store_.Remove(pvRef)) return;
  vnDocument* const document = InternalDocument();
  if (document != nullptr) document->InternalStepFileChange(nullptr, vnceRemove, 0);
}

void vnRevisions::InternalWrite(bag::BagWriter& writer) const { WriteByPosition(writer, "F"); }

void vnRevisions::InternalLoad(const bag::KeptText& text) {
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  while (scanner.Next(entry)) {
    const automation::Ref<vnRevision> revision = automation::Make<vnRevision>();
    if (revision->InternalLoad(scanner.TextOf(entry))) Add(revision.get());
  }
}

const automation::ClassInfo& vnRevision::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnRevision>(
      "vnRevision", "A revision that the document has gone through.",
      {0x25112D78, 0x3ECE, 0x4A6D, {0x8D, 0xFD, 0xFD, 0x46, 0xC9, 0xDA, 0xA1, 0x1A}},
      {0x75DC4571, 0x6A09, 0x4B15, {0x99, 0x05, 0x9C, 0x63, 0xA8, 0x29, 0x3F, 0x04}},
      {
          get<&vnRevision::Document>("Document"),
          get<&vnRevision::RevisionDate>("RevisionDate"),
          get<&vnRevision::Revision>("Revision"),
          get<&vnRevision::IR>("IR"),
          get<&vnRevision::Reason>("Reason"),
      });
  return info;
}

const automation::ClassInfo& vnRevisions::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnRevisions>(
      "vnRevisions", "The revision history of a document. Its members are keyed by their IR.",
      {0xAB9EB572, 0x7999, 0x4923, {0x87, 0x82, 0xFE, 0xD5, 0x89, 0x35, 0x33, 0x28}},
      {0xB7787F87, 0x6E39, 0x4EB0, {0xB7, 0x58, 0x11, 0x9C, 0x39, 0x4D, 0xF5, 0x3D}},
      {
          get<&vnRevisions::Document>("Document"),
          get<&vnRevisions::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnRevisions::Count>("Count"),
          get<&vnRevisions::NewEnum>("NewEnum"),
          method<&vnRevisions::Add>("Add", "poRevision"),
          hidden(method<&vnRevisions::AddImport>("AddImport", "plIR", "psReason", "plRevision",
                                                 "pdDate")),
          method<&vnRevisions::Remove>("Remove", "pvRef"),
          method<&vnRevisions::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
