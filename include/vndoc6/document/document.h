// vnDocument: one procedure, the root of everything in it, and the only object that raises events.
#pragma once

#include <memory>

#include "vndoc6/automation/event_info.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/core/document_events.h"
#include "vndoc6/core/document_kind.h"
#include "vndoc6/document/not_read.h"

namespace vndoc6 {

class OwnFiles;
class Properties;
class Scope;
class vnChart;
class vnContainers;
class vnDetails;
class vnFiles;
class vnJumps;
class vnLinks;
class vnRevisions;
class vnSteps;
class vnTitles;

class vnDocument : public automation::Object, public automation::EventSource, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnDocument();
  ~vnDocument() override;

  // Tells the listeners LinkChange, unless ChangeEvents is off; nothing happens for Nothing. A
  // link's line reports its changes with this; a link reports nothing itself: its hosts do.
  void RaiseLinkChange(vnLink* poLink, int32_t plDetailID);

  // The chart-wide drawing settings. Loading gives the document a new chart; otherwise it is one
  // object.
  automation::Ref<vnChart> Chart();
  // The steps of the procedure, one object for the document's life.
  automation::Ref<vnSteps> Steps() const;
  // Title, code, status and the like, one object for the document's life.
  automation::Ref<vnDetails> Details() const;
  // The revisions that the document has gone through. Loading gives a new object.
  automation::Ref<vnRevisions> RevisionHistory();
  // Free values of the host's, saved with the document. A put puts another bag in its place.
  automation::Ref<Properties> GetProperties() const;
  void SetProperties(Properties* poProperties);
  // The roles and people that steps and details refer to; a title handler of the host's fills it.
  automation::Ref<vnTitles> Titles() const;
  // The groups on the chart: the containers collection, in a Variant.
  automation::Variant Containers();
  // The same collection for C++ hosts.
  automation::Ref<vnContainers> ContainerCollection();
  // The links between the steps.
  automation::Ref<vnLinks> Links();
  // Every file that was added to any step.
  automation::Ref<vnFiles> Files();
  // Every jump that was added to any step.
  automation::Ref<vnJumps> Jumps();
  // A second bag of free values, saved with the document; for what the host attaches to it. Loading
  // gives a new object, and so does a put of Nothing: a bag of what was loaded.
  automation::Ref<Properties> Attachments();
  void SetAttachments(Properties* poAttachments);

  // The file that the document is in; empty until it was loaded or saved.
  const Text& FileName() const { return file_name_; }
  // The version of the file's format, a Long; 0 until a load.
  automation::Variant FileVersion() const { return automation::Variant(file_version_); }
  // Which product the document is for. DocType is the same value under other names.
  EnumVantrelDocumentType DocumentType() const;
  void SetDocumentType(EnumVantrelDocumentType peDocumentType);
  // What the document is used as: the value of DocumentType under other names.
  EnumVantrelDocType DocType() const;
  void SetDocType(EnumVantrelDocType peDocType);
  // Which edition of the product the document is for; stored, and not saved.
  EnumVantrelEdition Edition() const { return edition_; }
  void SetEdition(EnumVantrelEdition peEdition) { edition_ = peEdition; }
  // The version of the content of the file that was loaded, 1.2 in a new document. Saving writes
  // 1.2, whatever it is.
  float DocumentVersion() const { return document_version_; }
  void SetDocumentVersion(float pnDocumentVersion) { document_version_ = pnDocumentVersion; }

  // The running identifier counter. The first read of a new document gives 1.
  int32_t IR();
  // Stores the value plus one, only while an older file is being converted; else error 2199.
  void SetIR(int32_t plIR);
  // The document's identity; empty until the first save, a new one when it is saved under another
  // name.
  const Text& GUID() const { return guid_; }
  // Gives the document another identity, only while an older file is being converted, or when
  // Properties holds "AllowGUIDAssign" with the value True; else error 2199.
  void SetGUID(const Text& psGUID);

  // Always 0: nothing sets extensions. Kept for the hosts that ask.
  int32_t ExtensionCount() const { return 0; }
  // How many pages the host lays the chart out on; 0 by default.
  int32_t PagesCount() const { return pages_count_; }
  void SetPagesCount(int32_t plPagesCount) { pages_count_ = plPagesCount; }
  // Whether the host shows where pages end; False by default.
  bool ShowPageBreaks() const { return show_page_breaks_; }
  void SetShowPageBreaks(bool pbShowPageBreaks) { show_page_breaks_ = pbShowPageBreaks; }
  // A code of the host's for the kind of chart; 0 by default.
  int32_t ChartType() const { return chart_type_; }
  void SetChartType(int32_t plChartType) { chart_type_ = plChartType; }
  // The identity of the host's database that the document belongs to; empty by default.
  const Text& DBGUID() const { return db_guid_; }
  void SetDBGUID(const Text& psDBGUID) { db_guid_ = psDBGUID; }
  // How the host reaches its database. It stands as plain text in the file.
  const Text& ConnectionString() const { return connection_string_; }
  void SetConnectionString(const Text& psConnectionString) {
    connection_string_ = psConnectionString;
  }

  // The definitions of the details' extra data fields; built on the first read.
  automation::Ref<automation::Object> FieldDefsDetails();
  // The definitions of the steps' extra data fields; built on the first read.
  automation::Ref<automation::Object> FieldDefsSteps();
  // The definitions of the links' extra data fields; built on the first read.
  automation::Ref<automation::Object> FieldDefsLinks();
  // The form that lays out the details' extra data fields; built on the first read.
  automation::Ref<automation::Object> FormDetails();
  // The form that lays out the steps' extra data fields; built on the first read.
  automation::Ref<automation::Object> FormSteps();
  // The form that lays out the links' extra data fields; built on the first read.
  automation::Ref<automation::Object> FormLinks();
  // Gives new texts for FieldDefsDetails and FormDetails. Only while an older file is being
  // converted, else error 2198.
  void SetFieldDefsDetails(const Text& psFieldDefs, const Text& psForm);
  // Gives new texts for FieldDefsSteps and FormSteps. Only while an older file is being converted,
  // else error 2198.
  void SetFieldDefsSteps(const Text& psFieldDefs, const Text& psForm);

  // The host's database object that the document is bound to; Nothing by default, never saved. Only
  // an object whose type name is "osDatabase" is accepted; any other is ignored. Setting it raises
  // DatabaseConnected.
  automation::Ref<automation::Object> Database() const;
  void SetDatabase(automation::Object* poDatabase);
  // True for document types with the bit of value 2.
  bool IsWFProcess() const { return (document_type_ & 2) != 0; }

  // Whether changes are reported; they happen either way. Every load turns it on again.
  bool ChangeEvents() const;
  void SetChangeEvents(bool pbChangeEvents);
  // What ChangeEvents is while a load runs; off by default.
  bool ChangeEventsLoading() const { return change_events_loading_; }
  void SetChangeEventsLoading(bool pbChangeEventsLoading) {
    change_events_loading_ = pbChangeEventsLoading;
  }

  // A new step in Steps, with a fresh key and the next number. With the key of a step that exists,
  // or a step's saved text: a copy of that.
  automation::Ref<vnStep> NewStep(const Text& psSourceKey = {}, const Text& psLoadData = {});
  // A copy of a step of any document, with its figure, under fresh keys. Error 91 for Nothing.
  automation::Ref<vnStep> CopyStep(vnStep* poStep);
  // A copy of a container of any document, with its figure, under a fresh key. Error 91 for
  // Nothing.
  automation::Ref<vnContainer> CopyContainer(vnContainer* poContainer);

  // Saves under FileName. True, and SaveComplete is raised; or False, and SaveFailed: 1 when there
  // is no file name, 2 when the document may not be written or the file can't be.
  bool Save();
  // Saves under a file name, which becomes FileName; the outcome is that of Save. Another name than
  // before gives the document a new GUID.
  bool SaveAs(const Text& psFileName);
  // As SaveAs, after DocType was set to plDocumentType; -1 leaves it as it is.
  bool SaveDocAs(const Text& psFileName, int32_t plDocumentType = -1);

  // Loads a file, once for each document. True, and LoadComplete is raised; or False, and
  // LoadFailed: 1 no file name, 2 the document has a file already, 3 no such file, 11 unknown file
  // version, 13 newer document version (loaded and True all the same). A wrong password gives False
  // and no event.
  bool Load(const Text& psFileName, const Text& psPassword);
  // As Load; a template (".vn6t") numbers its objects afresh.
  bool LoadDoc(const Text& psFileName, const Text& psPassword);
  // Loads the temporary save of the file and saves it back under the file's name.
  bool LoadTempSave(const Text& psFileName, const Text& psPassword);
  // Whether a save did not complete: 2 when the temporary save is newer than the file, 1 when it is
  // not, 0 when one of them does not exist.
  int32_t TempSaveTest(const Text& psFileName) const;
  // Keeps a copy of the file, if there is one, as its temporary save. Every save begins with it. A
  // file that was not read whole does not take the place of a temporary save.
  void TempSaveDocument() const;
  // Deletes the temporary save, if there is one. Every save that was completed ends with it.
  void TempSaveClear() const;

  // Whether the document may be saved; a load without the file's write password turns it off.
  bool AllowWrite() const { return allow_write_; }
  // Sets AllowWrite by the write password.
  void EnableWrite(const Text& psPassword);
  // Sets the password that a load needs. Gives False in every case, also when it was set: hosts
  // must not read success from the result. Without write access nothing changes.
  bool SetReadPassword(const Text& psPassword);
  // Sets the password that saving a loaded document needs. Gives False in every case, also when it
  // was set. Without write access nothing changes.
  bool SetWritePassword(const Text& psPassword);

  // Native listeners. A listener must leave before it is destroyed.
  void AddListener(DocumentListener* listener);
  void RemoveListener(DocumentListener* listener);
  // Late-bound sinks.
  const automation::EventInterfaceInfo& Events() const override { return DocumentEvents(); }
  void Connect(automation::EventSink* sink) override;
  void Disconnect(automation::EventSink* sink) override;

  // --- For C++ hosts only ---

  // What the load could not read of its file, in the file's order; empty when it read all. A load
  // that did not come to a good end (LoadFailed with another code than 13, a wrong password, an
  // error) read nothing that counts. Looks at every text of the file, also those that nobody has
  // read yet. A save puts such a file aside before it replaces it.
  std::vector<NotRead> WhatWasNotRead() const;
  // Whether the file has other content than when this document was loaded from it or saved to it
  // last, or is gone: who saves now overwrites what somebody else has saved. False without a file.
  bool FileChangedSinceLoad() const;

 private:
  friend struct Inside;
  // Writes the document's text as a save does, without a save's effects on IR and GUID.
  void Write(bag::BagWriter& writer) { WriteParts(writer, Purpose::kText); }
  // About how many bytes the next save will have: it makes room for them at once.
  void ExpectSize(size_t bytes) { file_size_ = bytes; }

  // What a document defines for one kind of object: fields and their form, each kept as text
  // until it is read.
  struct Definition {
    const char* key;  // in every file: never change one
    bag::Lazy<automation::Object> object;
  };
  struct Definitions {
    Definition field_defs;
    Definition form;
  };

  // The save that follows tells the counter as it was.
  void RestoreIR(int32_t ir);
  void RestoreGUID(const Text& guid) { guid_ = guid; }
  void KeepLoadedAttachments();
  automation::Ref<automation::Object> FieldDefs(Definitions& definitions);
  automation::Ref<automation::Object> Form(Definitions& definitions);
  void SetDefinitions(Definitions& definitions, const Text& field_defs, const Text& form,
                      const char16_t* source);

  // Saving (document_save.cpp).
  bool SaveProcedure();
  bool SaveAndReport();
  class TempSave;
  // Only a save moves IR on and tells how far it is.
  enum class Purpose { kSave, kText };
  void WriteParts(bag::BagWriter& writer, Purpose purpose);
  void MoveIROn();

  // Loading (document_load.cpp).
  class LoadingScope;
  // Checks the name, loads from `read_from`, raises the outcome's events.
  bool LoadAndReport(const Text& file_name, const Text& read_from, const Text& password);
  int32_t LoadProcedure(const Text& password);
  int32_t ReadVersion2(bag::BagReader& file, LoadingScope& scope, const Text& password);
  static void ReadDefinitions(bag::BagReader& file, Definitions& definitions);
  void ResetDefinitions(bag::BagReader& file);
  int32_t ImportOldFormat();

  std::unique_ptr<OwnFiles> own_files_;
  // The temporary save that the document was loaded from, until its file is saved.
  Text recovered_from_;

  // The document as its parts see it.
  class OwnScope;
  friend Scope& ScopeOf(vnDocument& document);
  std::unique_ptr<OwnScope> scope_;

  bool ir_changed_ = false;
  // Of the file, when it was last loaded or saved: about what the next save needs.
  size_t file_size_ = 0;
  Text file_name_;
  automation::Owned<vnDetails> details_;
  automation::Owned<vnSteps> steps_;
  bag::Lazy<vnChart> chart_;
  bag::Lazy<vnRevisions> revision_history_;
  automation::Owned<Properties> properties_;
  automation::Owned<vnTitles> titles_;
  Definitions details_definitions_{{"FDD", {}}, {"FoD", {}}};
  Definitions steps_definitions_{{"FDS", {}}, {"FoS", {}}};
  Definitions links_definitions_{{"FDL", {}}, {"FoL", {}}};
  bag::Lazy<vnContainers> containers_;
  bag::Lazy<vnLinks> links_;
  bag::Lazy<vnFiles> files_;
  bag::Lazy<vnJumps> jumps_;
  bag::Lazy<Properties> attachments_;
  // As they were before the first read or put.
  bag::KeptText loaded_attachments_;
  bool change_events_loading_ = false;
  int32_t file_version_ = 0;
  int32_t document_type_ = 0;
  EnumVantrelEdition edition_ = vneKestrane;
  Text guid_;
  int32_t ir_ = 0;
  float document_version_ = 1.2f;
  int32_t pages_count_ = 0;
  bool show_page_breaks_ = false;
  Text db_guid_;
  Text connection_string_;
  int32_t chart_type_ = 0;
  bool allow_write_ = true;
  bool assignment_unlocked_ = false;
  automation::Owned<automation::Object> database_;
};

}  // namespace vndoc6
