#include "automation/services.h"

#include <ctime>
#include <map>

#include "automation/error.h"

namespace vndoc6::automation {
namespace {

class PlainPicture : public Picture {
 public:
  explicit PlainPicture(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}
  std::vector<uint8_t> Bytes() const override { return bytes_; }

 private:
  std::vector<uint8_t> bytes_;
};

Date LocalToday() {
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  if (local == nullptr) throw Error(kInvalidCall);
  Text text;
  const auto append = [&](int value) {
    if (value < 10) text += u'0';
    text += NumberText(static_cast<int32_t>(value));
  };
  append(local->tm_year + 1900);
  text += u'-';
  append(local->tm_mon + 1);
  text += u'-';
  append(local->tm_mday);
  return Variant(text).ToDate();
}

using Factories = std::map<Text, ObjectFactory>;
Factories& factories() {
  static Factories all;
  return all;
}

}  // namespace

Ref<Picture> MakePlainPicture(std::vector<uint8_t> bytes) {
  return Make<PlainPicture>(std::move(bytes));
}

Services& services() {
  static Services current{
      &MakePlainFont, [](std::vector<uint8_t> bytes) { return MakePlainPicture(std::move(bytes)); },
      [](TextView) { return Ref<Object>(); }, &LocalToday};
  return current;
}

void RegisterFactory(TextView programmatic_id, ObjectFactory factory) {
  Text name = FoldCase(programmatic_id);
  if (factory) {
    factories()[std::move(name)] = std::move(factory);
  } else {
    factories().erase(name);
  }
}

Ref<Object> TryCreateObject(TextView programmatic_id) {
  const auto found = factories().find(FoldCase(programmatic_id));
  if (found != factories().end()) {
    // A copy: creating may register or take back factories.
    const ObjectFactory factory = found->second;
    return factory();
  }
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
