// What the parts of a report share: the document as it reads, the page's words, and how steps,
// files and conditions are named.
#pragma once

#include <string>

#include "other_values.h"
#include "page_markup.h"
#include "page_texts.h"
#include "procedure.h"
#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

struct Account {
  Account(vnDocument& shown, const HtmlOptions& html_options)
      : document(shown), options(html_options), words(html_options.language), procedure(shown) {}

  vnDocument& document;
  const HtmlOptions& options;
  const Words words;
  const Procedure procedure;
  OtherValues other_values;

  std::string StepName(size_t place) const;
  std::string StepLink(size_t place) const;
  std::string Condition(vnCondition& condition);
  // When a link is taken, and what is there to say of it.
  std::string LinkConditions(vnLink& link);
  // The name, as a link to where the file is, or to its report.
  std::string FileLink(const Attachment& attachment) const;
  std::string JumpLink(const Attachment& jump) const;
  // "TaskType 3", each in an element of that name; empty where there is nothing.
  std::string Others(automation::Object& object, const char* element);
};

// The cards of all steps.
void AppendSteps(Account& account, std::string& out);

struct Section {
  std::string id;
  std::string heading;
  std::string content;
};
// Roles, responsibilities, containers, files, jumps, links that lead nowhere and revisions; each
// only where there is something to tell.
std::vector<Section> TableSections(Account& account);

}  // namespace vndoc6::drawing
