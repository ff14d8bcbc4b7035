// What is published of vnDocument.
#include "automation/describe.h"
#include "bag/properties.h"
#include "chart/chart.h"
#include "details/details.h"
#include "details/revision.h"
#include "document/document.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
#include "process/link.h"
#include "process/steps.h"
#include "titles/titles.h"

namespace vndoc6 {

const automation::ClassInfo& vnDocument::classInfo() {
  using namespace automation;
  using D = vnDocument;
  static const ClassInfo info = describe<vnDocument>(
      "vnDocument", "A procedure: its chart, steps, links, details and everything below them.",
      {0x5C2E4B00, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x00}},
      {0x5C2E4B01, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x01}},
      {
          method<&D::RaiseLinkChange>("RaiseLinkChange", "poLink", "plDetailID"),
          get<&D::Chart>("Chart"),
          get<&D::Steps>("Steps"),
          get<&D::Details>("Details"),
          get<&D::RevisionHistory>("RevisionHistory"),
          get<&D::FileName>("FileName"),
          get<&D::ChangeEventsLoading>("ChangeEventsLoading"),
          put<&D::SetChangeEventsLoading>("ChangeEventsLoading", "pbChangeEventsLoading"),
          get<&D::GetProperties>("Properties"),
          putref<&D::SetProperties>("Properties", "poProperties"),
          get<&D::Titles>("Titles"),
          get<&D::FileVersion>("FileVersion"),
          get<&D::DocumentType>("DocumentType"),
          put<&D::SetDocumentType>("DocumentType", "peDocumentType"),
          get<&D::IR>("IR"),
          put<&D::SetIR>("IR", "plIR"),
          get<&D::GUID>("GUID"),
          put<&D::SetGUID>("GUID", "psGUID"),
          get<&D::Edition>("Edition"),
          put<&D::SetEdition>("Edition", "peEdition"),
          get<&D::DocType>("DocType"),
          put<&D::SetDocType>("DocType", "peDocType"),
          get<&D::DocumentVersion>("DocumentVersion"),
          put<&D::SetDocumentVersion>("DocumentVersion", "pnDocumentVersion"),
          get<&D::ExtensionCount>("ExtensionCount"),
          get<&D::PagesCount>("PagesCount"),
          put<&D::SetPagesCount>("PagesCount", "plPagesCount"),
          get<&D::ShowPageBreaks>("ShowPageBreaks"),
          put<&D::SetShowPageBreaks>("ShowPageBreaks", "pbShowPageBreaks"),
          get<&D::Containers>("Containers"),
          get<&D::FieldDefsDetails>("FieldDefsDetails"),
          method<&D::SetFieldDefsDetails>("SetFieldDefsDetails", "psFieldDefs", "psForm"),
          method<&D::SetFieldDefsSteps>("SetFieldDefsSteps", "psFieldDefs", "psForm"),
          get<&D::FieldDefsSteps>("FieldDefsSteps"),
          get<&D::FieldDefsLinks>("FieldDefsLinks"),
          get<&D::FormDetails>("FormDetails"),
          get<&D::FormSteps>("FormSteps"),
          get<&D::FormLinks>("FormLinks"),
          get<&D::Links>("Links"),
          get<&D::Files>("Files"),
          get<&D::Jumps>("Jumps"),
          get<&D::Attachments>("Attachments"),
          putref<&D::SetAttachments>("Attachments", "poAttachments"),
          method<&D::Save>("Save"),
          method<&D::SaveAs>("SaveAs", "psFileName"),
          method<&D::SaveDocAs>("SaveDocAs", "psFileName",
                                optional("plDocumentType", Variant(int32_t{-1}))),
          method<&D::TempSaveTest>("TempSaveTest", "psFileName"),
          method<&D::LoadDoc>("LoadDoc", "psFileName", "psPassword"),
          method<&D::Load>("Load", "psFileName", "psPassword"),
          method<&D::LoadTempSave>("LoadTempSave", "psFileName", "psPassword"),
          method<&D::NewStep>("NewStep", optional("psSourceKey", u""), optional("psLoadData", u"")),
          method<&D::TempSaveDocument>("TempSaveDocument"),
          method<&D::TempSaveClear>("TempSaveClear"),
          method<&D::CopyStep>("CopyStep", "poStep"),
          method<&D::CopyContainer>("CopyContainer", "poContainer"),
          get<&D::AllowWrite>("AllowWrite"),
          method<&D::EnableWrite>("EnableWrite", "psPassword"),
          method<&D::SetReadPassword>("SetReadPassword", "psPassword"),
          method<&D::SetWritePassword>("SetWritePassword", "psPassword"),
          get<&D::ChangeEvents>("ChangeEvents"),
          put<&D::SetChangeEvents>("ChangeEvents", "pbChangeEvents"),
          get<&D::ChartType>("ChartType"),
          put<&D::SetChartType>("ChartType", "plChartType"),
          get<&D::DBGUID>("DBGUID"),
          put<&D::SetDBGUID>("DBGUID", "psDBGUID"),
          get<&D::ConnectionString>("ConnectionString"),
          put<&D::SetConnectionString>("ConnectionString", "psConnectionString"),
          method<&D::IsWFProcess>("IsWFProcess"),
          get<&D::Database>("Database"),
          putref<&D::SetDatabase>("Database", "poDatabase"),
      });
  return info;
}

}  // namespace vndoc6
