// Makes a document with one step, saves it, loads it into another, compares and draws.
#include <cstdio>

#include "vndoc6/document/document.h"
#include "vndoc6/drawing.h"
#include "vndoc6/process/step.h"
#include "vndoc6/process/steps.h"

using vndoc6::vnDocument;
using vndoc6::automation::Make;
using vndoc6::automation::Ref;

int main() {
  const Ref<vnDocument> written = Make<vnDocument>();
  written->NewStep()->SetLabel(u"Check the invoice");
  if (!written->SaveDocAs(u"consumer.vn6")) return 1;

  const Ref<vnDocument> read = Make<vnDocument>();
  if (!read->LoadDoc(u"consumer.vn6", {}) || read->Steps()->Count() != 1) return 2;
  if (read->Steps()->Item(1)->Label() != u"Check the invoice") return 3;
  if (vndoc6::drawing::Svg(*read).find("Check the") == std::string::npos) return 4;
  std::puts("1 step saved and loaded");
}
