#include "bench/fresh_process.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "bench/measurements.h"

namespace vndoc6::bench {
namespace {

constexpr const char* kFlag = "--measure";

// A folder of this process, or the one that it was given.
struct Folder {
  std::string name;
  bool made = false;
  ~Folder() {
    if (!made) return;
    std::error_code ignored;  // nothing depends on the folder any more
    std::filesystem::remove_all(name, ignored);
  }
};
Folder& TheFolder() {
  static Folder folder;
  return folder;
}

}  // namespace

const std::string& BenchFolder() {
  Folder& folder = TheFolder();
  if (folder.name.empty()) {
    std::string name = (std::filesystem::temp_directory_path() / "vndoc6-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the files");
    folder.name = name;
    folder.made = true;
  }
  return folder.name;
}

Measured MeasureInFreshProcess(const std::string& name, size_t steps) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string command = "'" + program + "' " + kFlag + " " + name + " " +
                              std::to_string(steps) + " '" + BenchFolder() + "'";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
  Measured measured;
  if (!pipe || fscanf(pipe.get(), "%lf %zu", &measured.seconds, &measured.bytes) != 2) {
    throw std::runtime_error("failed: " + command);
  }
  return measured;
}

bool RunAsFreshProcess(int argc, char** argv, int& exit_code) {
  if (argc != 5 || argv[1] != std::string(kFlag)) return false;
  TheFolder().name = argv[4];
  try {
    const Measured measured = Measure(argv[2], std::stoul(argv[3]));
    std::printf("%.9f %zu\n", measured.seconds, measured.bytes);
    exit_code = 0;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "%s: %s\n", argv[2], fault.what());
    exit_code = 1;
  }
  return true;
}

}  // namespace vndoc6::bench
