#include "bench/protobuf_side.h"

#include <stdexcept>
#include <type_traits>

#include "bench/content.pb.h"
#include "bench/rows.h"

namespace vndoc6::bench {
namespace {

using String = std::string;
using google::protobuf::Message;

template <class T>
void Put(Message& message, int number, const T& value) {
  const auto* const field = message.GetDescriptor()->FindFieldByNumber(number);
  const auto* const reflection = message.GetReflection();
  if constexpr (std::is_same_v<T, String>) {
    reflection->SetString(&message, field, value);
  } else if constexpr (std::is_same_v<T, bool>) {
    reflection->SetBool(&message, field, value);
  } else if constexpr (std::is_same_v<T, float>) {
    reflection->SetFloat(&message, field, value);
  } else if constexpr (std::is_same_v<T, double>) {
    reflection->SetDouble(&message, field, value);
  } else {
    reflection->SetInt32(&message, field, static_cast<int32_t>(value));
  }
}

// The fields of a message are numbered as the rows of its tables follow each other.
template <class Struct, class... Tables>
void PutRows(Message& message, const Struct& values, const Tables&... tables) {
  int number = 0;
  const auto put = [&](const auto& row) { Put(message, ++number, values.*row.member); };
  (ForEachRow(tables, put), ...);
}

void PutStep(proto::Step& message, const StepContent<String>& step) {
  PutRows(message, step, kStepRows<String>);
  PutRows(*message.mutable_figure(), step.figure, kFigureRows<String>, kFontRows<String>);
  for (const auto& task : step.tasks) PutRows(*message.add_tasks(), task, kTaskRows<String>);
}

void PutLink(proto::Link& message, const LinkContent<String>& link) {
  PutRows(message, link, kLinkRows<String>);
  PutRows(*message.mutable_line(), link.line, kLineRows<String>, kFontRows<String>);
}

}  // namespace

struct ProtobufContent::Messages {
  proto::Procedure procedure;
};

ProtobufContent::ProtobufContent(const Content<String>& content)
    : messages_(std::make_unique<Messages>()) {
  for (const auto& step : content.steps) PutStep(*messages_->procedure.add_steps(), step);
  for (const auto& link : content.links) PutLink(*messages_->procedure.add_links(), link);
}

ProtobufContent::ProtobufContent(const String& bytes) : messages_(std::make_unique<Messages>()) {
  if (!messages_->procedure.ParseFromString(bytes)) throw std::runtime_error("no such content");
}

ProtobufContent::~ProtobufContent() = default;

// The size on the wire takes a look at every field.
size_t ProtobufContent::Walk() const { return messages_->procedure.ByteSizeLong(); }

String ProtobufContent::Bytes() const { return messages_->procedure.SerializeAsString(); }

}  // namespace vndoc6::bench
