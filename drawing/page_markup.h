// The pieces of markup that pages are put together from.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "model.h"

namespace vndoc6::drawing {

std::string Element(std::string_view name, const std::string& content,
                    std::string_view attributes = {});

// A text of the document. One that may run from right to left is kept apart from what is around it.
std::string Shown(const Text& text);
std::string Paragraph(const Text& text);
// A text in some language of the host's.
std::string Code(const Text& text);
// The address comes escaped for addresses, not for markup.
std::string LinkTo(const std::string& address, const std::string& content);

// The day as year, month and day; empty for no date.
std::string Day(automation::Date date);
// A revision's number; empty where there is none.
std::string RevisionNumber(float revision);

// A table with a name. Columns and cells are markup; the first cell is the row's heading.
class Table {
 public:
  Table(std::string id, const std::string& caption, const std::vector<std::string>& columns);
  void AddRow(const std::vector<std::string>& cells, const std::string& id = {});
  bool IsEmpty() const { return body_.empty(); }
  std::string Html() const;

 private:
  std::string id_;
  std::string caption_;
  std::string head_;
  std::string body_;
};

// A section with its heading.
std::string SectionBegin(std::string_view id, std::string_view heading);
constexpr std::string_view kSectionEnd = "</section>\n";

// What stands before a page's content: its head with a policy that lets only the page's own style
// and script work, and nothing else be loaded.
std::string PageBegin(const char* language, const std::string& title, std::string_view style,
                      std::string_view script);
std::string PageEnd(std::string_view script);

}  // namespace vndoc6::drawing
