#include "published/published.h"

#include <algorithm>
#include <iterator>

#include "bag/properties.h"
#include "chart/chart.h"
#include "chart/figure.h"
#include "chart/line.h"
#include "core/detail_id.h"
#include "core/document_kind.h"
#include "details/details.h"
#include "details/item.h"
#include "details/revision.h"
#include "document/document.h"
#include "fields/stand_ins.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
#include "process/link.h"
#include "process/steps.h"
#include "process/task.h"
#include "schema/signature.h"
#include "templates/template.h"
#include "templates/template_library.h"
#include "titles/title_ref.h"
#include "titles/titles.h"

namespace vndoc6 {

std::span<const PublishedClass> PublishedClasses() {
  static constexpr PublishedClass kClasses[] = {
      {&vnDocument::classInfo, &DocumentEvents},
      {&vnChart::classInfo, nullptr},
      {&vnSteps::classInfo, nullptr},
      {&vnStep::classInfo, nullptr},
      {&vnFigure::classInfo, nullptr},
      {&vnLinks::classInfo, nullptr},
      {&vnLink::classInfo, nullptr},
      {&vnLine::classInfo, nullptr},
      {&vnConditions::classInfo, nullptr},
      {&vnCondition::classInfo, nullptr},
      {&vnTasks::classInfo, nullptr},
      {&vnTask::classInfo, nullptr},
      {&vnContainers::classInfo, nullptr},
      {&vnContainer::classInfo, nullptr},
      {&vnFiles::classInfo, nullptr},
      {&vnFile::classInfo, nullptr},
      {&vnJumps::classInfo, nullptr},
      {&vnJump::classInfo, nullptr},
      {&vnItems::classInfo, nullptr},
      {&vnItem::classInfo, nullptr},
      {&vnDetails::classInfo, nullptr},
      {&vnRevisions::classInfo, nullptr},
      {&vnRevision::classInfo, nullptr},
      {&vnTitles::classInfo, nullptr},
      {&vnTitle::classInfo, nullptr},
      {&vnTitleRefs::classInfo, nullptr},
      {&vnTitleRef::classInfo, nullptr},
      {&vnTemplateLibrary::classInfo, &TemplateLibraryEvents},
      {&vnTemplates::classInfo, nullptr},
      {&vnTemplate::classInfo, nullptr},
      {&Properties::classInfo, nullptr},
      {&Property::classInfo, nullptr},
      {&FieldDefs::classInfo, nullptr},
      {&FieldValues::classInfo, nullptr},
      {&FormDef::classInfo, nullptr},
  };
  return kClasses;
}

std::span<const automation::EnumInfo* const> PublishedEnums() {
  using automation::DescribeEnum;
  static const automation::EnumInfo* const kEnums[] = {
      &DescribeEnum<EnumVantrelDetailID>(),     &DescribeEnum<EnumVantrelChangeEvent>(),
      &DescribeEnum<EnumVantrelShapes>(),       &DescribeEnum<EnumVantrelDocumentType>(),
      &DescribeEnum<EnumVantrelDocType>(),      &DescribeEnum<EnumVantrelEdition>(),
      &DescribeEnum<VNHandlerRequiresDirect>(),
  };
  return kEnums;
}

automation::Ref<automation::Object> CreatePublished(TextView class_name) {
  for (const PublishedClass& published : PublishedClasses()) {
    const automation::ClassInfo& info = published.info();
    if (automation::EqualsAsciiFolded(info.name(), class_name)) return info.Create();
  }
  return nullptr;
}

}  // namespace vndoc6
