// What is published of vnDocument.
#include "automation/describe.h"
#include "chart/chart.h"
#include "collections/file.h"
#include "collections/jump.h"
#include "common/properties.h"
#include "core/document.h"
#include "details/details.h"
#include "details/revision.h"
#include "process/container.h"
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
          with_help(method<&D::RaiseLinkChange>("RaiseLinkChange", "poLink", "plDetailID"),
                    "Reports a change of a link or its line to the document's listeners."),
          with_help(get<&D::Chart>("Chart"), "The chart-wide drawing settings."),
          with_help(get<&D::Steps>("Steps"), "The steps of the procedure."),
          with_help(get<&D::Details>("Details"), "Title, code, status and other details."),
          with_help(get<&D::RevisionHistory>("RevisionHistory"), "The revisions gone through."),
          with_help(get<&D::FileName>("FileName"), "Empty until loaded or saved."),
          with_help(get<&D::ChangeEventsLoading>("ChangeEventsLoading"),
                    "What ChangeEvents is while a load runs."),
          put<&D::SetChangeEventsLoading>("ChangeEventsLoading", "pbChangeEventsLoading"),
          with_help(get<&D::GetProperties>("Properties"), "Free values of the host's."),
          putref<&D::SetProperties>("Properties", "poProperties"),
          with_help(get<&D::Titles>("Titles"), "The roles and people that steps refer to."),
          get<&D::FileVersion>("FileVersion"),
          get<&D::DocumentType>("DocumentType"),
          put<&D::SetDocumentType>("DocumentType", "peDocumentType"),
          with_help(get<&D::IR>("IR"), "The running identifier counter."),
          put<&D::SetIR>("IR", "plIR"),
          get<&D::GUID>("GUID"),
          put<&D::SetGUID>("GUID", "psGUID"),
          get<&D::Edition>("Edition"),
          put<&D::SetEdition>("Edition", "peEdition"),
          with_help(get<&D::DocType>("DocType"), "The value of DocumentType under other names."),
          put<&D::SetDocType>("DocType", "peDocType"),
          get<&D::DocumentVersion>("DocumentVersion"),
          put<&D::SetDocumentVersion>("DocumentVersion", "pnDocumentVersion"),
          get<&D::ExtensionCount>("ExtensionCount"),
          get<&D::PagesCount>("PagesCount"),
          put<&D::SetPagesCount>("PagesCount", "plPagesCount"),
          get<&D::ShowPageBreaks>("ShowPageBreaks"),
          put<&D::SetShowPageBreaks>("ShowPageBreaks", "pbShowPageBreaks"),
          with_help(get<&D::Containers>("Containers"), "The groups on the chart."),
          get<&D::FieldDefsDetails>("FieldDefsDetails"),
          method<&D::SetFieldDefsDetails>("SetFieldDefsDetails", "psFieldDefs", "psForm"),
          method<&D::SetFieldDefsSteps>("SetFieldDefsSteps", "psFieldDefs", "psForm"),
          get<&D::FieldDefsSteps>("FieldDefsSteps"),
          get<&D::FieldDefsLinks>("FieldDefsLinks"),
          get<&D::FormDetails>("FormDetails"),
          get<&D::FormSteps>("FormSteps"),
          get<&D::FormLinks>("FormLinks"),
          with_help(get<&D::Links>("Links"), "The links between steps."),
          with_help(get<&D::Files>("Files"), "Every file added to any step."),
          with_help(get<&D::Jumps>("Jumps"), "Every jump added to any step."),
          get<&D::Attachments>("Attachments"),
          putref<&D::SetAttachments>("Attachments", "poAttachments"),
          with_help(method<&D::Save>("Save"), "Saves under FileName."),
          with_help(method<&D::SaveAs>("SaveAs", "psFileName"),
                    "Saves under a name; under another name than before with a new identity."),
          method<&D::SaveDocAs>("SaveDocAs", "psFileName",
                                optional("plDocumentType", Variant(int32_t{-1}))),
          with_help(method<&D::TempSaveTest>("TempSaveTest", "psFileName"),
                    "2 when the temporary save is newer than the file."),
          method<&D::LoadDoc>("LoadDoc", "psFileName", "psPassword"),
          with_help(method<&D::Load>("Load", "psFileName", "psPassword"),
                    "Loads a file, once for each document."),
          method<&D::LoadTempSave>("LoadTempSave", "psFileName", "psPassword"),
          with_help(method<&D::NewStep>("NewStep", optional("psSourceKey", u""),
                                        optional("psLoadData", u"")),
                    "A new step, or a copy of one."),
          method<&D::TempSaveDocument>("TempSaveDocument"),
          method<&D::TempSaveClear>("TempSaveClear"),
          method<&D::CopyStep>("CopyStep", "poStep"),
          method<&D::CopyContainer>("CopyContainer", "poContainer"),
          with_help(get<&D::AllowWrite>("AllowWrite"), "Whether the document may be saved."),
          method<&D::EnableWrite>("EnableWrite", "psPassword"),
          with_help(method<&D::SetReadPassword>("SetReadPassword", "psPassword"),
                    "Always False, also when the password was set."),
          with_help(method<&D::SetWritePassword>("SetWritePassword", "psPassword"),
                    "Always False, also when the password was set."),
          with_help(get<&D::ChangeEvents>("ChangeEvents"), "Whether changes are reported."),
          put<&D::SetChangeEvents>("ChangeEvents", "pbChangeEvents"),
          get<&D::ChartType>("ChartType"),
          put<&D::SetChartType>("ChartType", "plChartType"),
          get<&D::DBGUID>("DBGUID"),
          put<&D::SetDBGUID>("DBGUID", "psDBGUID"),
          get<&D::ConnectionString>("ConnectionString"),
          put<&D::SetConnectionString>("ConnectionString", "psConnectionString"),
          method<&D::IsWFProcess>("IsWFProcess"),
          with_help(get<&D::Database>("Database"), "The database object bound to the document."),
          putref<&D::SetDatabase>("Database", "poDatabase"),
      });
  return info;
}

}  // namespace vndoc6
