// Stands between the library and the system's file calls while it exists: a test is asked before
// each call and told after it.
#pragma once

#include <functional>

#include "platform/file_calls.h"

namespace vndoc6::testing {

class HookedFileCalls {
 public:
  // False lets the call fail, with the errno that was set.
  using Before = std::function<bool(const char* call)>;
  using After = std::function<void(const char* call)>;

  explicit HookedFileCalls(Before before, After after = {})
      : real_(platform::file_calls()), before_(std::move(before)), after_(std::move(after)) {
    platform::FileCalls& calls = platform::file_calls();
    Hook(calls.open, real_.open, "open");
    Hook(calls.fstat, real_.fstat, "fstat");
    Hook(calls.stat, real_.stat, "stat");
    Hook(calls.readlink, real_.readlink, "readlink");
    Hook(calls.read, real_.read, "read");
    Hook(calls.write, real_.write, "write");
    Hook(calls.fchmod, real_.fchmod, "fchmod");
    Hook(calls.fsync, real_.fsync, "fsync");
    Hook(calls.rename, real_.rename, "rename");
    Hook(calls.unlink, real_.unlink, "unlink");
    calls.close = [this](int file) {
      const bool works = before_("close");
      // Whatever it reports, the system closes the file.
      const int result = real_.close(file);
      if (!works) return -1;
      if (after_) after_("close");
      return result;
    };
  }
  ~HookedFileCalls() { platform::file_calls() = real_; }
  HookedFileCalls(const HookedFileCalls&) = delete;
  HookedFileCalls& operator=(const HookedFileCalls&) = delete;

 private:
  template <class Result, class... Params>
  void Hook(std::function<Result(Params...)>& call, const std::function<Result(Params...)>& real,
            const char* name) {
    call = [this, &real, name](Params... params) -> Result {
      if (!before_(name)) return -1;
      const Result result = real(params...);
      if (after_) after_(name);
      return result;
    };
  }

  const platform::FileCalls real_;
  Before before_;
  After after_;
};

}  // namespace vndoc6::testing
