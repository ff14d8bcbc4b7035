// What is published of vnDocument.
#include "schema/rows.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6 {

const automation::ClassInfo& vnDocument::classInfo() {
  using namespace schema;
  using D = vnDocument;
  static const ClassInfo info = describe<vnDocument>(
      "vnDocument", "A procedure: its chart, steps, links, details and everything below them.",
      {0x5C2E4B00, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x00}},
      {0x5C2E4B01, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x01}},
      std::tuple{
          method<&D::RaiseLinkChange>("RaiseLinkChange", "poLink", "plDetailID"),
          property<&D::Chart>("Chart"),
          property<&D::Steps>("Steps"),
          property<&D::Details>("Details"),
          property<&D::RevisionHistory>("RevisionHistory"),
          property<&D::FileName>("FileName").not_content("where the document lies"),
          property<&D::ChangeEventsLoading, &D::SetChangeEventsLoading>("ChangeEventsLoading",
                                                                        "pbChangeEventsLoading")
              .not_content("a setting of the host's"),
          property<&D::GetProperties, &D::SetProperties>("Properties", "poProperties"),
          property<&D::Titles>("Titles").not_content(
              "the title handler's list, not the document's"),
          property<&D::FileVersion>("FileVersion").not_content("tells of the last load"),
          property<&D::DocumentType, &D::SetDocumentType>("DocumentType", "peDocumentType"),
          property<&D::IR, &D::SetIR>("IR", "plIR").restored_by<&D::RestoreIR>(),
          property<&D::GUID, &D::SetGUID>("GUID", "psGUID").restored_by<&D::RestoreGUID>(),
          property<&D::Edition, &D::SetEdition>("Edition", "peEdition"),
          property<&D::DocType, &D::SetDocType>("DocType", "peDocType")
              .not_content("another name of DocumentType"),
          property<&D::DocumentVersion, &D::SetDocumentVersion>("DocumentVersion",
                                                                "pnDocumentVersion"),
          property<&D::ExtensionCount>("ExtensionCount"),
          property<&D::PagesCount, &D::SetPagesCount>("PagesCount", "plPagesCount"),
          property<&D::ShowPageBreaks, &D::SetShowPageBreaks>("ShowPageBreaks", "pbShowPageBreaks"),
          property<&D::Containers>("Containers").gives(&vnContainers::classInfo),
          property<&D::FieldDefsDetails>("FieldDefsDetails"),
          method<&D::SetFieldDefsDetails>("SetFieldDefsDetails", "psFieldDefs", "psForm"),
          method<&D::SetFieldDefsSteps>("SetFieldDefsSteps", "psFieldDefs", "psForm"),
          property<&D::FieldDefsSteps>("FieldDefsSteps"),
          property<&D::FieldDefsLinks>("FieldDefsLinks"),
          property<&D::FormDetails>("FormDetails"),
          property<&D::FormSteps>("FormSteps"),
          property<&D::FormLinks>("FormLinks"),
          property<&D::Links>("Links"),
          property<&D::Files>("Files"),
          property<&D::Jumps>("Jumps"),
          property<&D::Attachments, &D::SetAttachments>("Attachments", "poAttachments"),
          method<&D::Save>("Save"),
          method<&D::SaveAs>("SaveAs", "psFileName"),
          method<&D::SaveDocAs>("SaveDocAs", "psFileName", optional("plDocumentType", int32_t{-1})),
          method<&D::TempSaveTest>("TempSaveTest", "psFileName"),
          method<&D::LoadDoc>("LoadDoc", "psFileName", "psPassword"),
          method<&D::Load>("Load", "psFileName", "psPassword"),
          method<&D::LoadTempSave>("LoadTempSave", "psFileName", "psPassword"),
          method<&D::NewStep>("NewStep", optional("psSourceKey", u""), optional("psLoadData", u"")),
          method<&D::TempSaveDocument>("TempSaveDocument"),
          method<&D::TempSaveClear>("TempSaveClear"),
          method<&D::CopyStep>("CopyStep", "poStep"),
          method<&D::CopyContainer>("CopyContainer", "poContainer"),
          property<&D::AllowWrite>("AllowWrite").not_content("the host's access"),
          method<&D::EnableWrite>("EnableWrite", "psPassword"),
          method<&D::SetReadPassword>("SetReadPassword", "psPassword"),
          method<&D::SetWritePassword>("SetWritePassword", "psPassword"),
          property<&D::ChangeEvents, &D::SetChangeEvents>("ChangeEvents", "pbChangeEvents")
              .not_content("a setting of the host's"),
          property<&D::ChartType, &D::SetChartType>("ChartType", "plChartType"),
          property<&D::DBGUID, &D::SetDBGUID>("DBGUID", "psDBGUID"),
          property<&D::ConnectionString, &D::SetConnectionString>("ConnectionString",
                                                                  "psConnectionString"),
          method<&D::IsWFProcess>("IsWFProcess"),
          property<&D::Database, &D::SetDatabase>("Database", "poDatabase")
              .not_content("the host's connection"),
      });
  return info;
}

}  // namespace vndoc6
