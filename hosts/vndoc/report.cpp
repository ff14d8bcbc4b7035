// vndoc report: a document as one page of HTML, or several as a site.
#include "report_folder.h"

#include <fstream>
#include <map>
#include <memory>
#include <ostream>
#include <vector>

#include "command.h"
#include "vndoc6/drawing.h"

namespace vndoc {
namespace {

namespace fs = std::filesystem;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::ToUtf8;
using vndoc6::drawing::HtmlOptions;
using vndoc6::drawing::Language;

struct ReportOptions {
  std::vector<std::string> files;
  std::string output;
  Language language = Language::kEnglish;
};

fs::path PathOf(const std::string& file) { return fs::path(FromUtf8(file)); }

Language LanguageOf(const std::string& code) {
  if (code == "en") return Language::kEnglish;
  if (code == "de") return Language::kGerman;
  if (code == "fr") return Language::kFrench;
  throw Failure(code + ": a language is en, de or fr");
}

bool NamesAFolder(const std::string& output) {
  return output.ends_with('/') || output.ends_with('\\') || fs::is_directory(PathOf(output));
}

// A page that names the maker of reports near its beginning.
bool IsReport(const fs::path& page) {
  std::string beginning(2048, '\0');
  std::ifstream(page, std::ios::binary)
      .read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
  return beginning.find("<meta name=\"generator\" content=\"VNDoc6\">") != beginning.npos;
}

// The other document's report, where it lies beside this one.
Text ReportBeside(const fs::path& page, const fs::path& document, const Text& name) {
  if (name.empty()) return {};
  const fs::path report = NamedFrom(document, name).stem() += ".html";
  if (!IsReport(page.parent_path() / report)) return {};
  return report.generic_u16string();
}

void WriteOne(Context& context, const ReportOptions& options) {
  const fs::path file = PathOf(options.files.front());
  const fs::path page = PathOf(options.output);
  HtmlOptions html;
  html.language = options.language;
  if (options.output != "-") {
    html.folder = SeenFrom(fs::absolute(page).parent_path(), fs::absolute(file).parent_path());
    html.report_of = [&](const Text& name) { return ReportBeside(page, file, name); };
  }
  const auto document = Load(context, options.files.front());
  WriteOutput(context, options.output, vndoc6::drawing::Html(*document, html));
}

// The documents that can be loaded; what is wrong with another is told, and it is left out.
std::map<std::string, Ref<vnDocument>> LoadAll(Context& context, const ReportOptions& options) {
  std::map<std::string, Ref<vnDocument>> documents;
  for (const std::string& file : options.files) {
    try {
      documents.emplace(file, Load(context, file));
    } catch (const Failure& failure) {
      context.err << "vndoc: " << failure.what() << '\n';
      context.status = kFailed;
    }
  }
  return documents;
}

void WriteSite(Context& context, const ReportOptions& options) {
  const auto documents = LoadAll(context, options);
  if (documents.empty()) return;
  const fs::path folder = PathOf(options.output);
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw Failure(options.output + ": " + error.message());
  ReportFolder reports;
  std::map<std::string, Text> report_names;
  for (const auto& [file, document] : documents) report_names[file] = reports.Add(PathOf(file));
  std::vector<vndoc6::drawing::SiteEntry> entries;
  for (const auto& [file, document] : documents) {
    const fs::path path = PathOf(file);
    HtmlOptions html;
    html.language = options.language;
    html.index = u"index.html";
    html.folder = SeenFrom(folder, fs::absolute(path).parent_path());
    html.report_of = [&](const Text& name) { return reports.ReportOf(path, name); };
    const Text& report = report_names[file];
    WriteOutput(context, ToUtf8((folder / report).u16string()),
                vndoc6::drawing::Html(*document, html));
    entries.push_back(vndoc6::drawing::ReadSiteEntry(*document, report, html.report_of));
  }
  WriteOutput(context, ToUtf8((folder / "index.html").u16string()),
              vndoc6::drawing::SiteIndex(entries, options.language));
  context.out << "Wrote " << entries.size() << (entries.size() == 1 ? " report" : " reports")
              << " and " << ToUtf8((folder / "index.html").generic_u16string()) << '\n';
}

}  // namespace

void AddReport(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("report", "Writes documents as pages of HTML");
  const auto options = std::make_shared<ReportOptions>();
  command->add_option("FILE", options->files, "The document, or several")->required();
  command
      ->add_option("-o,--output", options->output,
                   "The page to write, - for standard output; or a folder for a site")
      ->required();
  command->add_flag("--force", context.force, "Replace a file of another kind");
  command
      ->add_option_function<std::string>(
          "--language",
          [options](const std::string& code) { options->language = LanguageOf(code); },
          "What a page says by itself: en, de or fr")
      ->type_name("LANGUAGE");
  command->footer(
      "Several documents, or a folder (a name that ends in a slash, or one that is there), make a "
      "site:\n"
      "a page for each document, and index.html with a search and a map of the jumps. Jumps lead "
      "to\n"
      "the other document's report where it lies in the same folder, otherwise to the document.");
  command->callback([options, &context] {
    if (options->files.size() > 1 && !NamesAFolder(options->output) &&
        fs::exists(PathOf(options->output))) {
      throw Failure(options->output + ": several documents go into a folder");
    }
    const bool site = options->files.size() > 1 || NamesAFolder(options->output);
    site ? WriteSite(context, *options) : WriteOne(context, *options);
  });
}

}  // namespace vndoc
