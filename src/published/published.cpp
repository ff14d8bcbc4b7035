#include "vndoc6/published/published.h"

#include <algorithm>
#include <iterator>

#include "fields/stand_ins.h"
#include "schema/signature.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/core/document_kind.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/item.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/templates/template.h"
#include "vndoc6/templates/template_library.h"
#include "vndoc6/titles/title_ref.h"
#include "vndoc6/titles/titles.h"

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
