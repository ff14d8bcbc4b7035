// vnContainer: a named group on the chart. vnContainers: the groups of a document.
#pragma once

#include <utility>

#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/collections/collection.h"

namespace vndoc6 {

class vnFigure;

// Steps name their container by its key; the container keeps no list of its steps.
class vnContainer : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnContainer();
  ~vnContainer() override;

  // The document, in a Variant.
  automation::Variant Document() const;
  // Gives the container a document; reports nothing.
  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }
  // The key that steps name the container by. Setting it reports nothing; the container stays in
  // its collection under the key it had.
  const Text& Key() const { return key_; }
  void SetKey(const Text& psKey) { key_ = psKey; }
  // The name shown in the group's outline. Setting it reports 1 as a container change, changed or
  // not.
  const Text& Label() const { return label_; }
  void SetLabel(const Text& psLabel);
  // Free text. Reading it reports 1 as a container change; setting it reports nothing.
  Text Description();
  void SetDescription(const Text& psDescription) { description_ = psDescription; }
  // What draws the group's outline; built on the first read.
  automation::Ref<vnFigure> Figure();

  // Reads a serialised text; its key counts when psKey is empty. Reports nothing. The figure is
  // built anew on the next read.
  void Load(const Text& psLoad, const Text& psKey = {});
  // The container's serialised text. Reports nothing.
  Text Save() const;

 private:
  friend struct Inside;
  void TakeDocument(vnDocument* document) override;
  void StoreKey(Text key) { key_ = std::move(key); }
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text, const Text& key);
  // Everything but the key and the document, the figure's values included.
  void CopyFrom(vnContainer& other);
  // Takes a copy into the document, and out again. Reports nothing.
  void Join(vnDocument& document) { TakeDocument(&document); }
  void Leave(vnDocument& /*document*/) { TakeDocument(nullptr); }

  struct Schema;
  void ReportChange();

  Text key_;
  Text label_;
  Text description_;
  bag::Lazy<vnFigure> figure_;
};

class vnContainers : public Collection<vnContainer> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // A container that the host keeps with the collection.
  automation::Ref<vnContainer> Container() const;
  void SetContainer(vnContainer* poContainer);

  // Adds a container, with a fresh key when it has none. Raises ContainerAdded. Nothing happens
  // when its key is in the collection already.
  void Add(vnContainer* poContainer);
  // Raises ContainerRemoved, then takes the container out; nothing happens when there is none.
  // Steps that name it keep doing so.
  void Remove(const automation::Variant& pvRef);

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);
  // The same, for containers that were in the document already: raises nothing.
  void ReadQuietly(const bag::KeptText& text);

  automation::Owned<vnContainer> container_;
};

}  // namespace vndoc6
