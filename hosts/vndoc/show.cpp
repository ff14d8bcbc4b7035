// vndoc show: what is in a document, for people or as JSON.
#include <algorithm>
#include <map>
#include <memory>
#include <ostream>

#include "command.h"
#include "document_json.h"
#include "drawing/other_values.h"
#include "flow.h"
#include "one_line.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/task.h"

namespace vndoc {

using vndoc6::vnCondition;
using vndoc6::vnContainer;
using vndoc6::vnDetails;
using vndoc6::vnFile;
using vndoc6::vnJump;
using vndoc6::vnRevision;
using vndoc6::vnTask;
using vndoc6::vnTitleRef;

namespace {

// Calls for each member of a collection of that class.
template <class T, class Use>
void ForEach(Object& collection, Use use) {
  ForEachIn(collection, [&](Object& member) { use(static_cast<T&>(member)); });
}

std::string NumberOf(const FlowStep& step) {
  const int32_t number = step.step->StepIndex();
  return number > 0 ? std::to_string(number) : "-";
}

class Account {
 public:
  Account(vnDocument& document, std::ostream& out)
      : document_(document), out_(out), flow_(document) {}

  void Write() {
    WriteDetails();
    WriteSteps();
    WriteLinks();
    WriteGrouped("Roles", steps_of_roles_);
    WriteContainers();
    WriteFilesAndJumps();
    WriteRevisions();
  }

 private:
  void Heading(const char* title) { out_ << '\n' << title << '\n'; }
  // Says nothing where there is nothing.
  void Line(const char* indent, const char* what, TextView text) {
    const std::string line = OneLine(text);
    if (!line.empty()) out_ << indent << what << line << '\n';
  }

  // Codes, numbers and free values of the host's.
  void Others(const char* indent, Object& object) {
    for (const vndoc6::drawing::OtherValue& value : other_values_.Of(object)) {
      out_ << indent << OneLine(vndoc6::automation::FromUtf8(value.name)) << " = "
           << OneLine(value.value) << '\n';
    }
  }
  // The same behind something else.
  Text Trailing(Object& object) {
    Text text;
    for (const vndoc6::drawing::OtherValue& value : other_values_.Of(object)) {
      text += (text.empty() ? u" [" : u", ") + vndoc6::automation::FromUtf8(value.name) + u" = " +
              value.value;
    }
    return text.empty() ? text : text + u"]";
  }

  void WriteDetails() {
    const Ref<vnDetails> details = document_.Details();
    const std::string title = OneLine(details->Title());
    out_ << (title.empty() ? "(no title)" : title) << '\n';
    Line("  ", "Code         ", details->DocumentCode());
    if (details->Revision() != 0) {
      Line("  ", "Revision     ", Variant(details->Revision()).ToText());
    }
    Line("  ", "Scope        ", details->Scope());
    Line("  ", "Purpose      ", details->Purpose());
    Line("  ", "Description  ", details->Description());
    Line("  ", "Authorised   ", details->AuthorisedBy()->DisplayName());
    if (details->DateApproved().days != 0) {
      Line("  ", "Approved     ", vndoc6::automation::DayText(details->DateApproved()));
    }
    Line("  ", "Takes        ", details->Duration());
    Line("  ", "Form         ", details->Form());
    Line("  ", "Notes        ", details->Notes());
    Others("  ", *details);
    Others("  ", document_);
  }

  std::string NameOf(const FlowStep& step) {
    return NumberOf(step) + ". " + OneLine(step.step->Label());
  }

  void WriteSteps() {
    Heading("Steps");
    for (const FlowStep& step : flow_.steps) {
      out_ << "  " << NameOf(step) << '\n';
      WriteParts(step);
    }
  }

  void WriteParts(const FlowStep& flow_step) {
    constexpr const char* kIndent = "       ";
    vnStep& step = *flow_step.step;
    const vndoc6::PassingRead reading(step);
    Line(kIndent, "", step.Description());
    Line(kIndent, "how: ", step.Instructions());
    Line(kIndent, "takes ", step.Duration());
    Line(kIndent, "form: ", step.Form());
    Line(kIndent, "if ", step.ConditionExpression());
    ForEach<vnTitleRef>(*step.PerformedBy(), [&](vnTitleRef& role) {
      Line(kIndent, "by ", role.DisplayName());
      steps_of_roles_[OneLine(role.DisplayName())] += ' ' + NumberOf(flow_step);
    });
    for (const Ref<vnTask>& task : TasksOf(step)) {
      const Text& more = task->Description();
      Line(kIndent,
           "task: ", (more.empty() ? task->Name() : task->Name() + u": " + more) + Trailing(*task));
    }
    ForEach<vnCondition>(*step.Conditions(),
                         [&](vnCondition& condition) { Line(kIndent, "if ", TextOf(condition)); });
    ForEach<vndoc6::Property>(*step.Dependancies(), [&](vndoc6::Property& dependency) {
      const auto found = flow_.by_key.find(dependency.Key());
      if (found == flow_.by_key.end()) return;
      out_ << kIndent << "after " << NameOf(flow_.steps[found->second]) << '\n';
    });
    ForEach<vnFile>(*step.Files(), [&](vnFile& file) { Line(kIndent, "file: ", NameOf(file)); });
    ForEach<vnJump>(*step.Jumps(), [&](vnJump& jump) { Line(kIndent, "jump: ", NameOf(jump)); });
    Others(kIndent, step);
  }

  // In the order that they are to be done.
  static std::vector<Ref<vnTask>> TasksOf(vnStep& step) {
    std::vector<Ref<vnTask>> tasks;
    ForEach<vnTask>(*step.Tasks(), [&](vnTask& task) { tasks.emplace_back(&task); });
    std::stable_sort(tasks.begin(), tasks.end(),
                     [](const auto& a, const auto& b) { return a->TaskOrder() < b->TaskOrder(); });
    return tasks;
  }

  Text TextOf(vnCondition& condition) {
    Text text = condition.DisplayName();
    if (!text.empty() && !condition.ConditionTest().empty()) text += u": ";
    text += condition.ConditionTest();
    if (!condition.FailMessage().empty()) text += u" - " + condition.FailMessage();
    return text + Trailing(condition);
  }

  // When a link is taken, in one line; empty for always.
  std::string ConditionsOf(vnLink& link) {
    std::string text = OneLine(link.ConditionExpression());
    ForEach<vnCondition>(*link.Conditions(), [&](vnCondition& condition) {
      text += (text.empty() ? "" : "; ") + OneLine(TextOf(condition));
    });
    return text.empty() ? "" : "(if " + text + ") ";
  }

  Text NameOf(vndoc6::Attachment& attachment) {
    const Text& name = attachment.DisplayName();
    const Text& file = attachment.FileName();
    return (name.empty()   ? file
            : file.empty() ? name
                           : name + u" (" + file + u")") +
           Trailing(attachment);
  }

  // The links as a tree: an arrow for the only way on, a star for each of several. What follows a
  // step alone stands below it without an indent, so that long procedures stay readable. A step
  // that was shown before is only named.
  void WriteLinks() {
    if (flow_.steps.empty()) return;
    Heading("Flow");
    shown_.assign(flow_.steps.size(), false);
    for (const size_t beginning : flow_.Beginnings()) WriteBranch(beginning);
    for (const size_t rest : flow_.Unreachable()) {
      if (!shown_[rest]) WriteBranch(rest);
    }
    for (const Ref<vnLink>& link : flow_.dangling) {
      out_ << "  a link that lacks a step";
      const Text name = (link->Text().empty() ? link->Key() : link->Text()) +
                        vndoc6::automation::FromUtf8(" " + ConditionsOf(*link)) + Trailing(*link);
      Line(": ", "", name);
      if (OneLine(name).empty()) out_ << '\n';
    }
  }

  struct Visit {
    size_t step;
    size_t column;
    vnLink* link;    // that led here; null at a beginning
    bool is_branch;  // one of several ways on
  };

  void WriteBranch(size_t beginning) {
    std::vector<Visit> waiting = {{beginning, 2, nullptr, false}};
    while (!waiting.empty()) {
      const Visit visit = waiting.back();
      waiting.pop_back();
      WriteVisit(visit);
      if (shown_[visit.step]) continue;
      shown_[visit.step] = true;
      const auto& links = flow_.steps[visit.step].links;
      const bool branches = links.size() > 1;
      const size_t column = ColumnBelow(visit, branches);
      for (auto link = links.rbegin(); link != links.rend(); ++link) {
        waiting.push_back({link->target, column, link->link.get(), branches});
      }
    }
  }

  // Beyond the deepest column the tree grows no wider.
  static size_t ColumnBelow(const Visit& visit, bool branches) {
    constexpr size_t kDeepest = 60;
    return std::min(visit.column + (visit.is_branch ? 2 : 0) + (branches ? 2 : 0), kDeepest);
  }

  void WriteVisit(const Visit& visit) {
    out_ << std::string(visit.column, ' ');
    std::string more;
    if (visit.link != nullptr) {
      const vndoc6::PassingRead reading(*visit.link);
      const std::string text = OneLine(visit.link->Text());
      out_ << (visit.is_branch ? "* " : "-> ") << (text.empty() ? "" : "[" + text + "] ")
           << ConditionsOf(*visit.link);
      more = OneLine(Trailing(*visit.link));
    }
    out_ << NameOf(flow_.steps[visit.step]) << more
         << (shown_[visit.step] ? " (see above)\n" : "\n");
  }

  void WriteGrouped(const char* title, const std::map<std::string, std::string>& groups) {
    if (groups.empty()) return;
    Heading(title);
    for (const auto& [name, members] : groups) {
      out_ << "  " << name << ':' << (members.empty() ? " no step" : members) << '\n';
    }
  }

  void WriteContainers() {
    std::map<Text, std::string> members;
    for (const FlowStep& step : flow_.steps) {
      members[step.step->ContainerKey()] += ' ' + NumberOf(step);
    }
    std::map<std::string, std::string> containers;
    ForEach<vnContainer>(*document_.Containers().ToObject(), [&](vnContainer& container) {
      const std::string description = OneLine(container.Description() + Trailing(container));
      const std::string& steps = members[container.Key()];
      std::string& said = containers[OneLine(container.Label())];
      said += steps.empty() && !description.empty() ? " no step" : steps;
      if (!description.empty()) said += " (" + description + ")";
    });
    WriteGrouped("Containers", containers);
  }

  // What was added to a step stands there, and in the document's own lists as well.
  void WriteFilesAndJumps() {
    if (document_.Files()->Count() > 0) Heading("Files");
    ForEach<vnFile>(*document_.Files(), [&](vnFile& file) { Line("  ", "", NameOf(file)); });
    if (document_.Jumps()->Count() > 0) Heading("Jumps");
    ForEach<vnJump>(*document_.Jumps(), [&](vnJump& jump) { Line("  ", "", NameOf(jump)); });
  }

  void WriteRevisions() {
    if (document_.RevisionHistory()->Count() > 0) Heading("Revisions");
    ForEach<vnRevision>(*document_.RevisionHistory(), [&](vnRevision& revision) {
      Line("  ", "",
           vndoc6::automation::DayText(revision.RevisionDate()) + u"  " +
               Variant(revision.IR()).ToText() +
               (revision.Revision() != 0 ? u"  revision " + Variant(revision.Revision()).ToText()
                                         : Text()) +
               u"  " + revision.Reason());
    });
  }

  vnDocument& document_;
  std::ostream& out_;
  Flow flow_;
  vndoc6::drawing::OtherValues other_values_;
  std::vector<bool> shown_;
  std::map<std::string, std::string> steps_of_roles_;
};

struct ShowOptions {
  std::string file;
  bool json = false;
};

}  // namespace

void AddShow(CLI::App& app, Context& context) {
  auto* const command = app.add_subcommand("show", "Shows what is in a document");
  const auto options = std::make_shared<ShowOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->add_flag("--json", options->json, "All of it as JSON, which from-json reads back");
  command->callback([options, &context] {
    const auto document = Load(context, options->file);
    if (options->json) {
      WriteJson(*document, context.out);
    } else {
      Account(*document, context.out).Write();
    }
  });
}

}  // namespace vndoc
