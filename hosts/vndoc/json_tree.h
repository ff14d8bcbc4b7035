// JSON texts that are read: a flat run of nodes, a fraction of what a tree of maps takes, in time
// as in memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"

namespace vndoc {

enum class JsonKind : uint8_t { kNull, kBoolean, kInteger, kReal, kText, kList, kObject };

// A node is not what its reader expects.
class JsonFormError : public Failure {
 public:
  JsonFormError() : Failure("a value of another form is expected") {}
};

class JsonNode;

class JsonTree {
 public:
  // Throws Failure with the place where the text is no JSON.
  explicit JsonTree(std::string_view text);

  JsonNode root() const;
  // All nodes, each before those below it.
  size_t size() const { return records_.size(); }
  JsonNode Node(size_t at) const;
  // How many different keys there are. They are numbered from 0 on.
  size_t key_count() const { return keys_.size(); }

 private:
  friend class JsonNode;
  friend class JsonTreeReader;
  struct Record {
    JsonKind kind;
    uint32_t key;    // of a member of an object
    uint32_t end;    // behind the last node below
    uint32_t count;  // of members; of the bytes of a text
    union {
      int64_t integer;
      double real;
      size_t text;  // where it begins in texts_
    };
  };

  std::vector<Record> records_;
  std::vector<std::string> keys_;
  std::string texts_;
};

// A value in a tree, as long as that is there.
class JsonNode {
 public:
  JsonNode(const JsonTree& tree, size_t at) : tree_(&tree), at_(at) {}

  JsonKind kind() const { return record().kind; }
  bool IsObject() const { return kind() == JsonKind::kObject; }
  bool IsList() const { return kind() == JsonKind::kList; }
  bool IsStructure() const { return IsObject() || IsList(); }
  bool IsText() const { return kind() == JsonKind::kText; }
  bool IsText(std::string_view text) const { return IsText() && this->text() == text; }
  bool IsNumber() const { return kind() == JsonKind::kInteger || kind() == JsonKind::kReal; }

  // Each raises JsonFormError for a value of another kind. A real that is asked for as an integer
  // loses its fraction.
  bool boolean() const;
  int64_t integer() const;
  double real() const;
  std::string_view text() const;

  // Of a member of an object.
  std::string_view key() const { return tree_->keys_[record().key]; }
  size_t key_number() const { return record().key; }

  // The members of an object or a list; of any other value none.
  size_t size() const { return IsStructure() ? record().count : 0; }
  class Iterator {
   public:
    Iterator(const JsonTree& tree, size_t at) : tree_(&tree), at_(at) {}
    JsonNode operator*() const { return {*tree_, at_}; }
    Iterator& operator++();
    bool operator==(const Iterator& other) const { return at_ == other.at_; }

   private:
    const JsonTree* tree_;
    size_t at_;
  };
  Iterator begin() const { return {*tree_, at_ + 1}; }
  Iterator end() const { return {*tree_, record().end}; }
  // The last member with that key.
  std::optional<JsonNode> Find(std::string_view key) const;

 private:
  const JsonTree::Record& record() const { return tree_->records_[at_]; }
  const JsonTree* tree_;
  size_t at_;
};

}  // namespace vndoc
