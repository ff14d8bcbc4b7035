#include "outline_reader.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "vndoc6/chart/figure.h"
#include "vndoc6/details/details.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc {

using vndoc6::vnContainer;
using vndoc6::vnLink;
using vndoc6::vnStep;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;
using vndoc6::automation::Variant;

const char* const kOutlineHelp =
    "An outline is a text with one step on each line:\n"
    "\n"
    "  # Purchase approval             the title\n"
    "  Request a purchase @Employee    a step and who performs it\n"
    "  Complete? [Decision]            a step in a container; ? at the end: a decision\n"
    "    no -> Request a purchase      a link with its label, below the step it leaves\n"
    "    yes -> Place the order\n"
    "  Place the order @Purchasing\n"
    "    - Write the order             a task of the step above\n"
    "    > To the cheapest supplier    its description\n"
    "    -> Archive                    a link without a label\n"
    "  // this line is left out\n"
    "  Archive\n"
    "\n"
    "Indented lines belong to the last line that is indented less. An indented step is one that "
    "its\n"
    "parent leads to, in a branch of its own. A step without links of its own leads to the next "
    "step\n"
    "with the same indent, if the two are neighbours. A link to a step that has no line of its "
    "own\n"
    "makes that step. Lines with one name are one step. A backslash in front of a character takes "
    "its\n"
    "meaning away: C\\@D.";

namespace {

struct Line {
  size_t number;
  size_t indent;
  std::string_view text;
};

[[noreturn]] void Refuse(const Line& line, const std::string& why) {
  throw Failure("line " + std::to_string(line.number) + ": " + why);
}

constexpr std::string_view kBlank = " \t";

std::string_view Trimmed(std::string_view text) {
  const size_t start = text.find_first_not_of(kBlank);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlank) - start + 1);
}

// Where `what` stands without a backslash before it.
size_t FindUnescaped(std::string_view text, std::string_view what, size_t from = 0) {
  for (size_t i = from; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text.substr(i, what.size()) == what) {
      return i;
    }
  }
  return std::string_view::npos;
}

Text Plain(std::string_view text) {
  std::string plain;
  text = Trimmed(text);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return FromUtf8(plain);
}

std::vector<Line> SplitLines(std::string_view outline) {
  std::vector<Line> lines;
  for (size_t number = 1; !outline.empty(); ++number) {
    const size_t end = std::min(outline.find('\n'), outline.size());
    std::string_view text = outline.substr(0, end);
    outline.remove_prefix(std::min(end + 1, outline.size()));
    if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
    size_t indent = 0;
    for (; indent < text.size() && kBlank.find(text[indent]) != std::string_view::npos;) ++indent;
    text = Trimmed(text);
    if (!text.empty() && text.substr(0, 2) != "//") lines.push_back({number, indent, text});
  }
  return lines;
}

class Builder {
 public:
  explicit Builder(vnDocument& document) : document_(document) {}

  void Build(std::string_view outline) {
    const std::vector<Line> lines = SplitLines(outline);
    // All steps first: a link may lead to a step further down.
    for (const Line& line : lines) {
      if (IsStep(line)) StepFor(line);
    }
    for (const Line& line : lines) Take(line);
  }

 private:
  struct Open {
    size_t indent;
    Ref<vnStep> step;
    bool linked;  // it has a link of its own, so that it does not lead to its neighbour
  };

  static bool Begins(const Line& line, std::string_view mark) {
    return line.text.substr(0, mark.size()) == mark;
  }
  static bool IsLink(const Line& line) {
    return FindUnescaped(line.text, "->") != std::string_view::npos;
  }
  static bool IsStep(const Line& line) {
    return !IsLink(line) && !Begins(line, "# ") && !Begins(line, "- ") && !Begins(line, "> ");
  }

  void Take(const Line& line) {
    if (Begins(line, "# ")) {
      document_.Details()->SetTitle(Plain(line.text.substr(2)));
    } else if (IsLink(line)) {
      TakeLink(line);
    } else if (Begins(line, "- ")) {
      OwnerOf(line).step->NewTask()->SetName(Plain(line.text.substr(2)));
    } else if (Begins(line, "> ")) {
      OwnerOf(line).step->SetDescription(Plain(line.text.substr(2)));
    } else {
      TakeStep(line);
    }
  }

  Open& OwnerOf(const Line& line) {
    while (!open_.empty() && open_.back().indent >= line.indent) open_.pop_back();
    if (open_.empty()) Refuse(line, "this belongs below a step, with an indent");
    return open_.back();
  }

  void TakeStep(const Line& line) {
    const Ref<vnStep> step = StepFor(line);
    std::optional<Open> neighbour;
    while (!open_.empty() && open_.back().indent >= line.indent) {
      if (open_.back().indent == line.indent) neighbour = open_.back();
      open_.pop_back();
    }
    if (neighbour && !neighbour->linked) {
      Join(*neighbour->step, *step, {});
    } else if (!neighbour && !open_.empty()) {
      open_.back().linked = true;
      Join(*open_.back().step, *step, {});
    }
    open_.push_back({line.indent, step, false});
  }

  void TakeLink(const Line& line) {
    const size_t arrow = FindUnescaped(line.text, "->");
    const Text target = Plain(line.text.substr(arrow + 2));
    if (target.empty()) Refuse(line, "the link leads nowhere");
    Open& origin = OwnerOf(line);
    origin.linked = true;
    Join(*origin.step, *StepLabelled(target), Plain(line.text.substr(0, arrow)));
  }

  // A step's line, without what says where it belongs and who performs it.
  Ref<vnStep> StepFor(const Line& line) {
    const size_t role = FindUnescaped(line.text, "@");
    const std::string_view before_role = line.text.substr(0, role);
    const size_t group = FindUnescaped(before_role, "[");
    const Text label = Plain(before_role.substr(0, group));
    if (label.empty()) Refuse(line, "a step needs a name");
    const Ref<vnStep> step = StepLabelled(label);
    if (role != std::string_view::npos) {
      step->PerformedBy()->Add(Variant(Plain(line.text.substr(role + 1))));
    }
    if (group != std::string_view::npos) {
      const size_t end = FindUnescaped(before_role, "]", group);
      if (end == std::string_view::npos) Refuse(line, "the [ is not closed");
      step->SetContainerKey(
          ContainerLabelled(Plain(before_role.substr(group + 1, end - group - 1))));
    }
    return step;
  }

  Ref<vnStep> StepLabelled(const Text& label) {
    Ref<vnStep>& step = steps_[label];
    if (step) return step;
    step = document_.NewStep();
    step->SetLabel(label);
    step->Figure()->SetShape(label.back() == u'?' ? vndoc6::vnsDecision : vndoc6::vnsProcess);
    return step;
  }

  Text ContainerLabelled(const Text& label) {
    Ref<vnContainer>& container = containers_[label];
    if (!container) {
      container = Make<vnContainer>();
      container->SetLabel(label);
      static_cast<vndoc6::vnContainers&>(*document_.Containers().ToObject()).Add(container.get());
    }
    return container->Key();
  }

  void Join(const vnStep& origin, const vnStep& target, const Text& label) {
    const auto link = Make<vnLink>();
    link->SetOriginStepKey(origin.Key());
    link->SetDestinationStepKey(target.Key());
    link->SetText(label);
    document_.Links()->Add(link.get());
  }

  vnDocument& document_;
  std::map<Text, Ref<vnStep>> steps_;
  std::map<Text, Ref<vnContainer>> containers_;
  std::vector<Open> open_;
};

}  // namespace

void BuildFromOutline(vnDocument& document, std::string_view outline) {
  Builder(document).Build(outline);
}

}  // namespace vndoc
