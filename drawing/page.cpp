#include "page.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "markup.h"
#include "model.h"
#include "picture.h"
#include "svg.h"

namespace vndoc6::drawing {
namespace {

using automation::Date;

// Calls `visit` with each member of a collection, in order.
template <class Collection, class Visit>
void ForEach(const Ref<Collection>& collection, Visit&& visit) {
  for (int32_t i = 1; i <= collection->Count(); ++i) visit(*collection->Item(Variant(i)));
}

std::string Element(const char* name, const std::string& content, const char* attributes = "") {
  return std::string("<") + name + attributes + ">" + content + "</" + name + ">\n";
}

// A text of the document, in its own direction.
std::string Shown(const Text& text) { return "<bdi>" + Escaped(text) + "</bdi>"; }
std::string Paragraph(const Text& text) {
  return text.empty() ? "" : Element("p", Escaped(text), " dir=\"auto\"");
}

// The day as year, month and day; empty for no date.
std::string Day(Date date) {
  constexpr double kFirst = -657434;  // 1 January 100, the first that automation has
  constexpr double kLast = 2958465;   // 31 December 9999
  if (date.days == 0 || !(date.days >= kFirst && date.days <= kLast)) return "";
  using std::chrono::days, std::chrono::sys_days, std::chrono::year_month_day;
  constexpr sys_days kZero{
      year_month_day{std::chrono::year(1899), std::chrono::month(12), std::chrono::day(30)}};
  const year_month_day day(kZero + days(static_cast<int>(std::floor(date.days))));
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()),
                static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
  return text;
}

// A section that is a table; left out when it has no rows.
class Table {
 public:
  Table(const char* id, const char* heading, const char* caption,
        std::initializer_list<const char*> columns)
      : id_(id), heading_(heading), caption_(caption) {
    for (const char* column : columns) head_ += Element("th", column, " scope=\"col\"");
  }
  const char* id() const { return id_; }
  const char* heading() const { return heading_; }
  // The first cell is the row's heading.
  void AddRow(const std::vector<std::string>& cells) {
    std::string row = Element("th", cells[0], " scope=\"row\"");
    for (size_t i = 1; i < cells.size(); ++i) row += Element("td", cells[i]);
    body_ += Element("tr", row);
  }
  bool IsEmpty() const { return body_.empty(); }
  std::string Html() const {
    return Element(
        "div",
        Element("table", Element("caption", caption_) + Element("thead", Element("tr", head_)) +
                             Element("tbody", body_)),
        " class=\"table\" role=\"group\" tabindex=\"0\" aria-label=\"Table\"");
  }

 private:
  const char* id_;
  const char* heading_;
  const char* caption_;
  std::string head_;
  std::string body_;
};

class PageWriter {
 public:
  explicit PageWriter(vnDocument& document) : document_(document) {}

  std::string Write() {
    ReadSteps();
    ReadParts();
    const Text title = document_.Details()->Title();
    const std::string name = title.empty() ? "Untitled procedure" : Escaped(title);
    out_ =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"color-scheme\" content=\"light dark\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "img-src data:; style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n" +
        Element("title", name) + Element("style", std::string(kPageStyle)) +
        "</head>\n<body>\n<a class=\"skip\" href=\"#steps\">Skip to the steps</a>\n" +
        Element("header", Element("h1", name, " dir=\"auto\"") + Details()) +
        Element("nav", Element("ul", Contents()), " aria-label=\"Contents\"") + "<main>";
    AddSection("chart", "Chart", [this] { AddChart(); });
    AddSection("steps", "Steps", [this] { AddSteps(); });
    for (const Table& table : tables_) {
      if (table.IsEmpty()) continue;
      AddSection(table.id(), table.heading(), [&] { out_ += table.Html(); });
    }
    out_ += "</main>\n" + Element("script", std::string(kPageScript)) + "</body>\n</html>\n";
    return std::move(out_);
  }

 private:
  struct Outgoing {
    Text text;
    std::string conditions;
    size_t to;
  };

  void ReadSteps() {
    ForEach(document_.Steps(), [this](vnStep& step) {
      steps_.emplace_back(&step);
      place_of_.emplace(step.Key(), steps_.size());
      container_of_.push_back(step.ContainerKey());
    });
    // By number; what has none comes last.
    for (size_t i = 1; i <= steps_.size(); ++i) order_.push_back(i);
    const auto number = [this](size_t place) {
      const int32_t index = steps_[place - 1]->StepIndex();
      return index > 0 ? index : std::numeric_limits<int32_t>::max();
    };
    std::stable_sort(order_.begin(), order_.end(),
                     [&](size_t a, size_t b) { return number(a) < number(b); });
    outgoing_.resize(steps_.size() + 1);
    ForEach(document_.Links(), [this](vnLink& link) {
      const PassingRead reading(link);
      const auto from = place_of_.find(link.OriginStepKey());
      const auto to = place_of_.find(link.DestinationStepKey());
      if (from == place_of_.end() || to == place_of_.end()) return;
      outgoing_[from->second].push_back({link.Text(), LinkConditions(link), to->second});
    });
    auto* containers = static_cast<vnContainers*>(document_.Containers().ToObject().get());
    ForEach(Ref<vnContainers>(containers), [this](vnContainer& container) {
      container_names_.emplace(container.Key(), container.Label());
    });
  }

  // A text in some language of the host's.
  static std::string Code(const Text& text) {
    return text.empty() ? "" : " <code dir=\"auto\">" + Escaped(text) + "</code>";
  }
  static std::string Condition(vnCondition& condition) {
    std::string shown = Shown(condition.DisplayName()) + Code(condition.ConditionTest());
    if (!condition.FailMessage().empty()) shown += " &ndash; " + Shown(condition.FailMessage());
    return shown;
  }
  // When the link is taken.
  static std::string LinkConditions(vnLink& link) {
    std::string conditions = Code(link.ConditionExpression());
    ForEach(link.Conditions(), [&](vnCondition& condition) {
      conditions += Element("div", "if " + Condition(condition));
    });
    return conditions;
  }

  std::string Contents() const {
    std::string contents;
    const auto add = [&contents](const char* id, const char* heading) {
      contents += Element("li", std::string("<a href=\"#") + id + "\">" + heading + "</a>");
    };
    add("chart", "Chart");
    add("steps", "Steps");
    for (const Table& table : tables_) {
      if (!table.IsEmpty()) add(table.id(), table.heading());
    }
    return contents;
  }

  template <class AddContent>
  void AddSection(const char* id, const char* heading, AddContent add_content) {
    const std::string name = std::string(id) + "-heading";
    out_ += std::string("<section id=\"") + id + "\" aria-labelledby=\"" + name + "\">\n" +
            "<h2 id=\"" + name + "\">" + heading + "</h2>\n";
    add_content();
    out_ += "</section>\n";
  }

  std::string Details() {
    const auto details = document_.Details();
    std::string list;
    const auto add = [&list](const char* name, const std::string& value) {
      if (!value.empty()) list += Element("div", Element("dt", name) + Element("dd", value));
    };
    const auto text = [](const Text& value) { return value.empty() ? "" : Shown(value); };
    add("Code", text(details->DocumentCode()));
    add("Revision",
        details->Revision() == 0 ? "" : Escaped(automation::NumberText(details->Revision())));
    add("Approved", Day(details->DateApproved()));
    add("Authorised by", text(details->AuthorisedBy()->DisplayName()));
    add("Purpose", text(details->Purpose()));
    add("Scope", text(details->Scope()));
    add("Notes", text(details->Notes()));
    return Element("dl", list, " class=\"details\"") + Paragraph(details->Description());
  }

  void AddChart() {
    const std::string buttons =
        "<button type=\"button\" data-zoom=\"out\" aria-label=\"Zoom out\">&#8722;</button>\n"
        "<button type=\"button\" data-zoom=\"in\" aria-label=\"Zoom in\">+</button>\n"
        "<button type=\"button\" data-zoom=\"full\">100 %</button>\n"
        "<button type=\"button\" data-zoom=\"fit\">Fit</button>\n"
        "<output id=\"zoom\" aria-live=\"polite\"></output>\n";
    out_ += Element("div", buttons, " class=\"tools\" role=\"toolbar\" aria-label=\"Zoom\"") +
            "<div id=\"chart-frame\" role=\"region\" tabindex=\"0\" aria-label=\"The chart\">";
    AppendSvg(ReadDrawing(document_), {}, SvgKind::kInPage, out_);
    out_ += "</div>\n";
  }

  void AddSteps() {
    for (const size_t place : order_) out_ += Step(place);
    if (order_.empty()) out_ += Element("p", "There are no steps.");
  }

  static std::string Target(size_t place) { return "#step-" + std::to_string(place); }

  std::string StepName(size_t place) {
    vnStep& step = *steps_[place - 1];
    const Text label = step.Label();
    const std::string number =
        step.StepIndex() > 0 ? std::to_string(step.StepIndex()) + ". " : std::string();
    return number + (label.empty() ? "Step without a label" : Shown(label));
  }
  std::string StepLink(size_t place) {
    return "<a href=\"" + Target(place) + "\">" + StepName(place) + "</a>";
  }

  std::string Step(size_t place) {
    vnStep& step = *steps_[place - 1];
    const PassingRead reading(step);
    const std::string number = std::to_string(place);
    std::string content = Element("h3", StepName(place));
    content += Paragraph(step.Description()) + Paragraph(step.Instructions());
    std::string list;
    const auto add = [&list](const char* name, const std::string& values) {
      if (!values.empty()) list += Element("dt", name) + values;
    };
    const auto container = container_names_.find(container_of_[place - 1]);
    if (container != container_names_.end())
      add("Part of", Element("dd", Shown(container->second)));
    add("Performed by",
        Values(step.PerformedBy(), [](vnTitleRef& title) { return Shown(title.DisplayName()); }));
    add("Takes", step.Duration().empty() ? "" : Element("dd", Shown(step.Duration())));
    add("Tasks", Tasks(step));
    add("Form", step.Form().empty() ? "" : Element("dd", Shown(step.Form())));
    add("Condition",
        step.ConditionExpression().empty() ? "" : Element("dd", Code(step.ConditionExpression())));
    add("Conditions", Values(step.Conditions(), &Condition));
    add("Depends on", Dependencies(step));
    add("Files", Values(step.Files(), [](vnFile& file) { return Attached(file); }));
    add("Jumps to", Values(step.Jumps(), [](vnJump& jump) { return Attached(jump); }));
    add("Leads to", LeadsTo(place));
    if (!list.empty()) content += Element("dl", list);
    content += "<p class=\"back\"><a href=\"#figure-" + number + "\">Show in the chart</a></p>\n";
    return "<article class=\"card\" id=\"step-" + number + "\">\n" + content + "</article>\n";
  }

  template <class Collection, class Show>
  static std::string Values(const Ref<Collection>& collection, Show&& show) {
    std::string out;
    ForEach(collection, [&](auto& member) { out += Element("dd", show(member)); });
    return out;
  }

  static std::string Attached(const Attachment& attachment) {
    const std::string name = "<code dir=\"auto\">" + Escaped(attachment.FileName()) + "</code>";
    return attachment.DisplayName().empty() ? name : Shown(attachment.DisplayName()) + " " + name;
  }

  // In the order that the tasks are to be done.
  static std::string Tasks(vnStep& step) {
    std::vector<Ref<vnTask>> tasks;
    ForEach(step.Tasks(), [&](vnTask& task) { tasks.emplace_back(&task); });
    std::stable_sort(tasks.begin(), tasks.end(),
                     [](const auto& a, const auto& b) { return a->TaskOrder() < b->TaskOrder(); });
    std::string list;
    for (const auto& task : tasks) {
      list +=
          Element("li", Shown(task->Name()) +
                            (task->Description().empty() ? "" : ": " + Shown(task->Description())));
    }
    return list.empty() ? "" : Element("dd", Element("ol", list));
  }

  std::string Dependencies(vnStep& step) {
    std::string out;
    ForEach(step.Dependancies(), [&](Property& entry) {
      const auto place = place_of_.find(entry.Key());
      if (place != place_of_.end()) out += Element("dd", StepLink(place->second));
    });
    return out;
  }

  std::string LeadsTo(size_t place) {
    std::string out;
    for (const Outgoing& link : outgoing_[place]) {
      std::string content;
      if (!link.text.empty()) content += Shown(link.text) + ": ";
      content += StepLink(link.to);
      out += Element("dd", content + link.conditions);
    }
    return out;
  }

  // The tables, from what the steps hold.
  void ReadParts() {
    std::vector<std::string> names;  // of roles, in the order in which they come up
    std::unordered_map<std::string, std::string> steps_of;
    Table files("files", "Files", "Files attached to steps", {"Name", "File", "Step"});
    Table jumps("jumps", "Jumps", "Other procedures that steps jump to",
                {"Name", "Procedure", "Step"});
    for (const size_t place : order_) {
      const Ref<vnStep>& step = steps_[place - 1];
      const PassingRead reading(*step);
      ForEach(step->PerformedBy(), [&](vnTitleRef& title) {
        const std::string name = Shown(title.DisplayName());
        std::string& list = steps_of[name];
        if (list.empty()) names.push_back(name);
        list += Element("li", StepLink(place));
      });
      ForEach(step->Files(), [&](vnFile& file) { AddAttachment(files, file, place); });
      ForEach(step->Jumps(), [&](vnJump& jump) { AddAttachment(jumps, jump, place); });
    }
    AddUnattached(*document_.Files(), files);
    AddUnattached(*document_.Jumps(), jumps);
    Table roles("roles", "Roles", "Who performs which steps", {"Role", "Steps"});
    for (const std::string& name : names) roles.AddRow({name, Element("ul", steps_of[name])});
    tables_ = {std::move(roles), Containers(), std::move(files), std::move(jumps), Revisions()};
  }

  Table Containers() {
    Table table("containers", "Containers", "What belongs together",
                {"Name", "Description", "Steps"});
    std::unordered_map<Text, std::string> steps_of;
    for (const size_t place : order_) {
      steps_of[container_of_[place - 1]] += Element("li", StepLink(place));
    }
    auto* containers = static_cast<vnContainers*>(document_.Containers().ToObject().get());
    ForEach(Ref<vnContainers>(containers), [&](vnContainer& container) {
      const std::string& steps = steps_of[container.Key()];
      table.AddRow({Shown(container.Label()), Paragraph(container.Description()),
                    steps.empty() ? "" : Element("ul", steps)});
    });
    return table;
  }

  // What belongs to the document and to no step. What was added to a step stands there under its
  // key, and in the document's own list as well.
  template <class Collection>
  void AddUnattached(Collection& collection, Table& table) {
    ForEach(Ref<Collection>(&collection), [&](auto& member) {
      if (attached_.count(member.Key()) > 0) return;
      table.AddRow({Shown(member.DisplayName()), Code(member.FileName()), ""});
    });
  }

  void AddAttachment(Table& table, const Attachment& member, size_t place) {
    attached_.insert(member.Key());
    table.AddRow({Shown(member.DisplayName()),
                  "<code dir=\"auto\">" + Escaped(member.FileName()) + "</code>", StepLink(place)});
  }

  Table Revisions() {
    Table table("revisions", "Revision history", "What changed, and when",
                {"Revision", "Date", "Number", "Reason"});
    ForEach(document_.RevisionHistory(), [&](vnRevision& revision) {
      table.AddRow({Escaped(automation::NumberText(revision.Revision())),
                    Day(revision.RevisionDate()), std::to_string(revision.IR()),
                    Shown(revision.Reason())});
    });
    return table;
  }

  vnDocument& document_;
  std::vector<Ref<vnStep>> steps_;
  std::vector<size_t> order_;  // places of steps, from 1 on
  std::unordered_map<Text, size_t> place_of_;
  std::vector<Text> container_of_;
  std::unordered_map<Text, Text> container_names_;
  std::vector<std::vector<Outgoing>> outgoing_;  // by place
  std::vector<Table> tables_;
  std::unordered_set<Text> attached_;  // keys of files and jumps of steps
  std::string out_;
};

}  // namespace

std::string WritePage(vnDocument& document) { return PageWriter(document).Write(); }

}  // namespace vndoc6::drawing
