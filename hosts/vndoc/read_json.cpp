// Documents from JSON.
#include "document_json.h"
#include "json_reader.h"
#include "vndoc6/content/restore.h"

namespace vndoc {

namespace {

class Restoring : public ContentSink {
 public:
  explicit Restoring(vnDocument& document) : restore_(document) {}

  void Begin(const ContentMember& part) override { restore_.Begin(part); }
  void BeginMember() override { restore_.BeginMember(); }
  void End() override { restore_.End(); }
  void Value(const ContentMember& member, const Variant& value, int32_t index) override {
    restore_.Value(member, value, index);
  }
  void Finish() { restore_.Finish(); }

 private:
  vndoc6::Restore restore_;
};

}  // namespace

Ref<vnDocument> DocumentFromJson(std::istream& json) {
  auto document = vndoc6::automation::Make<vnDocument>();
  Restoring restoring(*document);
  ReadJson(json, vnDocument::classInfo(), restoring);
  restoring.Finish();
  return document;
}

}  // namespace vndoc
