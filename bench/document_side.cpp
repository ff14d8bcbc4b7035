#include "bench/document_side.h"

#include <cmath>
#include <type_traits>

#include "automation/inside.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "bench/rows.h"
#include "vndoc6/process/steps.h"

namespace vndoc6::bench {
namespace {

using automation::Currency;
using automation::Ref;

// --- Writing ---

// A Currency in place of the size that the plain structs hold.
const auto& Argument(const auto& value) { return value; }
Currency Argument(double value) { return {std::llround(value * 10000)}; }

template <class Table, class Object, class Struct>
void PutRows(const Table& table, Object& object, const Struct& values) {
  ForEachRow(table, [&](const auto& row) {
    if constexpr (!std::is_null_pointer_v<decltype(row.set)>) {
      (object.*row.set)(Argument(values.*row.member));
    }
  });
}

void PutStep(vnStep& step, const StepContent<Text>& content) {
  PutRows(kStepRows<Text>, step, content);
  const Ref<vnFigure> figure = step.Figure();
  PutRows(kFigureRows<Text>, *figure, content.figure);
  PutRows(kFontRows<Text>, *figure->Font(), content.figure);
  for (const TaskContent<Text>& task : content.tasks) {
    PutRows(kTaskRows<Text>, *step.NewTask(), task);
  }
}

void PutLink(vnLink& link, const LinkContent<Text>& content) {
  PutRows(kLinkRows<Text>, link, content);
  const Ref<vnLine> line = link.Line();
  PutRows(kLineRows<Text>, *line, content.line);
  PutRows(kFontRows<Text>, *line->Font(), content.line);
}

// --- Reading ---

size_t Weight(const Text& value) { return value.size() + (value.empty() ? 0 : value[0]); }
size_t Weight(Currency value) { return static_cast<size_t>(value.scaled); }
size_t Weight(float value) { return static_cast<size_t>(static_cast<int64_t>(value)); }
template <class T>
requires(std::is_integral_v<T> || std::is_enum_v<T>) size_t Weight(T value) {
  return static_cast<size_t>(value);
}

template <class Table, class Object>
size_t ReadRows(const Table& table, Object& object) {
  size_t sum = 0;
  ForEachRow(table, [&](const auto& row) { sum += Weight((object.*row.get)()); });
  return sum;
}

size_t ReadStep(vnStep& step) {
  size_t sum = ReadRows(kStepRows<Text>, step);
  const Ref<vnFigure> figure = step.Figure();
  sum += ReadRows(kFigureRows<Text>, *figure) + ReadRows(kFontRows<Text>, *figure->Font());
  const Ref<vnTasks> tasks = step.Tasks();
  for (int32_t i = 1; i <= tasks->Count(); ++i) {
    sum += ReadRows(kTaskRows<Text>, *tasks->Item(i));
  }
  return sum;
}

size_t ReadLink(vnLink& link) {
  const Ref<vnLine> line = link.Line();
  return ReadRows(kLinkRows<Text>, link) + ReadRows(kLineRows<Text>, *line) +
         ReadRows(kFontRows<Text>, *line->Font());
}

template <class List, class Visit>
void ForEachMember(const Ref<List>& list, Visit&& visit) {
  for (int32_t i = 1; i <= list->Count(); ++i) visit(*list->Item(i));
}

}  // namespace

Ref<vnDocument> BuildDocument(const Content<Text>& content) {
  const auto document = automation::Make<vnDocument>();
  std::vector<Text> keys;
  for (const StepContent<Text>& step : content.steps) {
    const Ref<vnStep> made = document->NewStep();
    PutStep(*made, step);
    keys.push_back(made->Key());
  }
  const Ref<vnLinks> links = document->Links();
  for (const LinkContent<Text>& link : content.links) {
    const auto made = automation::Make<vnLink>();
    links->Add(made.get());
    PutLink(*made, link);
    made->SetOriginStepKey(keys[link.from]);
    made->SetDestinationStepKey(keys[link.to]);
  }
  return document;
}

size_t ReadDocument(vnDocument& document) {
  size_t sum = 0;
  ForEachMember(document.Steps(), [&](vnStep& step) { sum += ReadStep(step); });
  ForEachMember(document.Links(), [&](vnLink& link) { sum += ReadLink(link); });
  return sum;
}

void ChangeDocument(vnDocument& document) {
  ForEachMember(document.Steps(), [](vnStep& step) {
    step.SetLabel(u"changed");
    step.Figure()->SetLeft(77);
    ForEachMember(step.Tasks(), [](vnTask& task) { task.SetName(u"changed"); });
  });
  ForEachMember(document.Links(), [](vnLink& link) {
    link.SetText(u"changed");
    link.Line()->SetDestX(77);
  });
}

std::string DocumentBytes(vnDocument& document) {
  std::string bytes;
  bag::BagWriter writer(bytes);
  Inside::Write(document, writer);
  return bytes;
}

namespace {

// Bags nested in bags count by what they hold, other texts by their own characters.
size_t OwnCharactersOf(const bag::KeptText& text) {
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  size_t sum = 0;
  bool any = false;
  while (scanner.Next(entry)) {
    any = true;
    sum += automation::ToUtf8(scanner.KeyOf(entry)).size();
    sum += entry.tag == '"' ? OwnCharactersOf(scanner.TextOf(entry)) : entry.value.size();
  }
  if (any && !scanner.faulty()) return sum;
  return automation::ToUtf8(text.ToText()).size();
}

}  // namespace

size_t OwnCharacters(const std::string& bytes) {
  return OwnCharactersOf(bag::KeptText(bag::SharedBytes(bytes)));
}

}  // namespace vndoc6::bench
