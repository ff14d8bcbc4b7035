#include "json_reader.h"

#include <istream>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "command.h"
#include "json_values.h"
#include "vndoc6/automation/error.h"

namespace vndoc {

using nlohmann::json;
using vndoc6::automation::CallKind;
using vndoc6::automation::FromUtf8;

namespace {

constexpr const char* kObjectExpected = "an object is expected, in braces";
constexpr const char* kListExpected = "a list is expected, in brackets";
constexpr const char* kListRefused = "not a value: a list";

// What there is to read of a class, looked up by name once.
class ClassPlan {
 public:
  explicit ClassPlan(const ClassInfo& info)
      : info_(&info), member_class_(vndoc6::MemberClassOf(info)) {
    for (const ContentMember& content : vndoc6::ContentOf(info)) {
      members_.try_emplace(content.member->name, content);
    }
  }

  // The class of its members; null for one that is no collection.
  const ClassInfo* member_class() const { return member_class_; }
  // Null for what follows from the others.
  const ContentMember* Find(const std::string& name) const {
    const auto known = members_.find(name);
    if (known != members_.end()) return &known->second;
    const int32_t id = info_->FindMember(FromUtf8(name));
    if (id != vndoc6::automation::kNoMember && info_->Find(id, CallKind::kGet) != nullptr) {
      return nullptr;
    }
    throw Failure(std::string(info_->name()) + " has no " + name);
  }

 private:
  const ClassInfo* info_;
  const ClassInfo* member_class_;
  std::unordered_map<std::string, ContentMember> members_;
};

// A value that is an object in JSON, or a list in one: small ones, see json_values.h.
class ValueBuilder {
 public:
  // A JSON value makes room when it is made.
  ValueBuilder() noexcept(false) = default;
  ValueBuilder(const ValueBuilder&) = delete;
  ValueBuilder& operator=(const ValueBuilder&) = delete;

  bool is_open() const { return !open_.empty(); }
  void SetKey(std::string& key) { key_ = std::move(key); }
  void Open(json structure) {
    constexpr size_t kDeepest = 2;
    if (open_.size() == kDeepest) throw Failure("not a value");
    if (open_.empty()) {
      whole_ = std::move(structure);
      open_.push_back(&whole_);
    } else {
      open_.push_back(&Add(std::move(structure)));
    }
  }
  json& Add(json value) {
    json& structure = *open_.back();
    if (structure.is_object()) return structure[key_] = std::move(value);
    structure.push_back(std::move(value));
    return structure.back();
  }
  // Whether all of it is there.
  bool Close() {
    open_.pop_back();
    return open_.empty();
  }
  const json& whole() const { return whole_; }

 private:
  json whole_;
  std::vector<json*> open_;
  std::string key_;
};

// What the parser calls.
class Reader {
 public:
  Reader(const ClassInfo& info, ContentSink& sink) : info_(info), sink_(sink) {}

  bool null() { return Take(nullptr); }
  bool boolean(bool value) { return Take(value); }
  bool number_integer(int64_t value) { return Take(value); }
  bool number_unsigned(uint64_t value) { return Take(value); }
  bool number_float(double value, const std::string&) { return Take(value); }
  bool string(std::string& value) { return Take(std::move(value)); }
  bool binary(std::vector<uint8_t>&) { return false; }  // JSON has none
  bool start_object(size_t) { return Open(json::object()); }
  bool start_array(size_t) { return Open(json::array()); }
  bool end_object() { return Close(); }
  bool end_array() { return Close(); }

  bool key(std::string& key) {
    if (passed_over_ > 0) return true;
    if (value_.is_open()) {
      value_.SetKey(key);
      return true;
    }
    return WithPlace([&] {
      Level& level = levels_.back();
      level.key.clear();
      level.member = level.plan->Find(key);
      level.key = std::move(key);
    });
  }

  bool parse_error(size_t position, const std::string&, const nlohmann::json::exception&) {
    throw Failure("not JSON, at byte " + std::to_string(position));
  }

 private:
  enum class Kind { kObject, kList, kRow };
  struct Level {
    Kind kind;
    ClassPlan* plan;              // of an object or a collection
    const ContentMember* member;  // the last of an object, or the row itself
    std::string key = {};
    int32_t position = 0;  // in a list or a row
  };

  ClassPlan& PlanOf(const ClassInfo& info) { return plans_.try_emplace(&info, info).first->second; }

  std::string Path() const {
    std::string path;
    for (const Level& level : levels_) {
      if (level.kind == Kind::kRow) continue;
      const std::string name =
          level.kind == Kind::kList ? std::to_string(level.position) : level.key;
      if (!name.empty()) path += (path.empty() ? "" : "/") + name;
    }
    return path;
  }

  template <class Act>
  bool WithPlace(Act act) {
    try {
      act();
    } catch (const vndoc6::automation::Error& error) {
      throw Failure(Path() + ": " + vndoc6::automation::ToUtf8(error.description()));
    } catch (const JsonFormError& error) {
      throw Failure(Path() + ": " + error.what());
    } catch (const Failure& failure) {
      const std::string path = Path();
      throw Failure((path.empty() ? path : path + "/") + failure.what());
    }
    return true;
  }

  bool Take(json value) {
    if (passed_over_ > 0) return true;
    return WithPlace([&] {
      if (value_.is_open()) {
        value_.Add(std::move(value));
      } else {
        Tell(value);
      }
    });
  }

  void Tell(const json& value) {
    if (levels_.empty()) throw Failure(kObjectExpected);
    Level& level = levels_.back();
    if (level.kind != Kind::kObject) ++level.position;
    if (level.kind == Kind::kList) throw Failure(kObjectExpected);
    if (level.member == nullptr) return;
    const bool is_of_row = !level.member->member->parameters.empty();
    if (is_of_row != (level.kind == Kind::kRow)) throw JsonFormError();
    sink_.Value(*level.member, FromJson(value, level.member->member->result.kind), level.position);
  }

  bool Open(json structure) {
    if (passed_over_ > 0) {
      ++passed_over_;
      return true;
    }
    return WithPlace([&] {
      if (value_.is_open()) {
        value_.Open(std::move(structure));
      } else if (levels_.empty()) {
        if (!structure.is_object()) throw Failure(kObjectExpected);
        levels_.push_back({Kind::kObject, &PlanOf(info_), nullptr});
      } else if (levels_.back().kind == Kind::kList) {
        OpenMember(structure.is_object());
      } else {
        OpenBelow(std::move(structure));
      }
    });
  }

  void OpenMember(bool is_object) {
    ++levels_.back().position;
    if (!is_object) throw Failure(kObjectExpected);
    ClassPlan& plan = PlanOf(*levels_.back().plan->member_class());
    sink_.BeginMember();
    levels_.push_back({Kind::kObject, &plan, nullptr});
  }

  // Of an object's member, or in a row.
  void OpenBelow(json structure) {
    const Level& level = levels_.back();
    const ContentMember* const member = level.member;
    if (member == nullptr) {
      passed_over_ = 1;
    } else if (member->part != nullptr) {
      OpenPart(*member, structure.is_object());
    } else if (structure.is_object()) {
      value_.Open(std::move(structure));
    } else if (level.kind == Kind::kRow || member->member->parameters.empty()) {
      throw Failure(kListRefused);
    } else {
      levels_.push_back({Kind::kRow, nullptr, member});
    }
  }

  void OpenPart(const ContentMember& member, bool is_object) {
    ClassPlan& plan = PlanOf(*member.part);
    const bool is_collection = plan.member_class() != nullptr;
    if (is_collection == is_object) throw Failure(is_object ? kListExpected : kObjectExpected);
    sink_.Begin(member);
    levels_.push_back({is_object ? Kind::kObject : Kind::kList, &plan, nullptr});
  }

  bool Close() {
    if (passed_over_ > 0) {
      --passed_over_;
      return true;
    }
    return WithPlace([&] {
      if (value_.is_open()) {
        if (value_.Close()) Tell(value_.whole());
        return;
      }
      const bool is_row = levels_.back().kind == Kind::kRow;
      levels_.pop_back();
      if (!is_row && !levels_.empty()) sink_.End();
    });
  }

  const ClassInfo& info_;
  ContentSink& sink_;
  std::unordered_map<const ClassInfo*, ClassPlan> plans_;
  std::vector<Level> levels_;
  ValueBuilder value_;
  size_t passed_over_ = 0;  // structures that are open in what is passed over
};

}  // namespace

void ReadJson(std::istream& text, const ClassInfo& info, ContentSink& sink) {
  Reader reader(info, sink);
  json::sax_parse(text, &reader);
}

}  // namespace vndoc
