#include "bench/xml_side.h"

#include <cstring>
#include <type_traits>

#include "bench/rows.h"

namespace vndoc6::bench {
namespace {

using String = std::string;

// A number as pugixml takes it.
template <class T>
auto Plain(T value) {
  if constexpr (std::is_enum_v<T>) {
    return static_cast<int>(value);
  } else {
    return value;
  }
}
const char* Plain(const String& value) { return value.c_str(); }

// --- Writing ---

class Writer {
 public:
  Writer(pugi::xml_node node, XmlForm form) : node_(node), form_(form) {}

  template <class Table, class Struct>
  void PutRows(const Table& table, const Struct& values) {
    ForEachRow(table, [&](const auto& row) { Put(row.key, Plain(values.*row.member)); });
  }
  template <class Keys>
  void PutEmpty(const Keys& keys) {
    for (const char* const key : keys) Put(key, "");
  }
  Writer Child(const char* name) { return {node_.append_child(name), form_}; }

 private:
  template <class T>
  void Put(const char* key, T value) {
    if (form_ == XmlForm::kAttributes) {
      node_.append_attribute(key).set_value(value);
    } else {
      node_.append_child(key).text().set(value);
    }
  }

  pugi::xml_node node_;
  XmlForm form_;
};

void PutStep(Writer writer, const StepContent<String>& step) {
  writer.PutRows(kStepRows<String>, step);
  writer.PutEmpty(kEmptyInStep);
  Writer figure = writer.Child("Fig");
  figure.PutRows(kFigureRows<String>, step.figure);
  figure.PutRows(kFontRows<String>, step.figure);
  figure.PutEmpty(kEmptyInFigure);
  for (const TaskContent<String>& task : step.tasks) {
    writer.Child("Task").PutRows(kTaskRows<String>, task);
  }
}

void PutLink(Writer writer, const LinkContent<String>& link) {
  writer.PutRows(kLinkRows<String>, link);
  writer.PutEmpty(kEmptyInLink);
  Writer line = writer.Child("Line");
  line.PutRows(kLineRows<String>, link.line);
  line.PutRows(kFontRows<String>, link.line);
  line.PutEmpty(kEmptyInLine);
}

// --- Reading ---

// Works on attributes and on elements' texts, which have the same members.
template <class Source>
void Get(const Source& source, bool& value) {
  value = source.as_bool();
}
template <class Source>
void Get(const Source& source, float& value) {
  value = source.as_float();
}
template <class Source>
void Get(const Source& source, double& value) {
  value = source.as_double();
}
template <class Source>
void Get(const Source& source, String& value) {
  value = source.as_string();
}
template <class Source, class T>
void Get(const Source& source, T& value) {
  value = static_cast<T>(source.as_int());
}

// Asks in the order in which the values stand, which finds each at once.
class Reader {
 public:
  Reader(pugi::xml_node node, XmlForm form) : node_(node), form_(form), next_(node.first_child()) {}

  template <class Table, class Struct>
  void GetRows(const Table& table, Struct& values) {
    ForEachRow(table, [&](const auto& row) {
      if (form_ == XmlForm::kAttributes) {
        Get(node_.attribute(row.key, hint_), values.*row.member);
      } else {
        Get(Element(row.key).text(), values.*row.member);
      }
    });
  }

 private:
  pugi::xml_node Element(const char* key) {
    const pugi::xml_node found = std::strcmp(next_.name(), key) == 0 ? next_ : node_.child(key);
    next_ = found.next_sibling();
    return found;
  }

  pugi::xml_node node_;
  XmlForm form_;
  pugi::xml_attribute hint_;
  pugi::xml_node next_;
};

StepContent<String> GetStep(pugi::xml_node node, XmlForm form) {
  StepContent<String> step;
  Reader(node, form).GetRows(kStepRows<String>, step);
  Reader figure(node.child("Fig"), form);
  figure.GetRows(kFigureRows<String>, step.figure);
  figure.GetRows(kFontRows<String>, step.figure);
  for (const pugi::xml_node task : node.children("Task")) {
    Reader(task, form).GetRows(kTaskRows<String>, step.tasks.emplace_back());
  }
  return step;
}

LinkContent<String> GetLink(pugi::xml_node node, XmlForm form) {
  LinkContent<String> link;
  Reader(node, form).GetRows(kLinkRows<String>, link);
  Reader line(node.child("Line"), form);
  line.GetRows(kLineRows<String>, link.line);
  line.GetRows(kFontRows<String>, link.line);
  return link;
}

template <class Value>
void Set(pugi::xml_node node, XmlForm form, const char* key, Value value) {
  if (form == XmlForm::kAttributes) {
    node.attribute(key).set_value(value);
  } else {
    node.child(key).text().set(value);
  }
}

struct StringWriter : pugi::xml_writer {
  void write(const void* data, size_t size) override {
    bytes.append(static_cast<const char*>(data), size);
  }
  std::string bytes;
};

}  // namespace

void BuildXml(const Content<String>& content, XmlForm form, pugi::xml_document& document) {
  pugi::xml_node root = document.append_child("D");
  Writer steps(root.append_child("S"), form);
  for (const StepContent<String>& step : content.steps) PutStep(steps.Child("Step"), step);
  Writer links(root.append_child("LK"), form);
  for (const LinkContent<String>& link : content.links) PutLink(links.Child("Link"), link);
}

Content<String> ReadXml(const pugi::xml_document& document, XmlForm form) {
  Content<String> content;
  const pugi::xml_node root = document.child("D");
  for (const pugi::xml_node step : root.child("S")) content.steps.push_back(GetStep(step, form));
  for (const pugi::xml_node link : root.child("LK")) content.links.push_back(GetLink(link, form));
  return content;
}

void ChangeXml(pugi::xml_document& document, XmlForm form) {
  const pugi::xml_node root = document.child("D");
  for (const pugi::xml_node step : root.child("S")) {
    Set(step, form, "L", "changed");
    Set(step.child("Fig"), form, "Lef", 77);
    for (const pugi::xml_node task : step.children("Task")) Set(task, form, "N", "changed");
  }
  for (const pugi::xml_node link : root.child("LK")) {
    Set(link, form, "T", "changed");
    Set(link.child("Line"), form, "DX", 77);
  }
}

std::string XmlBytes(const pugi::xml_document& document) {
  StringWriter writer;
  document.save(writer, "", pugi::format_raw);
  return std::move(writer.bytes);
}

}  // namespace vndoc6::bench
