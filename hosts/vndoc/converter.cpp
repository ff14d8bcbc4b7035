#include "converter.h"

#include "command.h"
#include "one_line.h"
#include "process.h"

namespace vndoc {

std::string ConvertSvg(const std::string& svg, const std::string& kind) {
  auto ended = RunProgram("rsvg-convert", {"--unlimited", "--format=" + kind}, svg);
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

}  // namespace vndoc
