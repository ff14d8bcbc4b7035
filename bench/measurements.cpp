#include "bench/measurements.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

#include "bench/document_side.h"
#include "bench/json_side.h"
#include "bench/protobuf_side.h"
#include "bench/sqlite_side.h"
#include "bench/xml_side.h"
#include "platform/file_system.h"

namespace vndoc6::bench {
namespace {

using automation::Ref;

// --- Measuring ---

double Now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// What `operation()` gives lives until its memory has been counted.
template <class Operation>
Measured Time(Operation&& operation, clockid_t clock = CLOCK_PROCESS_CPUTIME_ID) {
  const size_t before = HeapInUse();
  const double start = Now(clock);
  const auto result = operation();
  benchmark::DoNotOptimize(&result);
  benchmark::ClobberMemory();
  const double end = Now(clock);
  return {end - start, HeapInUse() - before};
}

void Check(bool done, const char* what) {
  if (!done) throw std::runtime_error(what);
}

// --- Files ---

std::string FileOf(size_t steps, const char* ending) {
  return BenchFolder() + "/" + std::to_string(steps) + ending;
}

std::string ReadBytes(const std::string& file) {
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  Check(stream.good(), "no such file");
  std::string bytes(static_cast<size_t>(stream.tellg()), '\0');
  stream.seekg(0);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

void WriteBytes(const std::string& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  Check(stream.good(), "could not write");
}

Ref<vnDocument> LoadDocument(size_t steps) {
  const auto document = automation::Make<vnDocument>();
  const std::filesystem::path file = FileOf(steps, ".vn6");
  Check(document->Load(file.u16string(), {}), "could not load");
  return document;
}

constexpr XmlForm kAttributes = XmlForm::kAttributes;
constexpr XmlForm kElements = XmlForm::kElements;

std::string XmlFileOf(size_t steps, XmlForm form) {
  return FileOf(steps, form == kAttributes ? ".attributes.xml" : ".xml");
}

std::unique_ptr<pugi::xml_document> LoadXml(size_t steps, XmlForm form) {
  auto document = std::make_unique<pugi::xml_document>();
  Check(document->load_file(XmlFileOf(steps, form).c_str()), "could not parse");
  return document;
}

// --- Measurements ---

Measured Prepare(size_t steps) {
  const Ref<vnDocument> document = BuildDocument(MakeContent<Text>(steps));
  const std::filesystem::path file = FileOf(steps, ".vn6");
  Check(document->SaveAs(file.u16string()), "could not save");
  const Content<std::string> content = MakeContent<std::string>(steps);
  for (const XmlForm form : {kAttributes, kElements}) {
    pugi::xml_document xml;
    BuildXml(content, form, xml);
    WriteBytes(XmlFileOf(steps, form), XmlBytes(xml));
  }
  WriteBytes(FileOf(steps, ".json"), JsonBytes(content));
  WriteBytes(FileOf(steps, ".protobuf"), ProtobufContent(content).Bytes());
  WriteDatabase(FileOf(steps, ".db"), content);
  return {};
}

Measured LoadOurs(size_t steps) {
  return Time([=] { return LoadDocument(steps); });
}
template <XmlForm form>
Measured LoadXmlDom(size_t steps) {
  return Time([=] { return LoadXml(steps, form); });
}

Measured ReadOurs(size_t steps) {
  return Time([=] {
    const Ref<vnDocument> document = LoadDocument(steps);
    Check(ReadDocument(*document) != 0, "nothing was read");
    return document;
  });
}
template <XmlForm form>
Measured ReadXmlStructs(size_t steps) {
  return Time([=] { return ReadXml(*LoadXml(steps, form), form); });
}
Measured ReadJson(size_t steps) {
  return Time([=] {
    std::string bytes = ReadBytes(FileOf(steps, ".json"));
    Check(ParseAndWalkJson(bytes) != 0, "nothing was read");
    return bytes;
  });
}
Measured ReadProtobuf(size_t steps) {
  return Time([=] {
    auto content = std::make_unique<ProtobufContent>(ReadBytes(FileOf(steps, ".protobuf")));
    Check(content->Walk() != 0, "nothing was read");
    return content;
  });
}
Measured ReadSqlite(size_t steps) {
  return Time([=] {
    const size_t sum = ReadDatabase(FileOf(steps, ".db"));
    Check(sum != 0, "nothing was read");
    return sum;
  });
}

Measured SaveKeptOurs(size_t steps) {
  const Ref<vnDocument> document = LoadDocument(steps);
  return Time([&] { return DocumentBytes(*document); });
}
template <XmlForm form>
Measured SaveXml(size_t steps) {
  const auto document = LoadXml(steps, form);
  return Time([&] { return XmlBytes(*document); });
}
Measured SaveChangedOurs(size_t steps) {
  const Ref<vnDocument> document = LoadDocument(steps);
  ReadDocument(*document);
  ChangeDocument(*document);
  return Time([&] { return DocumentBytes(*document); });
}
template <XmlForm form>
Measured SaveChangedXml(size_t steps) {
  const auto document = LoadXml(steps, form);
  ChangeXml(*document, form);
  return Time([&] { return XmlBytes(*document); });
}

Measured SaveProtobuf(size_t steps) {
  const ProtobufContent content(ReadBytes(FileOf(steps, ".protobuf")));
  return Time([&] { return content.Bytes(); });
}

Measured SaveDurably(size_t steps, const char* ending) {
  const Ref<vnDocument> document = LoadDocument(steps);
  const std::filesystem::path file = FileOf(steps, ending);
  return Time(
      [&] {
        Check(document->SaveAs(file.u16string()), "could not save");
        return 0;
      },
      CLOCK_MONOTONIC);
}
Measured SaveAsNewFile(size_t steps) {
  std::filesystem::remove(FileOf(steps, "-new.vn6"));
  return SaveDurably(steps, "-new.vn6");
}
Measured SaveOverFile(size_t steps) { return SaveDurably(steps, ".vn6"); }
Measured WriteAndFlush(size_t steps) {
  const std::string bytes = ReadBytes(FileOf(steps, ".vn6"));
  const std::string name = FileOf(steps, ".limit");
  std::filesystem::remove(name);
  return Time(
      [&] {
        const int file = open(name.c_str(), O_WRONLY | O_CREAT, 0666);
        const ssize_t written = write(file, bytes.data(), bytes.size());
        const bool done = written == static_cast<ssize_t>(bytes.size()) && fsync(file) == 0;
        Check(close(file) == 0 && done, "could not write");
        return 0;
      },
      CLOCK_MONOTONIC);
}

Measured CreateOurs(size_t steps) {
  const Content<Text> content = MakeContent<Text>(steps);
  return Time([&] { return BuildDocument(content); });
}
template <XmlForm form>
Measured CreateXml(size_t steps) {
  const Content<std::string> content = MakeContent<std::string>(steps);
  return Time([&] {
    auto document = std::make_unique<pugi::xml_document>();
    BuildXml(content, form, *document);
    return document;
  });
}

Measured CopyBytes(size_t steps) {
  const std::string bytes = ReadBytes(FileOf(steps, ".vn6"));
  return Time([&] {
    auto copy = std::make_unique_for_overwrite<char[]>(bytes.size());
    std::memcpy(copy.get(), bytes.data(), bytes.size());
    benchmark::DoNotOptimize(copy.get());
    benchmark::ClobberMemory();
    return copy;
  });
}
Measured ReadFileOnly(size_t steps) {
  const std::filesystem::path file = FileOf(steps, ".vn6");
  return Time([&] { return platform::ReadWholeFile(file.u16string()); });
}

Measured FileSize(size_t steps) { return {0, std::filesystem::file_size(FileOf(steps, ".vn6"))}; }
template <XmlForm form>
Measured XmlFileSize(size_t steps) {
  return {0, std::filesystem::file_size(XmlFileOf(steps, form))};
}
Measured ProtobufFileSize(size_t steps) {
  return {0, std::filesystem::file_size(FileOf(steps, ".protobuf"))};
}
Measured OwnCharactersInFile(size_t steps) {
  return {0, OwnCharacters(ReadBytes(FileOf(steps, ".vn6")))};
}

const std::map<std::string, Measured (*)(size_t)>& Measurements() {
  static const std::map<std::string, Measured (*)(size_t)> measurements = {
      {kPrepare, &Prepare},
      {"load", &LoadOurs},
      {"load-pugixml", &LoadXmlDom<kElements>},
      {"load-attributes", &LoadXmlDom<kAttributes>},
      {"read", &ReadOurs},
      {"read-pugixml", &ReadXmlStructs<kElements>},
      {"read-attributes", &ReadXmlStructs<kAttributes>},
      {"read-rapidjson", &ReadJson},
      {"read-protobuf", &ReadProtobuf},
      {"read-sqlite", &ReadSqlite},
      {"save-kept", &SaveKeptOurs},
      {"save-pugixml", &SaveXml<kElements>},
      {"save-attributes", &SaveXml<kAttributes>},
      {"save-changed", &SaveChangedOurs},
      {"save-changed-pugixml", &SaveChangedXml<kElements>},
      {"save-changed-attributes", &SaveChangedXml<kAttributes>},
      {"save-protobuf", &SaveProtobuf},
      {"save-new-file", &SaveAsNewFile},
      {"save-over-file", &SaveOverFile},
      {"write-and-flush", &WriteAndFlush},
      {"create", &CreateOurs},
      {"create-pugixml", &CreateXml<kElements>},
      {"create-attributes", &CreateXml<kAttributes>},
      {"memcpy", &CopyBytes},
      {"read-file", &ReadFileOnly},
      {"file-size", &FileSize},
      {"file-size-pugixml", &XmlFileSize<kElements>},
      {"file-size-attributes", &XmlFileSize<kAttributes>},
      {"file-size-protobuf", &ProtobufFileSize},
      {"own-characters", &OwnCharactersInFile},
  };
  return measurements;
}

}  // namespace

Measured Measure(const std::string& name, size_t steps) {
  const auto found = Measurements().find(name);
  Check(found != Measurements().end(), "no such measurement");
  return found->second(steps);
}

std::vector<std::string> MeasurementNames() {
  std::vector<std::string> names;
  for (const auto& [name, measure] : Measurements()) {
    if (name != kPrepare) names.push_back(name);
  }
  return names;
}

}  // namespace vndoc6::bench
