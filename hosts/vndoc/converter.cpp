#include "converter.h"

#include "command.h"
#include "process.h"

namespace vndoc {

std::string PngOfSvg(const std::string& svg) {
  auto ended = RunProgram("rsvg-convert", {"--unlimited", "--zoom=2"}, svg);
  if (!ended) {
    throw Failure(
        "no converter for PNG is installed: rsvg-convert is missing (Debian: librsvg2-bin)");
  }
  if (ended->status != 0) throw Failure("rsvg-convert can't convert this chart");
  return std::move(ended->output);
}

}  // namespace vndoc
