// vnRevision and vnRevisions: the revisions that a document has gone through.
#pragma once

#include <cstdint>

#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/collections/collection.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

// One revision; hosts only read it.
class vnRevision : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The day on which the revision was entered, without a time.
  automation::Date RevisionDate() const { return revision_date_; }
  // The number that the details had at the time.
  float Revision() const { return revision_; }
  // The document's IR at the time; the revision's key in its collection.
  int32_t IR() const { return ir_; }
  // Why there was a revision, as given to vnDetails.NewRevision.
  const Text& Reason() const { return reason_; }

 private:
  friend struct Inside;
  void StoreRevisionDate(automation::Date date) { revision_date_ = date; }
  void StoreRevision(float revision) { revision_ = revision; }
  void StoreIR(int32_t ir) { ir_ = ir; }
  void StoreReason(const Text& reason) { reason_ = reason; }
  void Write(bag::BagWriter& writer) const;
  // False when the date, the number or the IR is missing, or a value can't be converted;
  // then the revision is as it was.
  bool Read(const bag::KeptText& text);

  struct Schema;
  automation::Date revision_date_;
  float revision_ = 0;
  int32_t ir_ = 0;
  Text reason_;
};

// The revision history. Adding reports nothing.
class vnRevisions : public Collection<vnRevision> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // Adds a revision. Nothing happens when one with the same IR is there.
  void Add(vnRevision* poRevision);
  // Adds a revision with these values. Only while an older file is being converted, else error
  // 2198.
  void AddImport(int32_t plIR, const Text& psReason, int32_t plRevision, automation::Date pdDate);
  // Takes a revision out, by position or key; nothing happens when there is none. Reports
  // StepFileChange, with Nothing as the file.
  void Remove(const automation::Variant& pvRef);

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer) const;
  // Skips entries out of which no revision can be made.
  void Read(const bag::KeptText& text);
};

}  // namespace vndoc6
