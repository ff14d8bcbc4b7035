// The steps of a report: a card for each.
#include <algorithm>
#include <unordered_map>

#include "page_account.h"
#include "vndoc6/content/walk.h"

namespace vndoc6::drawing {
namespace {

class StepCards {
 public:
  StepCards(Account& account, std::string& out)
      : account_(account), words_(account.words), out_(out) {
    ForEach(ContainersOf(account.document), [this](vnContainer& container) {
      container_names_.emplace(container.Key(), container.Label());
    });
  }

  void AppendCard(size_t place) {
    vnStep& step = *account_.procedure.steps[place - 1];
    const PassingRead reading(step);
    const std::string number = std::to_string(place);
    out_ += "<article class=\"card\" id=\"step-" + number + "\">" +
            Element("h3", account_.StepName(place)) + Paragraph(step.Description());
    AddLines(step, place);
    if (!lines_.empty()) out_ += Element("dl", lines_);
    lines_.clear();
    out_ += "<a class=\"back\" href=\"#figure-" + number + "\">" + words_(Word::kShowInChart) +
            "</a></article>\n";
  }

 private:
  void Add(Word name, const std::string& values) {
    if (!values.empty()) lines_ += Element("dt", words_(name)) + values;
  }
  void AddText(Word name, const Text& text) {
    if (!text.empty()) Add(name, Element("dd", Shown(text)));
  }

  void AddLines(vnStep& step, size_t place) {
    const auto container = container_names_.find(account_.procedure.container_of[place - 1]);
    if (container != container_names_.end()) AddText(Word::kPartOf, container->second);
    AddText(Word::kHow, step.Instructions());
    Add(Word::kPerformedBy,
        Values(step.PerformedBy(), [](vnTitleRef& title) { return Shown(title.DisplayName()); }));
    AddText(Word::kTakes, step.Duration());
    Add(Word::kTasks, Tasks(step));
    AddText(Word::kForm, step.Form());
    if (!step.ConditionExpression().empty()) {
      Add(Word::kCondition, Element("dd", Code(step.ConditionExpression())));
    }
    Add(Word::kConditions, Values(step.Conditions(), [this](vnCondition& condition) {
          return account_.Condition(condition);
        }));
    Add(Word::kDependsOn, Dependencies(step));
    Add(Word::kFiles, Values(step.Files(), [this](vnFile& file) {
          return account_.FileLink(file) + account_.Others(file, "div");
        }));
    Add(Word::kJumpsTo, Values(step.Jumps(), [this](vnJump& jump) {
          return account_.JumpLink(jump) + account_.Others(jump, "div");
        }));
    Add(Word::kLeadsTo, LeadsTo(place));
    Add(Word::kFurther, account_.Others(step, "dd"));
  }

  template <class Collection, class Show>
  static std::string Values(const Ref<Collection>& collection, Show&& show) {
    std::string out;
    ForEach(collection, [&](auto& member) { out += Element("dd", show(member)); });
    return out;
  }

  // In the order that the tasks are to be done.
  std::string Tasks(vnStep& step) {
    std::vector<Ref<vnTask>> tasks;
    ForEach(step.Tasks(), [&](vnTask& task) { tasks.emplace_back(&task); });
    std::stable_sort(tasks.begin(), tasks.end(),
                     [](const auto& a, const auto& b) { return a->TaskOrder() < b->TaskOrder(); });
    std::string list;
    for (const auto& task : tasks) {
      list +=
          Element("li", Shown(task->Name()) +
                            (task->Description().empty() ? "" : ": " + Shown(task->Description())) +
                            account_.Others(*task, "div"));
    }
    return list.empty() ? "" : Element("dd", Element("ol", list));
  }

  std::string Dependencies(vnStep& step) {
    std::string out;
    ForEach(step.Dependancies(), [&](Property& entry) {
      const auto place = account_.procedure.place_of.find(entry.Key());
      if (place != account_.procedure.place_of.end()) {
        out += Element("dd", account_.StepLink(place->second));
      }
    });
    return out;
  }

  std::string LeadsTo(size_t place) {
    std::string out;
    for (const Procedure::Outgoing& outgoing : account_.procedure.outgoing[place]) {
      vnLink& link = *outgoing.link;
      const PassingRead reading(link);
      const std::string text = link.Text().empty() ? "" : Shown(link.Text()) + ": ";
      out += Element("dd", text + account_.StepLink(outgoing.to) + account_.LinkConditions(link));
    }
    return out;
  }

  Account& account_;
  const Words& words_;
  std::string& out_;
  std::string lines_;
  std::unordered_map<Text, Text> container_names_;
};

}  // namespace

void AppendSteps(Account& account, std::string& out) {
  StepCards cards(account, out);
  for (const size_t place : account.procedure.order) cards.AppendCard(place);
  if (account.procedure.order.empty()) out += Element("p", account.words(Word::kNoSteps));
}

}  // namespace vndoc6::drawing
