// vnFile: a file attached to a step. vnFiles: the files of a step, or all those of a document.
#pragma once

#include "vndoc6/process/attachment_list.h"

namespace vndoc6 {

class vnFile : public Attachment {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The file as a stored document of the host's; 0 for none. Setting it reports nothing.
  int32_t DocID() const { return doc_id_; }
  void SetDocID(int32_t plDocID) { doc_id_ = plDocID; }

 private:
  friend struct Inside;
  void RaiseChange(Scope& scope, EnumVantrelChangeEvent type, int32_t detail_id) override;
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text, const Text& key);
  // Everything but the key and the owners. Reports nothing.
  void CopyFrom(const vnFile& other);

  struct Schema;
  int32_t doc_id_ = 0;
};

class vnFiles : public AttachmentList<vnFile> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnFiles();
};

}  // namespace vndoc6
