// vnJump: a step's reference to another document. vnJumps: the jumps of a step, or all those of a
// document.
#pragma once

#include "vndoc6/process/attachment_list.h"

namespace vndoc6 {

class vnJump : public Attachment {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The document named by FileName, loaded on the first read; Nothing, tried again on the next
  // read, when there is no such file or it can't be loaded. The document once opened stays the
  // same, whatever FileName becomes. A jump to its own document gives a second instance of it.
  // A host that adds the jump to the document it opened keeps both alive until it removes it.
  automation::Ref<vnDocument> JumpDocument();
  // The target as a process of the host's; 0 for none. Setting it reports nothing.
  int32_t ProcessID() const { return process_id_; }
  void SetProcessID(int32_t plProcessID) { process_id_ = plProcessID; }

 private:
  friend struct Inside;
  void RaiseChange(Scope& scope, EnumVantrelChangeEvent type, int32_t detail_id) override;
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text, const Text& key);
  // Everything but the key, the owners and the opened document. Reports nothing.
  void CopyFrom(const vnJump& other);

  struct Schema;
  void RecoverProcessID();

  int32_t process_id_ = 0;
  automation::Owned<vnDocument> target_;
};

class vnJumps : public AttachmentList<vnJump> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnJumps();
};

}  // namespace vndoc6
