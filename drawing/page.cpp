#include "page.h"

#include "addresses.h"
#include "chart_frame.h"
#include "markup.h"
#include "page_account.h"
#include "picture.h"
#include "svg.h"

namespace vndoc6::drawing {
namespace {

class PageWriter {
 public:
  PageWriter(vnDocument& document, const HtmlOptions& options)
      : document_(document), account_(document, options), words_(account_.words) {}

  std::string Write() {
    const Text title = document_.Details()->Title();
    const std::string name = title.empty() ? words_(Word::kUntitled) : Escaped(title);
    const std::vector<Section> sections = TableSections(account_);
    const std::string script = std::string(kPageScript) + std::string(kPrintScript);
    out_ = PageBegin(words_.Code(), name, kPageStyle, script) +
           "<a class=\"skip\" href=\"#steps\">" + words_(Word::kSkipToSteps) + "</a>\n" +
           Element("header", Element("h1", name, " dir=\"auto\"") + Details()) + "\n" +
           Navigation(sections) + "<main" + (IsLarge() ? " class=\"large\"" : "") + ">\n";
    AddChart();
    out_ += SectionBegin("steps", words_(Word::kSteps));
    AppendSteps(account_, out_);
    out_ += kSectionEnd;
    for (const Section& section : sections) {
      out_ += SectionBegin(section.id, section.heading) + section.content;
      out_ += kSectionEnd;
    }
    out_ += "</main>\n" + PageEnd(script);
    return std::move(out_);
  }

 private:
  // Too much to be laid out at once: each part is when it is seen.
  bool IsLarge() const {
    constexpr size_t kMost = 300;
    return account_.procedure.steps.size() > kMost;
  }

  std::string Details() {
    const auto details = document_.Details();
    std::string list;
    const auto add = [&](Word name, const std::string& value) {
      if (!value.empty()) list += Element("div", Element("dt", words_(name)) + value);
    };
    const auto tell = [&](Word name, const std::string& value) {
      if (!value.empty()) add(name, Element("dd", value));
    };
    tell(Word::kCode, Shown(details->DocumentCode()));
    tell(Word::kRevision, RevisionNumber(details->Revision()));
    tell(Word::kApproved, Day(details->DateApproved()));
    tell(Word::kAuthorisedBy, Shown(details->AuthorisedBy()->DisplayName()));
    tell(Word::kPurpose, Shown(details->Purpose()));
    tell(Word::kScope, Shown(details->Scope()));
    tell(Word::kTakes, Shown(details->Duration()));
    tell(Word::kForm, Shown(details->Form()));
    tell(Word::kNotes, Shown(details->Notes()));
    add(Word::kFurther, account_.Others(*details, "dd") + account_.Others(document_, "dd"));
    return (list.empty() ? "" : Element("dl", list, " class=\"details\"")) +
           Paragraph(details->Description());
  }

  std::string Navigation(const std::vector<Section>& sections) const {
    std::string contents;
    const auto add = [&contents](const std::string& address, const std::string& heading) {
      contents += Element("li", LinkTo(address, heading));
    };
    if (!account_.options.index.empty()) {
      add(AddressOf(account_.options.index), words_(Word::kAllProcedures));
    }
    add("#chart", words_(Word::kChart));
    add("#steps", words_(Word::kSteps));
    for (const Section& section : sections) add("#" + section.id, section.heading);
    return Element("nav", Element("ul", contents),
                   std::string(" aria-label=\"") + words_(Word::kContents) + "\"") +
           "\n";
  }

  void AddChart() {
    out_ += SectionBegin("chart", words_(Word::kChart));
    BeginChartFrame(words_, words_(Word::kTheChart), out_);
    SvgOptions options;
    options.language = words_.language();
    AppendSvg(ReadDrawing(document_), options, SvgKind::kInPage, out_);
    EndChartFrame(out_);
    out_ += kSectionEnd;
  }

  vnDocument& document_;
  Account account_;
  const Words& words_;
  std::string out_;
};

}  // namespace

std::string WritePage(vnDocument& document, const HtmlOptions& options) {
  return PageWriter(document, options).Write();
}

}  // namespace vndoc6::drawing
