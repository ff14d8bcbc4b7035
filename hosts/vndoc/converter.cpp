#include "converter.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "command.h"

namespace vndoc {
namespace {

constexpr const char* kNoConverter =
    "no converter for PNG is installed: rsvg-convert is missing (Debian: librsvg2-bin)";

#ifdef _WIN32
constexpr const char* kNowhere = "NUL";
#else
constexpr const char* kNowhere = "/dev/null";
#endif

// A folder for the converter's files, gone with this object. Its name holds digits only, so that
// it needs no care in a command.
class WorkFolder {
 public:
  WorkFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("vndoc-" + std::to_string(random()) + std::to_string(random()));
    if (!std::filesystem::create_directory(path_)) {
      throw Failure(path_.string() + ": already there");
    }
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }
  ~WorkFolder() {
    std::error_code ignored;  // what is left of a temporary folder harms nobody
    std::filesystem::remove_all(path_, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  std::filesystem::path Path(const char* name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

bool Succeeds(const std::string& command) {
  return std::system((command + " >" + kNowhere + " 2>" + kNowhere).c_str()) == 0;  // NOLINT
}

std::string Quoted(const std::filesystem::path& path) { return "\"" + path.string() + "\""; }

}  // namespace

std::string PngOfSvg(const std::string& svg) {
  if (!Succeeds("rsvg-convert --version")) throw Failure(kNoConverter);
  try {
    const WorkFolder folder;
    const auto source = folder.Path("chart.svg");
    const auto target = folder.Path("chart.png");
    std::ofstream(source, std::ios::binary) << svg;
    if (!Succeeds("rsvg-convert --unlimited --zoom=2 --output=" + Quoted(target) + " " +
                  Quoted(source))) {
      throw Failure("rsvg-convert can't convert this chart");
    }
    std::ifstream png(target, std::ios::binary);
    return {std::istreambuf_iterator<char>(png), {}};
  } catch (const std::filesystem::filesystem_error& error) {
    throw Failure(error.what());
  }
}

}  // namespace vndoc
