// What a page says by itself, in each of its languages: one table.
#pragma once

#include <string>

#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

enum class Word {
  kUntitled,
  kSkipToSteps,
  kSkipToContent,
  kContents,
  kAllProcedures,
  kChart,
  kTheChart,
  kZoom,
  kZoomIn,
  kZoomOut,
  kFit,
  kPrintedPage,
  kCode,
  kRevision,
  kApproved,
  kAuthorisedBy,
  kPurpose,
  kScope,
  kNotes,
  kForm,
  kTakes,
  kFurther,
  kSteps,
  kNoSteps,
  kUnnamedStep,
  kPartOf,
  kHow,
  kPerformedBy,
  kTasks,
  kCondition,
  kConditions,
  kIf,
  kDependsOn,
  kFiles,
  kJumpsTo,
  kLeadsTo,
  kShowInChart,
  kRoles,
  kRolesCaption,
  kRole,
  kRaci,
  kRaciCaption,
  kRaciNote,
  kStep,
  kContainers,
  kContainersCaption,
  kName,
  kDescription,
  kFilesCaption,
  kFile,
  kJumps,
  kJumpsCaption,
  kProcedure,
  kLooseLinks,
  kLooseLinksCaption,
  kLink,
  kRevisions,
  kRevisionsCaption,
  kDate,
  kNumber,
  kReason,
  kSiteTitle,
  kSearch,
  kSearchHint,
  kFound,
  kNothingFound,
  kProceduresCaption,
  kJumpsFrom,
  kMap,
  kTheMap,
  kMapNote,
  kChartHolds,
  kStepOfShape,
  kPictureNotShown,
  kCount
};

class Words {
 public:
  explicit Words(Language language) : language_(language) {}
  Language language() const { return language_; }
  const char* operator()(Word word) const;
  // With texts in the places of %1 and %2.
  std::string operator()(Word word, const std::string& first, const std::string& second) const;
  // "en", as pages name their language.
  const char* Code() const;

 private:
  Language language_;
};

}  // namespace vndoc6::drawing
