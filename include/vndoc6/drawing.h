// Drawing documents: the chart as SVG, the report as HTML, the automatic layout. Everything is read
// through the model's published members. The same document gives the same bytes everywhere: no
// fonts are looked up, widths of letters are estimated, on the wide side.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vndoc6 {
class vnDocument;
}

namespace vndoc6::drawing {

// What pictures and pages say by themselves is said in one of these.
enum class Language { kEnglish, kGerman, kFrench };

// Where the steps that follow stand: below, or to the right.
enum class Direction { kDown, kRight };

// Which steps have a lane of the chart to themselves: those that the same role performs (the first
// one of each step), or those of the same container.
enum class Lanes { kNone, kRole, kContainer };

// Colours: as the document has them; the same with what is black on white light on dark; black on
// white throughout, without backgrounds and shadows, to save ink.
enum class Theme { kLight, kDark, kPrint };

enum class Paper { kNone, kA4, kA3, kLetter };

struct SvgOptions {
  Direction direction = Direction::kDown;  // of what has no place
  Lanes lanes = Lanes::kNone;              // with lanes no place of the document counts
  Theme theme = Theme::kLight;
  bool title = false;          // the document's title and revision stand above the chart
  bool legend = false;         // the shapes that are used, with their names, stand below it
  Paper paper = Paper::kNone;  // of SvgPages
  bool grid = false;           // the chart's grid
  bool page_margins = false;   // where the chart's pages end
  double scale = 1;            // of the picture's size
  double width = 0;            // the picture's width in pixels; 0 leaves it to the scale
  Language language = Language::kEnglish;
};

// The chart as a whole SVG document, in UTF-8. Steps that were never given a place, when there are
// several, are laid out, near the placed ones that they are linked to; a line without points of its
// own is given a way around the steps. The document stays as it is.
std::string Svg(vnDocument& document, const SvgOptions& options = {});

// The chart on sheets of paper, each a whole SVG document of the paper's size: as few as hold it
// with letters of 8 points at least (smaller where that would take some 500), cut between layers. A
// line that is cut has a connector of the same number on both sheets. A4 where no paper is chosen;
// `scale` and `width` count for nothing.
std::vector<std::string> SvgPages(vnDocument& document, const SvgOptions& options = {});

// The file with the report of the document that a jump names, as a path seen from the page; empty
// where there is none.
using ReportOf = std::function<std::u16string(const std::u16string& file_name)>;

struct HtmlOptions {
  Language language = Language::kEnglish;
  // The path of the folder that relative names of files are in, as the page sees it; empty for the
  // page's own.
  std::u16string folder;
  // Where it gives nothing, and without it, a jump leads to the document itself.
  ReportOf report_of;
  // The index of the page's site, as a path seen from the page; empty for none.
  std::u16string index;
};

// The report: the document as one page of HTML that needs nothing else, in UTF-8.
std::string Html(vnDocument& document, const HtmlOptions& options = {});

// What the index of several reports tells of one of them.
struct SiteEntry {
  struct Found {
    std::u16string text;  // a step, a task, a role, a file
    std::string place;    // in the report: "step-3"; empty for the report as a whole
  };
  struct Jump {
    std::u16string name;    // of the document that is jumped to
    std::u16string report;  // its report's file; empty where there is none
  };
  std::u16string report;  // the file with the document's report, as a path seen from the index
  std::u16string title;
  std::u16string code;
  std::vector<Found> texts;  // what a search finds
  std::vector<Jump> jumps;
};

// Reads it of a document. Paths are those that the index sees.
SiteEntry ReadSiteEntry(vnDocument& document, const std::u16string& report,
                        const ReportOf& report_of);

// The index as a page of HTML, in UTF-8: the documents in their order, a search in all of them, and
// a map of who jumps to whom.
std::string SiteIndex(const std::vector<SiteEntry>& entries,
                      Language language = Language::kEnglish);

struct LayoutOptions {
  // Steps that have a place, and lines that have points, get new ones as well.
  bool all = false;
  Direction direction = Direction::kDown;
};

// What a layout has placed: the numbers of steps, links and containers among the document's own,
// from 1 on, ascending.
struct LaidOut {
  std::vector<size_t> steps;
  std::vector<size_t> links;
  std::vector<size_t> containers;
};

// Writes the places and the lines' points that Svg would draw into the document: those of steps and
// containers without a place, and of lines without points. From then on it draws the same, here
// and in any editor. The document reports each change and is not saved.
LaidOut Layout(vnDocument& document, const LayoutOptions& options = {});

struct Font {
  double size = 12;  // pixels
  bool bold = false;
};

struct Extent {
  double width = 0;
  double height = 0;
};

// The room that a text takes in pixels, as the drawing estimates it. Lines break at line breaks
// only.
Extent Measure(std::u16string_view text, const Font& font = {});

}  // namespace vndoc6::drawing
