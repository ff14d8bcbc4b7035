#include "process/attachment.h"

#include "core/scope.h"
namespace vndoc6 {
namespace {

// Numbers of these events' own, no names of EnumVantrelDetailID. Hosts tell them apart by them.
constexpr int32_t kDisplayNameDetail = 1;
constexpr int32_t kFileNameDetail = 2;

}  // namespace

void Attachment::SetDisplayName(const Text& psDisplayName) {
  display_name_ = psDisplayName;
  ReportDetail(kDisplayNameDetail);
}

void Attachment::SetFileName(const Text& psFileName) {
  file_name_ = psFileName;
  ReportDetail(kFileNameDetail);
}

void Attachment::ReportDetail(int32_t detail_id) {
  if (Scope* scope = InternalScope()) InternalReport(*scope, vnceDetail, detail_id);
}

// The keys are in every file: never change one.
void Attachment::WriteNames(bag::BagWriter& writer) const {
  writer.Add("K", key_);
  writer.Add("DN", display_name_);
  writer.Add("FN", file_name_);
}

void Attachment::ReadNames(bag::BagReader& reader, const Text& key) {
  key_ = key.empty() ? reader.GetText("K") : key;
  display_name_ = reader.GetText("DN");
  file_name_ = reader.GetText("FN");
}

void Attachment::CopyNames(const Attachment& other) {
  display_name_ = other.display_name_;
  file_name_ = other.file_name_;
}

}  // namespace vndoc6
