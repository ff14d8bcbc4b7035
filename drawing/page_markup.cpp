#include "page_markup.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "markup.h"
#include "sha256.h"
#include "vndoc6/automation/base64.h"

namespace vndoc6::drawing {
namespace {

// As a policy names what may work: by the SHA-256 of all that is between the tags.
std::string Named(std::string_view content) {
  std::string name = "'sha256-";
  automation::AppendBase64(Sha256(content), name);
  return name + "'";
}

}  // namespace

std::string Element(std::string_view name, const std::string& content,
                    std::string_view attributes) {
  std::string out = "<";
  out.append(name).append(attributes).append(">").append(content);
  return out.append("</").append(name).append(">");
}

std::string Shown(const Text& text) {
  constexpr char16_t kFirstFromTheRight = 0x0590;
  const bool may_run_left = std::any_of(text.begin(), text.end(),
                                        [](char16_t unit) { return unit >= kFirstFromTheRight; });
  return may_run_left ? "<bdi>" + Escaped(text) + "</bdi>" : Escaped(text);
}

std::string Paragraph(const Text& text) {
  return text.empty() ? "" : Element("p", Escaped(text), " dir=\"auto\"");
}

std::string Code(const Text& text) {
  return text.empty() ? "" : "<code dir=\"auto\">" + Escaped(text) + "</code>";
}

std::string LinkTo(const std::string& address, const std::string& content) {
  return "<a href=\"" + Escaped(automation::FromUtf8(address)) + "\">" + content + "</a>";
}

std::string Day(automation::Date date) {
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

std::string RevisionNumber(float revision) {
  return revision == 0 ? "" : Escaped(automation::NumberText(revision));
}

Table::Table(std::string id, const std::string& caption, const std::vector<std::string>& columns)
    : id_(std::move(id)), caption_(caption) {
  for (const std::string& column : columns) head_ += Element("th", column, " scope=\"col\"");
}

void Table::AddRow(const std::vector<std::string>& cells, const std::string& id) {
  std::string row = Element("th", cells[0], " scope=\"row\"");
  for (size_t i = 1; i < cells.size(); ++i) row += Element("td", cells[i]);
  body_ += Element("tr", row, id.empty() ? "" : " id=\"" + id + "\"") + "\n";
}

std::string Table::Html() const {
  const std::string name = id_ + "-caption";
  return Element(
             "div",
             Element("table", Element("caption", caption_, " id=\"" + name + "\"") +
                                  Element("thead", Element("tr", head_)) + Element("tbody", body_)),
             " class=\"table\" role=\"group\" tabindex=\"0\" aria-labelledby=\"" + name + "\"") +
         "\n";
}

std::string SectionBegin(std::string_view id, std::string_view heading) {
  const std::string name = std::string(id) + "-heading";
  return "<section id=\"" + std::string(id) + "\" aria-labelledby=\"" + name + "\">\n" +
         Element("h2", std::string(heading), " id=\"" + name + "\"") + "\n";
}

std::string PageBegin(const char* language, const std::string& title, std::string_view style,
                      std::string_view script) {
  return "<!DOCTYPE html>\n<html lang=\"" + std::string(language) +
         "\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
         "img-src data:; style-src " +
         Named(style) + "; script-src " + Named(script) +
         "; base-uri 'none'; form-action 'none'\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n"
         "<meta name=\"generator\" content=\"VNDoc6\">\n" +
         Element("title", title) + "\n" + Element("style", std::string(style)) +
         "\n</head>\n<body>\n";
}

std::string PageEnd(std::string_view script) {
  return Element("script", std::string(script)) + "\n</body>\n</html>\n";
}

}  // namespace vndoc6::drawing
