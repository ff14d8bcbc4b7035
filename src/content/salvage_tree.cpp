#include "content/salvage_tree.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/escape.h"
#include "bag/levelled_text.h"
#include "document/file_version.h"

namespace vndoc6::salvage {
namespace {

using automation::FromUtf8;
using automation::ToUtf8;
using Kind = SavedEntry::Kind;

const Field* Find(const Node& node, const SavedEntry& entry) {
  const auto found = std::find_if(node.fields.begin(), node.fields.end(),
                                  [&](const Field& field) { return field.entry == &entry; });
  return found != node.fields.end() ? &*found : nullptr;
}

// The keys that this library makes: "{457849A4-D01E-4BFA-AE5A-7EFF22591EC9}".
bool IsMadeKey(std::string_view key) {
  constexpr std::string_view kForm = "{########-####-####-####-############}";
  const auto fits = [](char c, char form) {
    const bool is_digit = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    return form == '#' ? is_digit : c == form;
  };
  return key.size() == kForm.size() && std::equal(key.begin(), key.end(), kForm.begin(), fits);
}

class Writer {
 public:
  explicit Writer(std::vector<Damage>& damages) : damages_(damages) {}

  void Write(Node& node, uint32_t depth, const std::string& place) {
    if (node.is_whole) {
      out += node.raw;
    } else if (node.what->kind == Kind::kText) {
      out += node.text;
    } else if (node.what->kind == Kind::kCollection) {
      WriteMembers(node, depth, place);
    } else {
      WriteFields(node, depth, place);
    }
  }

  std::string out;

 private:
  void WriteFields(Node& node, uint32_t depth, const std::string& place) {
    if (node.what->kind == Kind::kObject) Complete(node, place);
    for (Field& field : node.fields) WriteField(field, depth, place);
  }

  // Puts the fields into the order of the class, unknown ones last, and tells which are missing.
  void Complete(Node& node, const std::string& place) {
    const std::vector<SavedEntry>& entries = node.what->part->entries;
    const SavedEntry* const last = entries.data() + entries.size();
    const auto position = [&](const Field& field) {
      return field.entry != nullptr ? field.entry : last;
    };
    std::stable_sort(
        node.fields.begin(), node.fields.end(),
        [&](const Field& left, const Field& right) { return position(left) < position(right); });
    std::string missing = MissingPoints(node);
    size_t next = 0;
    for (const SavedEntry& entry : entries) {
      while (next < node.fields.size() && position(node.fields[next]) < &entry) ++next;
      const bool is_there = next < node.fields.size() && node.fields[next].entry == &entry;
      if (is_there || !entry.always) continue;
      missing += (missing.empty() ? "" : ", ") + entry.key;
    }
    if (missing.empty()) return;
    damages_.push_back({Damage::Kind::kMissing, place, node.offset, 0, std::move(missing)});
  }

  // Told where the points are out of their order, or one lacks a value.
  static std::string MissingPoints(const Node& node) {
    PointOrder order;
    bool in_order = true;
    for (const Field& field : node.fields) {
      const bool is_point = field.entry != nullptr && field.entry->kind == Kind::kPoints;
      in_order = in_order && (!is_point || order.Take(field.key));
    }
    return in_order && order.IsComplete() ? "" : "a point";
  }

  void WriteField(Field& field, uint32_t depth, const std::string& place) {
    const SavedEntry* const entry = field.entry;
    const bool is_spelled = entry == nullptr || entry->Has(field.key);
    out += is_spelled ? field.key : std::string_view(entry->key);
    if (!field.plain.empty()) {
      out += field.plain;
      return;
    }
    const std::string name = entry != nullptr ? entry->key : PlainKey(field.key, depth);
    WriteText(field.content, depth, Below(place, name));
  }

  void WriteText(Node& node, uint32_t depth, const std::string& place) {
    out += Opening(depth);
    Write(node, depth + 1, place);
    out += node.closing.empty() ? Closing(depth) : std::string(node.closing);
  }

  void WriteMembers(Node& node, uint32_t depth, const std::string& place) {
    std::set<std::string> keys;
    size_t position = 0;
    size_t skipped = 0;
    for (Node& member : node.members) {
      ++position;
      std::string name = node.what->prefix;
      if (node.what->keyed) {
        name += KeyOf(member, *node.what, depth, place, keys);
      } else {
        skipped = Skipped(member, *node.what, position, skipped, place);
        name += std::to_string(position);
      }
      bag::BagWriter(out, depth).AddNestedUnder(FromUtf8(name), [&](bag::BagWriter&) {
        Write(member, depth + 1, Below(place, name));
      });
    }
  }

  // How many positions there are no members of, up to this one. Tells of more than there were.
  size_t Skipped(const Node& member, const SavedEntry& what, size_t position, size_t so_far,
                 const std::string& place) {
    uint32_t stored = 0;
    const std::string_view key = member.key;
    if (!key.starts_with(what.prefix) || !bag::ReadNumber(key.substr(what.prefix.size()), stored) ||
        stored <= position + so_far) {
      return so_far;
    }
    damages_.push_back({Damage::Kind::kMissing, place, member.offset, 0,
                        what.prefix + std::to_string(stored - 1)});
    return stored - position;
  }

  // The member's key, which no other has. Its "K" is what readers go by.
  std::string KeyOf(Node& member, const SavedEntry& what, uint32_t depth, const std::string& place,
                    std::set<std::string>& keys) {
    std::string key = PlainKey(member.key, depth);
    if (key.starts_with(what.prefix)) key.erase(0, what.prefix.size());
    const std::optional<std::string> own = OwnKey(member, depth + 1);
    const bool is_sure = own.value_or("") == key;
    if (own && (!IsMadeKey(key) || IsMadeKey(*own))) key = *own;
    // A load makes one.
    if (key.empty()) return key;
    const bool is_taken = !keys.insert(automation::FoldedUtf8(FromUtf8(key))).second;
    if (is_taken || !is_sure) {
      damages_.push_back({is_taken ? Damage::Kind::kTwice : Damage::Kind::kMended,
                          Below(place, what.prefix + key), member.offset, 0, "K"});
    }
    if (!member.is_whole && (is_taken || own != key)) {
      SetOwnKey(member, is_taken ? "" : key, depth + 1);
    }
    return is_taken ? std::string() : key;
  }

  static std::optional<std::string> OwnKey(const Node& member, uint32_t depth) {
    if (!member.is_whole) {
      const Field* const field = Find(member, *member.what->part->Find("K"));
      return field != nullptr ? std::optional(PlainText(TextOf(field->content), depth + 1))
                              : std::nullopt;
    }
    // Whole members have it as their entries have it.
    bag::KeptText text{bag::SharedBytes(std::string(member.raw))};
    return ToUtf8(bag::BagReader(bag::KeptText(text, text.raw(), depth)).GetText("K"));
  }

  static void SetOwnKey(Node& member, const std::string& key, uint32_t depth) {
    const SavedEntry& entry = *member.what->part->Find("K");
    std::erase_if(member.fields, [&](const Field& field) { return field.entry == &entry; });
    Field field;
    field.entry = &entry;
    field.key = entry.key;
    field.content.what = &entry;
    bag::AppendEscaped(key, depth + 1, field.content.text);
    member.fields.push_back(std::move(field));
  }

  static std::string_view TextOf(const Node& node) {
    return node.is_whole ? node.raw : std::string_view(node.text);
  }
  static std::string PlainText(std::string_view raw, uint32_t depth) {
    std::string plain;
    bag::AppendUnescaped(raw, depth, plain);
    return plain;
  }

  std::vector<Damage>& damages_;
};

// Of a whole collection, so that others can join it.
void TakeMembers(Node& node) {
  if (!node.is_whole || node.what->kind != Kind::kCollection) return;
  node.is_whole = false;
  const bag::KeptText copy{bag::SharedBytes(std::string(node.raw))};
  const auto original = [&](std::string_view part) {
    return node.raw.substr(static_cast<size_t>(part.data() - copy.raw().data()), part.size());
  };
  bag::BagScanner scanner(bag::KeptText(copy, copy.raw(), node.depth));
  bag::BagEntry entry;
  while (scanner.Next(entry)) {
    Node member;
    member.what = &node.what->part->self;
    member.is_whole = true;
    member.raw = original(entry.value);
    member.depth = node.depth + 1;
    member.key = original(entry.key);
    member.offset = node.offset + static_cast<size_t>(member.raw.data() - node.raw.data());
    node.members.push_back(std::move(member));
  }
}

}  // namespace

bool Node::IsEmpty() const {
  return is_whole ? raw.empty() : text.empty() && fields.empty() && members.empty();
}

bool GoesOn(const Node& before, const Node& after) {
  if (before.is_whole || after.is_whole || !after.key.empty()) return false;
  const Field* last = nullptr;
  for (const Field& field : before.fields) {
    if (field.entry != nullptr && (last == nullptr || field.entry > last->entry)) last = &field;
  }
  return std::all_of(after.fields.begin(), after.fields.end(), [&](const Field& field) {
    if (field.entry == nullptr || last == nullptr || field.entry > last->entry) return true;
    // A part may be torn itself.
    if (field.entry != last->entry || field.entry->part == nullptr) return false;
    return field.entry->kind == Kind::kCollection || GoesOn(last->content, field.content);
  });
}

void Join(Node& node, Node more) {
  if (more.IsEmpty()) return;
  if (node.IsEmpty() || (more.is_whole && node.what->kind == Kind::kObject && !node.is_whole)) {
    node = std::move(more);
    return;
  }
  TakeMembers(node);
  TakeMembers(more);
  for (Node& member : more.members) {
    if (!node.members.empty() && GoesOn(node.members.back(), member)) {
      Join(node.members.back(), std::move(member));
    } else {
      node.members.push_back(std::move(member));
    }
  }
  for (Field& field : more.fields) {
    const auto same = std::find_if(node.fields.begin(), node.fields.end(), [&](const Field& other) {
      return field.entry != nullptr && other.entry == field.entry &&
             field.entry->kind != Kind::kPoints;
    });
    if (same == node.fields.end()) {
      node.fields.push_back(std::move(field));
    } else if (field.plain.empty() && field.entry->part != nullptr) {
      Join(same->content, std::move(field.content));
    }
  }
}

// Without its versions nothing of a document is read.
void SetVersion(Node& document, const char* key, std::string_view plain, bool keep,
                std::vector<Damage>& damages) {
  const SavedEntry& entry = *DocumentForm().Find(key);
  const Field* const known = Find(document, entry);
  if (known != nullptr && (keep || known->plain == plain)) return;
  std::erase_if(document.fields, [&](const Field& field) { return field.entry == &entry; });
  damages.push_back({Damage::Kind::kMissing, {}, 0, 0, key});
  Field field;
  field.entry = &entry;
  field.key = entry.key;
  field.plain = plain;
  document.fields.push_back(std::move(field));
}

std::string WriteDocument(Node& document, std::vector<Damage>& damages) {
  if (document.is_whole) return std::string(document.raw);
  const bool has_any = std::any_of(document.fields.begin(), document.fields.end(),
                                   [](const Field& field) { return field.entry != nullptr; });
  if (!has_any) return {};
  std::string versions;
  bag::BagWriter version_writer(versions);
  version_writer.Add("", kFileVersion);
  const size_t size = versions.size();
  version_writer.Add("", kDocumentVersion);
  SetVersion(document, "FV", std::string_view(versions).substr(0, size), false, damages);
  SetVersion(document, "DV", std::string_view(versions).substr(size), true, damages);
  Writer writer(damages);
  writer.Write(document, 0, {});
  return std::move(writer.out);
}

std::string Opening(uint32_t depth) {
  if (depth == 0) return std::string(bag::kEscapeLiterals[0]);
  std::string opening;
  bag::AppendEscape(bag::EscapeClass::kOpening, depth, opening);
  return opening;
}

std::string Closing(uint32_t depth) {
  if (depth == 0) return std::string(bag::kEscapeLiterals[1]);
  std::string closing;
  bag::AppendEscape(bag::EscapeClass::kClosing, depth, closing);
  return closing;
}

std::string PlainKey(std::string_view key, uint32_t depth) {
  std::string once;
  bag::AppendUnescaped(key, depth, once);
  std::string plain;
  size_t done = 0;
  for (size_t at; (at = once.find("^-", done)) != once.npos; done = at + 2) {
    bag::AppendUnescaped(std::string_view(once).substr(done, at - done), 1, plain);
    plain += '=';
  }
  bag::AppendUnescaped(std::string_view(once).substr(done), 1, plain);
  return plain;
}

std::string Below(const std::string& place, const std::string& name) {
  return place.empty() ? name : place + '/' + name;
}

}  // namespace vndoc6::salvage
