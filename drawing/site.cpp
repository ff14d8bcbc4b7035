// The index of several reports.
#include <map>
#include <set>

#include "addresses.h"
#include "chart_frame.h"
#include "markup.h"
#include "page.h"
#include "page_markup.h"
#include "picture.h"
#include "procedure.h"
#include "svg.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/drawing.h"

namespace vndoc6::drawing {
namespace {

void AddJump(const vnJump& jump, const ReportOf& report_of, std::vector<SiteEntry::Jump>& jumps) {
  const Text& file = jump.FileName();
  const Text& name = jump.DisplayName().empty() ? file : jump.DisplayName();
  jumps.push_back({name, report_of && !file.empty() ? report_of(file) : Text()});
}

// A text in quotes that cannot end the element it stands in.
std::string JsonText(const Text& text) {
  std::string out = "\"";
  for (const char16_t unit : text) {
    if (unit >= ' ' && unit < 0x7F && unit != '"' && unit != '\\' && unit != '<' && unit != '&') {
      out += static_cast<char>(unit);
      continue;
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    out += "\\u";
    for (const int shift : {12, 8, 4, 0}) out += kDigits[unit >> shift & 15];
  }
  return out + "\"";
}

class SiteWriter {
 public:
  SiteWriter(const std::vector<SiteEntry>& entries, Language language)
      : entries_(entries), words_(language) {
    for (size_t i = 0; i < entries.size(); ++i) entry_of_.emplace(entries[i].report, i);
  }

  std::string Write() {
    const std::string title = words_(Word::kSiteTitle);
    std::string script(kPageScript);
    script.append(kPrintScript).append(kSiteScript);
    out_ = PageBegin(words_.Code(), title, kPageStyle, script) +
           "<a class=\"skip\" href=\"#procedures\">" + words_(Word::kSkipToContent) + "</a>\n" +
           Element("header", Element("h1", title)) + "\n<main>\n" + Search();
    AddProcedures();
    AddMap();
    out_ += "</main>\n" + PageEnd(script);
    return std::move(out_);
  }

 private:
  static std::string Title(const SiteEntry& entry, const Words& words) {
    return entry.title.empty() ? words(Word::kUntitled) : Shown(entry.title);
  }

  // The script shows it: without one there is nothing that searches.
  std::string Search() const {
    std::string search = "<form id=\"search\" role=\"search\" hidden data-found=\"";
    search.append(words_(Word::kFound)).append("\" data-none=\"");
    search.append(words_(Word::kNothingFound)).append("\"><label for=\"wanted\">");
    search.append(words_(Word::kSearch)).append("</label> <input id=\"wanted\" type=\"search\" ");
    search.append("autocomplete=\"off\" placeholder=\"").append(words_(Word::kSearchHint));
    search +=
        "\"><output id=\"found\" aria-live=\"polite\"></output><ul id=\"results\"></ul></form>\n";
    search += "<script type=\"application/json\" id=\"search-data\">[";
    for (const SiteEntry& entry : entries_) {
      if (&entry != entries_.data()) search += ",\n";
      search += "[" + JsonText(automation::FromUtf8(AddressOf(entry.report))) + "," +
                JsonText(entry.title.empty() ? automation::FromUtf8(words_(Word::kUntitled))
                                             : entry.title) +
                "," + JsonText(entry.code);
      for (const auto& [text, place] : entry.texts) {
        search += "," + JsonText(text) + "," + JsonText(automation::FromUtf8(place));
      }
      search += "]";
    }
    return search + "]</script>\n";
  }

  void AddProcedures() {
    std::vector<std::set<size_t>> jumped_by(entries_.size());
    for (size_t i = 0; i < entries_.size(); ++i) {
      for (const auto& jump : entries_[i].jumps) {
        const auto to = entry_of_.find(jump.report);
        if (to != entry_of_.end()) jumped_by[to->second].insert(i);
      }
    }
    const auto link = [this](size_t i) {
      return LinkTo(AddressOf(entries_[i].report), Title(entries_[i], words_));
    };
    Table table("procedures", words_(Word::kProceduresCaption),
                {words_(Word::kProcedure), words_(Word::kCode), words_(Word::kJumpsTo),
                 words_(Word::kJumpsFrom)});
    for (size_t i = 0; i < entries_.size(); ++i) {
      std::set<std::string> targets;
      for (const auto& jump : entries_[i].jumps) {
        const auto to = entry_of_.find(jump.report);
        targets.insert(to != entry_of_.end() ? link(to->second) : Shown(jump.name));
      }
      std::string to, from;
      for (const std::string& target : targets) to += Element("li", target);
      for (const size_t by : jumped_by[i]) from += Element("li", link(by));
      table.AddRow({link(i), Shown(entries_[i].code), to.empty() ? "" : Element("ul", to),
                    from.empty() ? "" : Element("ul", from)});
    }
    out_ += SectionBegin("procedures", words_(Word::kAllProcedures)) + table.Html();
    out_ += kSectionEnd;
  }

  // A chart whose steps are the documents: it is laid out and drawn as every other one.
  void AddMap() {
    const auto map = Make<vnDocument>();
    std::vector<std::string> addresses;
    std::vector<Ref<vnStep>> steps;
    const auto add_step = [&](const Text& label, const Text& report) {
      steps.push_back(map->NewStep());
      steps.back()->SetLabel(label);
      addresses.push_back(AddressOf(report));
      return steps.size() - 1;
    };
    for (const SiteEntry& entry : entries_) {
      add_step(entry.title.empty() ? automation::FromUtf8(words_(Word::kUntitled)) : entry.title,
               entry.report);
    }
    std::map<Text, size_t> others;
    std::set<std::pair<size_t, size_t>> joined;
    for (size_t i = 0; i < entries_.size(); ++i) {
      for (const auto& jump : entries_[i].jumps) {
        const auto known = entry_of_.find(jump.report);
        size_t to = known != entry_of_.end() ? known->second : 0;
        if (known == entry_of_.end()) {
          const auto [other, is_new] = others.try_emplace(jump.name, steps.size());
          if (is_new) {
            constexpr int32_t kDashes = 1;
            steps[add_step(jump.name, {})]->Figure()->SetDrawStyle(kDashes);
          }
          to = other->second;
        }
        if (!joined.insert({i, to}).second) continue;
        const auto link = Make<vnLink>();
        link->SetDocument(map.get());
        link->SetOriginStepKey(steps[i]->Key());
        link->SetDestinationStepKey(steps[to]->Key());
        map->Links()->Add(link.get());
      }
    }
    if (joined.empty()) return;
    constexpr int32_t kNoNumber = -1;
    for (const auto& step : steps) step->SetStepIndex(kNoNumber);
    map->Details()->SetTitle(automation::FromUtf8(words_(Word::kTheMap)));
    out_ += SectionBegin("chart", words_(Word::kMap)) +
            Element("p", words_(Word::kMapNote), " class=\"note\"");
    std::string svg;
    SvgOptions options;
    options.language = words_.language();
    AppendSvg(ReadDrawing(*map), options, SvgKind::kInPage, svg);
    BeginChartFrame(words_, words_(Word::kTheMap), out_);
    out_ += LeadingTo(addresses, svg);
    EndChartFrame(out_);
    out_ += kSectionEnd;
  }

  // The drawing with its steps as links to the reports, in place of to steps of the page.
  static std::string LeadingTo(const std::vector<std::string>& addresses, const std::string& svg) {
    constexpr std::string_view kStep = " href=\"#step-";
    std::string out;
    size_t from = 0;
    for (size_t at = svg.find(kStep); at != svg.npos; at = svg.find(kStep, from)) {
      out.append(svg, from, at - from);
      const size_t end = svg.find('"', at + kStep.size());
      const size_t number = std::stoul(svg.substr(at + kStep.size(), end - at - kStep.size()));
      const std::string& address = addresses[number - 1];
      if (!address.empty()) {
        out += " href=\"" + Escaped(automation::FromUtf8(address)) + "\"";
      }
      from = end + 1;
    }
    return out.append(svg, from);
  }

  const std::vector<SiteEntry>& entries_;
  const Words words_;
  std::map<Text, size_t> entry_of_;
  std::string out_;
};

}  // namespace

SiteEntry ReadSiteEntry(vnDocument& document, const Text& report, const ReportOf& report_of) {
  SiteEntry entry;
  entry.report = report;
  entry.title = document.Details()->Title();
  entry.code = document.Details()->DocumentCode();
  const Procedure procedure(document);
  std::set<Text> known;  // roles and files, once a document
  std::set<Text> attached;
  const auto add = [&](const Text& text, const std::string& place) {
    if (!text.empty()) entry.texts.push_back({text, place});
  };
  const auto add_once = [&](const Text& text, const std::string& place) {
    if (known.insert(text).second) add(text, place);
  };
  for (const size_t place : procedure.order) {
    vnStep& step = *procedure.steps[place - 1];
    const PassingRead reading(step);
    const std::string anchor = "step-" + std::to_string(place);
    add(step.Label(), anchor);
    ForEach(step.Tasks(), [&](vnTask& task) { add(task.Name(), anchor); });
    ForEach(step.PerformedBy(), [&](vnTitleRef& role) { add_once(role.DisplayName(), "roles"); });
    ForEach(step.Files(), [&](vnFile& file) {
      add_once(file.DisplayName(), "files");
      add_once(file.FileName(), "files");
    });
    ForEach(step.Jumps(), [&](vnJump& jump) {
      attached.insert(jump.Key());
      AddJump(jump, report_of, entry.jumps);
    });
  }
  ForEach(document.Jumps(), [&](vnJump& jump) {
    if (attached.count(jump.Key()) == 0) AddJump(jump, report_of, entry.jumps);
  });
  return entry;
}

std::string SiteIndex(const std::vector<SiteEntry>& entries, Language language) {
  return SiteWriter(entries, language).Write();
}

}  // namespace vndoc6::drawing
