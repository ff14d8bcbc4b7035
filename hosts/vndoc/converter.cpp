#include "converter.h"

#include <fstream>

#include "command.h"
#include "one_line.h"
#include "process.h"
#include "scratch_folder.h"

namespace vndoc {

namespace {

std::string Convert(const std::string& kind, const std::vector<std::string>& files,
                    const std::string& input) {
  std::vector<std::string> arguments = {"--unlimited", "--format=" + kind};
  arguments.insert(arguments.end(), files.begin(), files.end());
  auto ended = RunProgram("rsvg-convert", arguments, input);
  if (!ended) {
    throw Failure("no converter for " + kind +
                  " is installed: rsvg-convert is missing (Debian: librsvg2-bin)");
  }
  if (ended->status != 0) {
    std::string reason = OneLine(vndoc6::automation::FromUtf8(ended->errors));
    while (reason.ends_with(' ')) reason.pop_back();
    throw Failure("rsvg-convert can't convert this chart" + (reason.empty() ? "" : ": " + reason));
  }
  return std::move(ended->output);
}

}  // namespace

std::string ConvertSvg(const std::string& svg, const std::string& kind) {
  return Convert(kind, {}, svg);
}

std::string ConvertSheets(const std::vector<std::string>& sheets) {
  const ScratchFolder folder;
  std::vector<std::string> names;
  for (size_t i = 0; i < sheets.size(); ++i) {
    names.push_back(
        vndoc6::automation::ToUtf8(folder.Name(("sheet" + std::to_string(i) + ".svg").c_str())));
    std::ofstream file(names.back(), std::ios::binary);
    if (!file.write(sheets[i].data(), static_cast<std::streamsize>(sheets[i].size()))) {
      throw Failure("can't write " + names.back());
    }
  }
  return Convert("pdf", names, "");
}

}  // namespace vndoc
