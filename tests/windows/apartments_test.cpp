// Hosts with several apartments, each with documents of its own.
#include <latch>
#include <set>
#include <thread>

#include "com/host_for_tests.h"
#include "tests/windows/server.h"

#include "VNDoc6.h"

namespace vndoc6::com {
namespace {

using Keys = std::vector<std::wstring>;

Keys KeysOf(const std::vector<ComPtr<_vnStep>>& steps) {
  Keys keys;
  for (const auto& step : steps) {
    BSTR key = nullptr;
    if (step) step->get_Key(&key);
    keys.push_back(TakeString(key));
  }
  return keys;
}

class ApartmentsTest : public ServerTest {
 protected:
  struct Work {
    Keys made, loaded;
  };

  // What one apartment does: steps as fast as it can, and everything else that it shares with the
  // others.
  Work MakeAndLoad(const std::wstring& file, int32_t steps) const {
    const auto document = server_.Create("vnDocument").As<_vnDocument>();
    std::vector<ComPtr<_vnStep>> made(static_cast<size_t>(steps));
    for (auto& step : made) document->NewStep(nullptr, nullptr, step.Receive());
    const ComPtr<IDispatch> last = made.back().As<IDispatch>();
    Put(Get(Get(last, L"Figure").value.Object(), L"Font").value.Object(), L"Bold", true);
    Call(Get(document.As<IDispatch>(), L"Details").value.Object(), L"NewRevision", {L"today"});
    Call(document.As<IDispatch>(), L"SaveAs", {file.c_str()});
    const auto copy = server_.Create("vnDocument");
    Call(copy, L"Load", {file.c_str(), L""});
    std::vector<ComPtr<_vnStep>> loaded;
    for (int32_t i = 1; i <= steps; ++i) {
      loaded.push_back(Get(copy, L"Steps", {i}).value.Object().As<_vnStep>());
    }
    return {KeysOf(made), KeysOf(loaded)};
  }
};

TEST_F(ApartmentsTest, TwoWorkAtOnceAndLoseNothing) {
  constexpr int32_t kSteps = 40000;
  wchar_t folder[MAX_PATH];
  const std::wstring stem =
      std::wstring(folder, GetTempPathW(MAX_PATH, folder)) + L"vndoc6 apartment ";
  std::latch ready(2);
  Work works[2];
  std::vector<std::thread> apartments;
  for (int32_t number = 0; number < 2; ++number) {
    apartments.emplace_back([&, number] {
      const std::wstring file = stem + std::to_wstring(number) + L".vn6";
      OleInitialize(nullptr);
      ready.arrive_and_wait();
      works[number] = MakeAndLoad(file, kSteps);
      OleUninitialize();
      DeleteFileW(file.c_str());
    });
  }
  for (std::thread& apartment : apartments) apartment.join();
  std::set<std::wstring> keys;
  for (const Work& work : works) {
    EXPECT_TRUE(work.loaded == work.made);
    keys.insert(work.made.begin(), work.made.end());
  }
  EXPECT_EQ(keys.size(), 2u * kSteps);
}

}  // namespace
}  // namespace vndoc6::com
