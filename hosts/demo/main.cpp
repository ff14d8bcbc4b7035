// The demo: builds a procedure, saves it, loads it into a second document, tells what it holds and
// which events were raised on the way, edits it and saves again.
#include <cstdio>
#include <iostream>
#include <map>
#include <string>

#include "procedure.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace {

using vndoc6::Text;
using vndoc6::vnDocument;
using vndoc6::vnStep;
using vndoc6::automation::EventInfo;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;
using vndoc6::automation::Ref;
using vndoc6::automation::ToUtf8;
using vndoc6::automation::Variant;

// Counts the events of a document by name, as a late-bound host hears them.
class EventCounter : public vndoc6::automation::EventSink {
 public:
  explicit EventCounter(vnDocument& document) : document_(document) { document_.Connect(this); }
  ~EventCounter() override { document_.Disconnect(this); }
  EventCounter(const EventCounter&) = delete;
  EventCounter& operator=(const EventCounter&) = delete;

  void OnEvent(const EventInfo& event, std::span<const Variant>) override { ++counts_[event.name]; }

  void Report(const char* when) {
    std::cout << "  events while " << when << ":";
    for (const auto& [name, count] : counts_) std::cout << ' ' << name << " x" << count;
    std::cout << '\n';
    counts_.clear();
  }

 private:
  vnDocument& document_;
  std::map<std::string, int> counts_;
};

void ReportStep(vnDocument& document, vnStep& step) {
  const Ref<vndoc6::vnFigure> figure = step.Figure();
  std::cout << "  " << step.StepIndex() << ". " << ToUtf8(step.Label()) << "  [shape "
            << figure->Shape() << " at " << figure->Left() << ", " << figure->Top() << "; "
            << ToUtf8(figure->Font()->Name()) << "]\n";
  if (step.PerformedBy()->Count() > 0) {
    std::cout << "       by " << ToUtf8(step.PerformedBy()->Item(Variant(1))->DisplayName())
              << '\n';
  }
  for (int32_t i = 1; i <= step.Tasks()->Count(); ++i) {
    const auto task = step.Tasks()->Item(Variant(i));
    std::cout << "       task " << task->TaskOrder() << ": " << ToUtf8(task->Name()) << '\n';
  }
  for (int32_t i = 1; i <= step.Files()->Count(); ++i) {
    std::cout << "       file " << ToUtf8(step.Files()->Item(Variant(i))->FileName()) << '\n';
  }
  for (int32_t i = 1; i <= step.Jumps()->Count(); ++i) {
    const auto target = step.Jumps()->Item(Variant(i))->JumpDocument();
    std::cout << "       jumps to "
              << (target ? ToUtf8(target->Details()->Title()) + ", " +
                               std::to_string(target->Steps()->Count()) + " steps"
                         : "a document that is not there")
              << '\n';
  }
  const Ref<vndoc6::vnLinks> links = document.Links();
  for (int32_t i = 1; i <= links->Count(); ++i) {
    const auto link = links->Item(Variant(i));
    if (link->OriginStepKey() != step.Key()) continue;
    const auto target = document.Steps()->ItemByStepKey(link->DestinationStepKey());
    std::cout << "       -> " << ToUtf8(target ? target->Label() : u"?");
    if (!link->Text().empty()) std::cout << " (" << ToUtf8(link->Text()) << ")";
    std::cout << '\n';
  }
}

void Report(vnDocument& document) {
  std::cout << "  \"" << ToUtf8(document.Details()->Title()) << "\", code "
            << ToUtf8(document.Details()->DocumentCode()) << ", IR " << document.IR() << ", "
            << document.Steps()->Count() << " steps, " << document.Links()->Count() << " links, "
            << document.ContainerCollection()->Count() << " containers, "
            << document.RevisionHistory()->Count() << " revisions\n";
  for (int32_t number = 1; number <= document.Steps()->LastIndex(); ++number) {
    if (const auto step = document.Steps()->ItemByStepIndex(number)) ReportStep(document, *step);
  }
}

// Removing a step leaves its links to the host. Here those that led to it lead on to the next.
void RemoveAndRelink(vnDocument& document, const Ref<vnStep>& step, const Ref<vnStep>& next) {
  const Ref<vndoc6::vnLinks> links = document.Links();
  for (int32_t i = links->Count(); i >= 1; --i) {
    const auto link = links->Item(Variant(i));
    if (link->OriginStepKey() == step->Key()) {
      links->Remove(Variant(i));
    } else if (link->DestinationStepKey() == step->Key()) {
      link->SetDestinationStepKey(next->Key());
      document.RaiseLinkChange(link.get(), vndoc6::vndDestinationStepKey);
    }
  }
  document.Steps()->Remove(Variant(step->Key()));
}

void Check(bool succeeded, const char* what) {
  if (!succeeded) throw std::runtime_error(std::string(what) + " failed");
}

void Run(const std::string& folder) {
  const Text supplier_file = FromUtf8(folder + "/supplier check.vn6");
  const Text file = FromUtf8(folder + "/purchase approval.vn6");
  {
    const auto supplier = Make<vnDocument>();
    demo::BuildSupplierCheck(*supplier);
    Check(supplier->SaveAs(supplier_file), "saving the supplier check");
  }
  {
    std::cout << "Building and saving \"" << ToUtf8(file) << "\"\n";
    const auto document = Make<vnDocument>();
    EventCounter events(*document);
    demo::BuildPurchaseApproval(*document, supplier_file);
    events.Report("building");
    Check(document->SaveAs(file), "saving");
    events.Report("saving");
  }
  std::cout << "Loading it into a second document\n";
  const auto document = Make<vnDocument>();
  EventCounter events(*document);
  Check(document->Load(file, Text()), "loading");
  events.Report("loading");
  Report(*document);
  events.Report("reading");

  std::cout << "Editing: paying moves before the goods arrive, the supplier's step goes\n";
  const Ref<vndoc6::vnSteps> steps = document->Steps();
  steps->ItemByStepIndex(15)->SetStepIndex(12);
  RemoveAndRelink(*document, steps->ItemByStepIndex(10), steps->ItemByStepIndex(11));
  document->Details()->NewRevision(u"Paid in advance");
  Check(document->Save(), "saving again");
  events.Report("editing and saving");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: vndoc6_demo FOLDER\n";
    return 2;
  }
  try {
    Run(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "vndoc6_demo: " << error.what() << '\n';
    return 1;
  }
  std::cout << "Objects left: " << vndoc6::automation::Object::LiveCount() << '\n';
  return 0;
}
