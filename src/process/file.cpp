#include "vndoc6/process/file.h"

#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/member_entries.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

constexpr MemberEntries kFileEntries{"F", MemberEntries::Name::kByPosition};

}  // namespace

using bag::BagWriter;
using bag::KeptText;

// --- vnFile ---

struct vnFile::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnFile::Step, &vnFile::SetStep>("Step", "poStep")
            .not_content("leads back to the owner"),
        property<&vnFile::Document>("Document").not_content("leads back to the root"),
        property<&vnFile::Key, &vnFile::SetKey>("Key", "psKey").identity(&vnFile::key_, "K"),
        property<&vnFile::DisplayName, &vnFile::SetDisplayName>("DisplayName", "psDisplayName")
            .field(&vnFile::display_name_, "DN"),
        property<&vnFile::FileName, &vnFile::SetFileName>("FileName", "psFileName")
            .field(&vnFile::file_name_, "FN"),

        // Left out when it is 0, unlike a jump's number.
        property<&vnFile::DocID, &vnFile::SetDocID>("DocID", "plDocID")
            .field(&vnFile::doc_id_, "DID")
            .departs(kOnlyWhenThere),
    };
  }();
};

void vnFile::RaiseChange(Scope& scope, EnumVantrelChangeEvent type, int32_t detail_id) {
  scope.Report<&DocumentListener::StepFileChange>(this, type, detail_id);
}

void vnFile::Write(BagWriter& writer) const { schema::WriteEntries<Schema>(writer, *this, *this); }

void vnFile::Read(const KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
}

void vnFile::CopyFrom(const vnFile& other) { schema::CopyValues<Schema>(other, *this); }

const automation::ClassInfo& vnFile::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnFile>(
      "vnFile", "A file attached to a step.",
      {0x562E9289, 0x84F6, 0x498A, {0xBD, 0xAB, 0x73, 0x33, 0x83, 0x0C, 0x7F, 0xA6}},
      {0x803C5722, 0xEF90, 0x4759, {0x94, 0xEE, 0x6C, 0x5C, 0xEB, 0x98, 0xAA, 0x22}},
      Schema::kRows);
  return info;
}

// --- vnFiles ---

vnFiles::vnFiles()
    : AttachmentList(kFileEntries,
                     [](Scope& scope) -> AttachmentList<vnFile>& { return scope.Files(); }) {}

const automation::ClassInfo& vnFiles::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnFiles>(
      "vnFiles", "The files of a step, or all those of a document.",
      {0x9A3C5B42, 0x05BE, 0x483D, {0x8F, 0x65, 0xCA, 0x78, 0xDC, 0x24, 0x53, 0xA8}},
      {0xFFB5E8FE, 0x10D1, 0x4F11, {0xBE, 0xF6, 0x60, 0xBA, 0x4B, 0x8B, 0x78, 0x78}},
      std::tuple{
          property<&vnFiles::Step, &vnFiles::SetStep>("Step", "poStep")
              .not_content("leads back to the owner"),
          property<&vnFiles::Document>("Document").not_content("leads back to the root"),
          property<&vnFiles::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnFiles::Count>("Count").not_content("the members themselves are read"),
          property<&vnFiles::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnFiles::Add>("Add", "poFile"),
          method<&vnFiles::Remove>("Remove", "pvRef"),
          method<&vnFiles::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
