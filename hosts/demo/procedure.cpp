#include "procedure.h"

#include <array>
#include <map>
#include <string_view>
#include <vector>

#include "vndoc6/automation/services.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/details/details.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace demo {

using vndoc6::Text;
using vndoc6::TextView;
using vndoc6::vnDocument;
using vndoc6::vnStep;
using vndoc6::automation::Currency;
using vndoc6::automation::Date;
using vndoc6::automation::Make;
using vndoc6::automation::Ref;
using vndoc6::automation::Variant;

namespace {

struct StepPlan {
  const char16_t* name;  // what the links below call it
  const char16_t* label;
  const char16_t* description;
  const char16_t* performed_by;
  vndoc6::EnumVantrelShapes shape;
  float column, row;
  std::vector<const char16_t*> tasks;
};

struct LinkPlan {
  const char16_t* from;
  const char16_t* to;
  const char16_t* text;
  const char16_t* condition;  // empty for none
};

const std::vector<StepPlan> kSteps = {
    {u"start",
     u"Request a purchase",
     u"Anyone may ask; nobody has to guess the form.",
     u"Employee",
     vndoc6::vnsTermination,
     1,
     0,
     {}},
    {u"form",
     u"Fill in the form",
     u"What, why, how many, by when.",
     u"Employee",
     vndoc6::vnsManualInput,
     1,
     1,
     {u"Describe the need", u"Attach an offer", u"Name a budget"}},
    {u"complete",
     u"Complete?",
     u"Everything there, nothing contradictory.",
     u"Purchasing",
     vndoc6::vnsDecision,
     1,
     2,
     {}},
    {u"return",
     u"Return to sender",
     u"Say what is missing – kindly.",
     u"Purchasing",
     vndoc6::vnsProcess,
     2,
     2,
     {u"List what is missing"}},
    {u"budget",
     u"Prüfe das Budget",
     u"Größere Beträge über 5.000 € gehen an die Leitung.",
     u"Contrôle de gestion",
     vndoc6::vnsProcess,
     1,
     3,
     {u"Look up the cost centre", u"Reserve the amount"}},
    {u"large", u"Over 5,000 €?", u"", u"Contrôle de gestion", vndoc6::vnsDecision, 1, 4, {}},
    {u"board",
     u"取締役会の承認",
     u"Смета утверждается советом директоров.",
     u"Board",
     vndoc6::vnsManualOperation,
     2,
     4,
     {u"Prepare the paper"}},
    {u"granted", u"Accordé ?", u"", u"Board", vndoc6::vnsDecision, 2, 5, {}},
    {u"reject",
     u"Ablehnen und begründen",
     u"Jede Ablehnung nennt ihren Grund.",
     u"Purchasing",
     vndoc6::vnsProcess,
     3,
     5,
     {}},
    {u"supplier",
     u"Check the supplier",
     u"A procedure of its own.",
     u"Purchasing",
     vndoc6::vnsPredefinedProcess,
     1,
     6,
     {}},
    {u"order",
     u"Place the order",
     u"Order number = year + running number: 2026:0042.",
     u"Purchasing",
     vndoc6::vnsDocument,
     1,
     7,
     {u"Write the order", u"Send it", u"File the copy"}},
    {u"receive",
     u"Receive the goods",
     u"הסחורה נבדקת עם קבלתה",
     u"Stores",
     vndoc6::vnsManualOperation,
     1,
     8,
     {u"Count", u"Look for damage"}},
    {u"match",
     u"Invoice = order?",
     u"\"Three-way match\": order, delivery note, invoice.",
     u"Accounts",
     vndoc6::vnsDecision,
     1,
     9,
     {}},
    {u"clarify", u"Clarify the difference", u"", u"Accounts", vndoc6::vnsProcess, 2, 9, {}},
    {u"pay", u"Pay", u"Within the discount period.", u"Accounts", vndoc6::vnsProcess, 1, 10, {}},
    {u"archive",
     u"Archive",
     u"Ten years, readable.",
     u"Accounts",
     vndoc6::vnsMagneticDisk,
     1,
     11,
     {}},
};

const std::vector<LinkPlan> kLinks = {
    {u"start", u"form", u"", u""},
    {u"form", u"complete", u"", u""},
    {u"complete", u"return", u"no", u"Form.Missing > 0"},
    {u"return", u"form", u"", u""},
    {u"complete", u"budget", u"yes", u"Form.Missing = 0"},
    {u"budget", u"large", u"", u""},
    {u"large", u"board", u"yes", u"Amount > 5000"},
    {u"large", u"supplier", u"no", u"Amount <= 5000"},
    {u"board", u"granted", u"", u""},
    {u"granted", u"reject", u"non", u"Board.Vote = \"no\""},
    {u"granted", u"supplier", u"oui", u"Board.Vote = \"yes\""},
    {u"supplier", u"order", u"", u""},
    {u"order", u"receive", u"", u""},
    {u"receive", u"match", u"", u""},
    {u"match", u"clarify", u"no", u"Difference <> 0"},
    {u"clarify", u"match", u"", u""},
    {u"match", u"pay", u"yes", u"Difference = 0"},
    {u"pay", u"archive", u"", u""},
};

// A red 2 x 2 bitmap: small, and yet a picture that every program reads.
std::vector<uint8_t> RedBitmap() {
  std::vector<uint8_t> bytes = {'B', 'M', 70, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0,  0,
                                2,   0,   0,  0, 2, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0,  0, 16, 0};
  bytes.resize(54, 0);
  for (int row = 0; row < 2; ++row) {
    bytes.insert(bytes.end(), {0, 0, 255, 0, 0, 255, 0, 0});
  }
  return bytes;
}

Ref<vnStep> AddStep(vnDocument& document, const StepPlan& plan) {
  constexpr float kColumn = 2400;
  constexpr float kRow = 1200;
  const Ref<vnStep> step = document.NewStep();
  step->SetLabel(plan.label);
  step->SetDescription(plan.description);
  step->PerformedBy()->Add(Variant(plan.performed_by));
  const Ref<vndoc6::vnFigure> figure = step->Figure();
  figure->SetShape(plan.shape);
  figure->SetLeft(plan.column * kColumn);
  figure->SetTop(300 + plan.row * kRow);
  if (plan.shape == vndoc6::vnsDecision) {
    figure->SetFillColour(0x00CCFFFF);
    figure->SetLeft(figure->Left() - 240);
    figure->SetTop(figure->Top() - 90);
    figure->SetWidth(1680);
    figure->SetHeight(780);
    figure->Font()->SetItalic(true);
  }
  for (const char16_t* name : plan.tasks) step->NewTask()->SetName(name);
  return step;
}

void AddLink(vnDocument& document, const LinkPlan& plan, const std::map<Text, Ref<vnStep>>& steps) {
  const auto link = Make<vndoc6::vnLink>();
  link->SetDocument(&document);
  link->SetOriginStepKey(steps.at(plan.from)->Key());
  link->SetDestinationStepKey(steps.at(plan.to)->Key());
  link->SetText(plan.text);
  if (*plan.condition != u'\0') {
    link->NewCondition(plan.text, plan.condition)->SetFailMessage(u"Not this way.");
    link->SetConditionExpression(plan.condition);
  }
  link->Line()->SetArrowDest(3);
  document.Links()->Add(link.get());
}

void AddContainer(vnDocument& document, const char16_t* label, float top, float height,
                  const std::vector<Ref<vnStep>>& steps) {
  const auto container = Make<vndoc6::vnContainer>();
  document.ContainerCollection()->Add(container.get());
  container->SetLabel(label);
  const Ref<vndoc6::vnFigure> figure = container->Figure();
  figure->SetLeft(1650);
  figure->SetTop(top);
  figure->SetWidth(4800);
  figure->SetHeight(height);
  for (const Ref<vnStep>& step : steps) step->SetContainerKey(container->Key());
}

}  // namespace

void BuildPurchaseApproval(vnDocument& document, const Text& supplier_file) {
  const Ref<vndoc6::vnDetails> details = document.Details();
  details->SetTitle(u"Purchase approval");
  details->SetDocumentCode(u"PUR-017");
  details->SetRevision(1.5f);
  details->SetPurpose(u"Nothing is bought twice, too dear, or unread.");
  details->SetDateApproved(Date{46082});
  details->NewRevision(u"Board approval above 5,000 €");

  std::map<Text, Ref<vnStep>> steps;
  for (const StepPlan& plan : kSteps) steps[plan.name] = AddStep(document, plan);
  for (const LinkPlan& plan : kLinks) AddLink(document, plan, steps);
  AddContainer(document, u"Decision", 2250, 3600,
               {steps[u"complete"], steps[u"budget"], steps[u"large"], steps[u"board"]});
  AddContainer(document, u"Réception", 9450, 2400, {steps[u"receive"], steps[u"match"]});

  steps[u"board"]->Figure()->Font()->SetBold(true);
  steps[u"board"]->Figure()->Font()->SetSize(Currency{115000});
  const auto picture = vndoc6::automation::services().make_picture(RedBitmap());
  steps[u"reject"]->Figure()->SetPicture(picture.get());
  document.Chart()->SetPicture(picture.get());
  document.Chart()->SetShowPageMargins(true);

  steps[u"pay"]->Dependancies()->Add(steps[u"receive"]->Key(), Variant(u"goods first"));
  steps[u"pay"]->NewCondition(u"Discount", u"Today <= Invoice.DiscountUntil");
  const auto offer = Make<vndoc6::vnFile>();
  offer->SetDisplayName(u"Offer form");
  offer->SetFileName(u"forms\\offer:2026.docx");
  steps[u"form"]->Files()->Add(offer.get());
  const auto jump = Make<vndoc6::vnJump>();
  jump->SetDisplayName(u"Supplier check");
  jump->SetFileName(supplier_file);
  steps[u"supplier"]->Jumps()->Add(jump.get());
  document.GetProperties()->Add(u"Audit=\"2026\"", Variant(true));
}

void BuildSupplierCheck(vnDocument& document) {
  document.Details()->SetTitle(u"Supplier check");
  for (const char16_t* label : {u"Known supplier?", u"Ask for references", u"Enter in the list"}) {
    document.NewStep()->SetLabel(label);
  }
}

}  // namespace demo
