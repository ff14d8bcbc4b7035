#include "process/file.h"

#include "automation/describe.h"
#include "process/steps.h"

namespace vndoc6 {

using bag::BagWriter;
using bag::KeptText;

// --- vnFile ---

void vnFile::InternalReport(vnDocument& document, EnumVantrelChangeEvent type, int32_t detail_id) {
  document.InternalStepFileChange(this, type, detail_id);
}

// The keys are in every file: never change one.
void vnFile::InternalWrite(BagWriter& writer) const {
  WriteNames(writer);
  // Left out when it is 0, unlike a jump's number.
  if (doc_id_ != 0) writer.Add("DID", doc_id_);
}

void vnFile::InternalLoad(const KeptText& text, const Text& key) {
  bag::BagReader reader(text);
  ReadNames(reader, key);
  doc_id_ = reader.GetLong("DID");
}

void vnFile::InternalCopyFrom(const vnFile& other) {
  CopyNames(other);
  doc_id_ = other.doc_id_;
}

const automation::ClassInfo& vnFile::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnFile>(
      "vnFile", "A file attached to a step.",
      {0x562E9289, 0x84F6, 0x498A, {0xBD, 0xAB, 0x73, 0x33, 0x83, 0x0C, 0x7F, 0xA6}},
      {0x803C5722, 0xEF90, 0x4759, {0x94, 0xEE, 0x6C, 0x5C, 0xEB, 0x98, 0xAA, 0x22}},
      {
          get<&vnFile::Step>("Step"),
          putref<&vnFile::SetStep>("Step", "poStep"),
          get<&vnFile::Document>("Document"),
          get<&vnFile::Key>("Key"),
          put<&vnFile::SetKey>("Key", "psKey"),
          get<&vnFile::DisplayName>("DisplayName"),
          put<&vnFile::SetDisplayName>("DisplayName", "psDisplayName"),
          get<&vnFile::FileName>("FileName"),
          put<&vnFile::SetFileName>("FileName", "psFileName"),
          get<&vnFile::DocID>("DocID"),
          put<&vnFile::SetDocID>("DocID", "plDocID"),
      });
  return info;
}

// --- vnFiles ---

vnFiles::vnFiles()
    : AttachmentList("F", [](vnDocument& document) -> AttachmentList<vnFile>& {
        return document.InternalFiles();
      }) {}

const automation::ClassInfo& vnFiles::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnFiles>(
      "vnFiles", "The files of a step, or all those of a document.",
      {0x9A3C5B42, 0x05BE, 0x483D, {0x8F, 0x65, 0xCA, 0x78, 0xDC, 0x24, 0x53, 0xA8}},
      {0xFFB5E8FE, 0x10D1, 0x4F11, {0xBE, 0xF6, 0x60, 0xBA, 0x4B, 0x8B, 0x78, 0x78}},
      {
          get<&vnFiles::Step>("Step"),
          putref<&vnFiles::SetStep>("Step", "poStep"),
          get<&vnFiles::Document>("Document"),
          get<&vnFiles::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnFiles::Count>("Count"),
          get<&vnFiles::NewEnum>("NewEnum"),
          method<&vnFiles::Add>("Add", "poFile"),
          method<&vnFiles::Remove>("Remove", "pvRef"),
          method<&vnFiles::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
