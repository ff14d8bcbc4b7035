#include "vndoc6/automation/services.h"

#include <map>
#include <mutex>
#include <utility>

#include "automation/local_date.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::automation {
namespace {

class PlainPicture : public Picture {
 public:
  explicit PlainPicture(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}
  std::vector<uint8_t> Bytes() const override { return bytes_; }

 private:
  std::vector<uint8_t> bytes_;
};

Date Today() {
  constexpr std::chrono::sys_days kFirst = std::chrono::year(1899) / 12 / 30;
  return {static_cast<double>((std::chrono::sys_days(LocalToday()) - kFirst).count())};
}

using Factories = std::map<Text, ObjectFactory>;

// What all threads share. Nobody's code runs while it is locked: what is found is called as a copy,
// and what was replaced goes afterwards.
struct Shared {
  std::mutex mutex;
  Services services{&MakePlainFont,
                    [](std::vector<uint8_t> bytes) { return MakePlainPicture(std::move(bytes)); },
                    [](TextView) { return Ref<Object>(); }, &Today};
  Factories factories;
};
Shared& shared() {
  static Shared shared;
  return shared;
}

ObjectFactory FactoryOf(TextView programmatic_id) {
  const Text name = FoldCase(programmatic_id);
  const std::lock_guard lock(shared().mutex);
  const auto found = shared().factories.find(name);
  return found != shared().factories.end() ? found->second : ObjectFactory();
}

}  // namespace

Ref<Picture> MakePlainPicture(std::vector<uint8_t> bytes) {
  return Make<PlainPicture>(std::move(bytes));
}

const Services services() {
  const std::lock_guard lock(shared().mutex);
  return shared().services;
}

void UseServices(Services services) {
  const std::lock_guard lock(shared().mutex);
  std::swap(shared().services, services);
}

void RegisterFactory(TextView programmatic_id, ObjectFactory factory) {
  Text name = FoldCase(programmatic_id);
  Factories::node_type taken_back;
  const std::lock_guard lock(shared().mutex);
  if (factory) {
    std::swap(shared().factories[std::move(name)], factory);
  } else {
    taken_back = shared().factories.extract(name);
  }
}

Ref<Object> TryCreateObject(TextView programmatic_id) {
  if (const ObjectFactory factory = FactoryOf(programmatic_id)) return factory();
  return services().create_object(programmatic_id);
}

Ref<Object> CreateObject(TextView programmatic_id) {
  Ref<Object> object = TryCreateObject(programmatic_id);
  if (!object) {
    throw Error(kCannotCreateObject, u"Can't create object \"" + Text(programmatic_id) + u"\".");
  }
  return object;
}

}  // namespace vndoc6::automation
