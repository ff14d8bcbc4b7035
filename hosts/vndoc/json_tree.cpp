#include "json_tree.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <unordered_map>

namespace vndoc {

// What the parser calls.
class JsonTreeReader {
 public:
  explicit JsonTreeReader(JsonTree& tree) : tree_(tree) {}
  size_t fault_offset() const { return fault_offset_; }

  bool null() { return Add(JsonKind::kNull); }
  bool boolean(bool value) { return AddInteger(JsonKind::kBoolean, value ? 1 : 0); }
  bool number_integer(int64_t value) { return AddInteger(JsonKind::kInteger, value); }
  bool number_unsigned(uint64_t value) {
    constexpr uint64_t kHighest = std::numeric_limits<int64_t>::max();
    if (value > kHighest) return AddReal(static_cast<double>(value));
    return AddInteger(JsonKind::kInteger, static_cast<int64_t>(value));
  }
  bool number_float(double value, const std::string&) { return AddReal(value); }
  bool string(const std::string& value) {
    Add(JsonKind::kText);
    Last().text = tree_.texts_.size();
    Last().count = static_cast<uint32_t>(value.size());
    tree_.texts_ += value;
    return true;
  }
  bool binary(const std::vector<uint8_t>&) { return false; }  // JSON has none
  bool start_object(size_t) { return Open(JsonKind::kObject); }
  bool end_object() { return Close(); }
  bool start_array(size_t) { return Open(JsonKind::kList); }
  bool end_array() { return Close(); }
  bool key(const std::string& key) {
    const auto next = static_cast<uint32_t>(tree_.keys_.size());
    const auto [known, is_new] = numbers_.try_emplace(key, next);
    if (is_new) tree_.keys_.push_back(key);
    key_ = known->second;
    return true;
  }
  bool parse_error(size_t position, const std::string&, const nlohmann::json::exception&) {
    fault_offset_ = position;
    return false;
  }

 private:
  JsonTree::Record& Last() { return tree_.records_.back(); }

  bool Add(JsonKind kind) {
    if (!open_.empty()) ++tree_.records_[open_.back()].count;
    JsonTree::Record record{};
    record.kind = kind;
    record.key = key_;
    tree_.records_.push_back(record);
    Last().end = static_cast<uint32_t>(tree_.records_.size());
    return true;
  }
  bool AddInteger(JsonKind kind, int64_t value) {
    Add(kind);
    Last().integer = value;
    return true;
  }
  bool AddReal(double value) {
    Add(JsonKind::kReal);
    Last().real = value;
    return true;
  }
  bool Open(JsonKind kind) {
    Add(kind);
    open_.push_back(tree_.records_.size() - 1);
    return true;
  }
  bool Close() {
    tree_.records_[open_.back()].end = static_cast<uint32_t>(tree_.records_.size());
    open_.pop_back();
    return true;
  }

  JsonTree& tree_;
  std::vector<size_t> open_;
  std::unordered_map<std::string, uint32_t> numbers_;
  uint32_t key_ = 0;
  size_t fault_offset_ = 0;
};

JsonTree::JsonTree(std::string_view text) {
  // A node takes a byte at least, and its place is a number of 32 bits.
  if (text.size() >= std::numeric_limits<uint32_t>::max()) throw Failure("too large a JSON");
  // What is not used takes no memory.
  constexpr size_t kUsualNode = 16;
  records_.reserve(text.size() / kUsualNode);
  texts_.reserve(text.size() / 2);
  JsonTreeReader reader(*this);
  if (!nlohmann::json::sax_parse(text.data(), text.data() + text.size(), &reader)) {
    throw Failure("not JSON, at byte " + std::to_string(reader.fault_offset()));
  }
}

JsonNode JsonTree::root() const { return {*this, 0}; }
JsonNode JsonTree::Node(size_t at) const { return {*this, at}; }

bool JsonNode::boolean() const {
  if (kind() != JsonKind::kBoolean) throw JsonFormError();
  return record().integer != 0;
}

int64_t JsonNode::integer() const {
  if (kind() == JsonKind::kInteger) return record().integer;
  const double value = real();
  constexpr double kLimit = 9.2e18;
  if (!(value > -kLimit && value < kLimit)) throw JsonFormError();
  return static_cast<int64_t>(value);
}

double JsonNode::real() const {
  if (!IsNumber()) throw JsonFormError();
  return kind() == JsonKind::kReal ? record().real : static_cast<double>(record().integer);
}

std::string_view JsonNode::text() const {
  if (!IsText()) throw JsonFormError();
  return std::string_view(tree_->texts_).substr(record().text, record().count);
}

JsonNode::Iterator& JsonNode::Iterator::operator++() {
  at_ = tree_->records_[at_].end;
  return *this;
}

std::optional<JsonNode> JsonNode::Find(std::string_view key) const {
  std::optional<JsonNode> found;
  if (!IsObject()) return found;
  for (const JsonNode member : *this) {
    if (member.key() == key) found = member;
  }
  return found;
}

}  // namespace vndoc
