#include "bench/json_side.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <type_traits>

#include "bench/rows.h"

namespace vndoc6::bench {
namespace {

using String = std::string;
using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void Put(Writer& writer, const String& value) {
  writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
}
void Put(Writer& writer, bool value) { writer.Bool(value); }
template <class T>
void Put(Writer& writer, T value) {
  if constexpr (std::is_floating_point_v<T>) {
    writer.Double(static_cast<double>(value));
  } else {
    writer.Int(static_cast<int>(value));
  }
}

template <class Table, class Struct>
void PutRows(const Table& table, Writer& writer, const Struct& values) {
  ForEachRow(table, [&](const auto& row) {
    writer.Key(row.key);
    Put(writer, values.*row.member);
  });
}

template <class Keys>
void PutEmpty(const Keys& keys, Writer& writer) {
  for (const char* const key : keys) {
    writer.Key(key);
    writer.String("");
  }
}

void PutStep(Writer& writer, const StepContent<String>& step) {
  writer.StartObject();
  PutRows(kStepRows<String>, writer, step);
  PutEmpty(kEmptyInStep, writer);
  writer.Key("Fig");
  writer.StartObject();
  PutRows(kFigureRows<String>, writer, step.figure);
  PutRows(kFontRows<String>, writer, step.figure);
  PutEmpty(kEmptyInFigure, writer);
  writer.EndObject();
  writer.Key("T");
  writer.StartArray();
  for (const TaskContent<String>& task : step.tasks) {
    writer.StartObject();
    PutRows(kTaskRows<String>, writer, task);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
}

void PutLink(Writer& writer, const LinkContent<String>& link) {
  writer.StartObject();
  PutRows(kLinkRows<String>, writer, link);
  PutEmpty(kEmptyInLink, writer);
  writer.Key("L");
  writer.StartObject();
  PutRows(kLineRows<String>, writer, link.line);
  PutRows(kFontRows<String>, writer, link.line);
  PutEmpty(kEmptyInLine, writer);
  writer.EndObject();
  writer.EndObject();
}

size_t Walk(const rapidjson::Value& value) {
  size_t sum = 0;
  if (value.IsObject()) {
    for (const auto& member : value.GetObject()) sum += Walk(member.value);
  } else if (value.IsArray()) {
    for (const auto& element : value.GetArray()) sum += Walk(element);
  } else if (value.IsString()) {
    sum = value.GetStringLength() + static_cast<unsigned char>(value.GetString()[0]);
  } else if (value.IsNumber()) {
    sum = static_cast<size_t>(static_cast<int64_t>(value.GetDouble()));
  } else {
    sum = value.IsTrue() ? 1 : 0;
  }
  return sum;
}

}  // namespace

std::string JsonBytes(const Content<String>& content) {
  rapidjson::StringBuffer buffer;
  Writer writer(buffer);
  writer.StartObject();
  writer.Key("S");
  writer.StartArray();
  for (const StepContent<String>& step : content.steps) PutStep(writer, step);
  writer.EndArray();
  writer.Key("LK");
  writer.StartArray();
  for (const LinkContent<String>& link : content.links) PutLink(writer, link);
  writer.EndArray();
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

size_t ParseAndWalkJson(std::string& bytes) {
  rapidjson::Document document;
  document.ParseInsitu(bytes.data());
  return document.HasParseError() ? 0 : Walk(document);
}

}  // namespace vndoc6::bench
