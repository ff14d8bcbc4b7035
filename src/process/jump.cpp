#include "vndoc6/process/jump.h"

#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/member_entries.h"
#include "core/scope.h"
#include "platform/file_system.h"
#include "schema/rows.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

constexpr MemberEntries kJumpEntries{"J", MemberEntries::Name::kByPosition};

}  // namespace

using automation::Ref;
using bag::BagWriter;
using bag::KeptText;

// --- vnJump ---

struct vnJump::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnJump::Document>("Document").not_content("leads back to the root"),
        property<&vnJump::Step, &vnJump::SetStep>("Step", "poStep")
            .not_content("leads back to the owner"),
        put<&vnJump::SetKey>("Key", "psKey"),
        property<&vnJump::Key>("Key").identity(&vnJump::key_, "K"),
        property<&vnJump::DisplayName, &vnJump::SetDisplayName>("DisplayName", "psDisplayName")
            .field(&vnJump::display_name_, "DN"),
        property<&vnJump::FileName, &vnJump::SetFileName>("FileName", "psFileName")
            .field(&vnJump::file_name_, "FN"),
        property<&vnJump::JumpDocument>("JumpDocument")
            .not_content("another document; FileName tells which"),

        // Written also when it is 0, unlike a file's number.
        property<&vnJump::ProcessID, &vnJump::SetProcessID>("ProcessID", "plProcessID")
            .field(&vnJump::process_id_, "JID"),
    };
  }();
};

void vnJump::RaiseChange(Scope& scope, EnumVantrelChangeEvent type, int32_t detail_id) {
  scope.Report<&DocumentListener::StepJumpChange>(*this, type, detail_id);
}

Ref<vnDocument> vnJump::JumpDocument() {
  if (target_) return target_.get();
  const Text file_name = FileName();
  if (!platform::FileExists(file_name)) return nullptr;
  // Loading may run a host's code, which may let go of this jump.
  const Ref<vnJump> self(this);
  const Ref<vnDocument> target = automation::Make<vnDocument>();
  // In its place before it is loaded: whoever asks meanwhile gets the same one.
  target_ = target.get();
  try {
    if (target->Load(file_name, Text())) return target;
  } catch (const automation::Error&) {
    // The converter for older files failed: a target that can't be loaded, like any other.
  } catch (...) {
    target_ = nullptr;
    throw;
  }
  target_ = nullptr;
  return nullptr;
}

void vnJump::Write(BagWriter& writer) const { schema::WriteEntries<Schema>(writer, *this, *this); }

void vnJump::Read(const KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
  if (process_id_ == 0 && FileName().starts_with(u"000:")) RecoverProcessID();
}

// File names of the old form carry the number of the process after the second backslash that
// follows their first five characters.
void vnJump::RecoverProcessID() {
  constexpr size_t kSearchFrom = 5;
  const size_t first = FileName().find(u'\\', kSearchFrom);
  if (first == Text::npos) return;
  const size_t second = FileName().find(u'\\', first + 1);
  if (second == Text::npos) return;
  const TextView number = TextView(FileName()).substr(second + 1);
  try {
    process_id_ = automation::RoundToLong(automation::LeadingNumber(number));
  } catch (const automation::Error&) {
    // Overflow: a number that no process can have leaves 0.
  }
}

void vnJump::CopyFrom(const vnJump& other) { schema::CopyValues<Schema>(other, *this); }

const automation::ClassInfo& vnJump::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnJump>(
      "vnJump", "A step's reference to another document.",
      {0x0002501F, 0xB9BD, 0x40E5, {0xBF, 0xF4, 0x99, 0xEB, 0xC4, 0x33, 0x22, 0x15}},
      {0x48B2F5CB, 0x2291, 0x4876, {0x95, 0xD6, 0xD6, 0x7F, 0x2C, 0xA7, 0x91, 0xF3}},
      Schema::kRows);
  return info;
}

// --- vnJumps ---

vnJumps::vnJumps()
    : AttachmentList(kJumpEntries,
                     [](Scope& scope) -> AttachmentList<vnJump>& { return scope.Jumps(); }) {}

const automation::ClassInfo& vnJumps::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnJumps>(
      "vnJumps", "The jumps of a step, or all those of a document.",
      {0xA71FE668, 0x728D, 0x4E77, {0x81, 0x36, 0xAD, 0x35, 0x6D, 0x3F, 0x45, 0x4B}},
      {0xFCC79117, 0xD14F, 0x4B1C, {0xB4, 0x00, 0x97, 0x3A, 0x56, 0xDE, 0x5F, 0x90}},
      std::tuple{
          property<&vnJumps::Step, &vnJumps::SetStep>("Step", "poStep")
              .not_content("leads back to the owner"),
          property<&vnJumps::Document>("Document").not_content("leads back to the root"),
          property<&vnJumps::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnJumps::Count>("Count").not_content("the members themselves are read"),
          property<&vnJumps::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnJumps::Add>("Add", "poJump"),
          method<&vnJumps::Remove>("Remove", "pvRef"),
          method<&vnJumps::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
