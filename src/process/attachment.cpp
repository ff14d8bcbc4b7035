#include "vndoc6/process/attachment.h"

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
  if (Scope* scope = document_scope()) RaiseChange(*scope, vnceDetail, detail_id);
}

}  // namespace vndoc6
