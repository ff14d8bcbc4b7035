// Attachment: what a step's files and jumps have in common.
#pragma once

#include <utility>

#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/core/document_events.h"
#include "vndoc6/process/step_member.h"

namespace vndoc6 {

class Attachment : public StepMember, public bag::Carrier {
 public:
  // The key in its collections. Empty until the host sets one, or until the object is loaded or
  // added to a collection. Setting it reports nothing.
  const Text& Key() const { return key_; }
  void SetKey(const Text& psKey) { key_ = psKey; }
  // The name that users see. Setting it reports detail 1, changed or not.
  const Text& DisplayName() const { return display_name_; }
  void SetDisplayName(const Text& psDisplayName);
  // The path of what it stands for, as the host gave it. Setting it reports detail 2, changed or
  // not.
  const Text& FileName() const { return file_name_; }
  void SetFileName(const Text& psFileName);

 protected:
  friend struct Inside;
  void StoreKey(Text key) { key_ = std::move(key); }
  // Raises the class's own event in the document; 0 is the detail of an object that came or went.
  virtual void RaiseChange(Scope& scope, EnumVantrelChangeEvent type, int32_t detail_id) = 0;

  Text key_;
  Text display_name_;
  Text file_name_;

 private:
  void ReportDetail(int32_t detail_id);
};

}  // namespace vndoc6
