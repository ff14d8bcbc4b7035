// The events of a template library, as a native host hears them.
#pragma once

#include <cstdint>

#include "vndoc6/automation/event_info.h"
#include "vndoc6/core/document_events.h"

namespace vndoc6 {

class vnTemplate;

// Derive from this, override what you want to hear of, and pass it to
// vnTemplateLibrary::AddListener. What is said of DocumentListener holds here too.
class TemplateLibraryListener {
 public:
  virtual ~TemplateLibraryListener() = default;

  // How far a load is, in percent.
  virtual void Loading(int16_t /*eiPercent*/) {}
  // The library was loaded.
  virtual void LoadComplete() {}
  // The library was not loaded: 1 no file name, 2 it has a file already, 3 no such file.
  virtual void LoadFailed(int32_t /*elFailCode*/) {}
  // How far a save is, in percent.
  virtual void Saving(int16_t /*eiPercent*/) {}
  // The library was saved.
  virtual void SaveComplete() {}
  // The library was not saved, for there is no file name (1).
  virtual void SaveFailed(int32_t /*elFailCode*/) {}
  // A report template was added, removed or changed.
  virtual void ReportTemplateChange(vnTemplate& /*eoTemplate*/,
                                    EnumVantrelChangeEvent /*elEventType*/,
                                    int32_t /*elDetailID*/) {}
  // A figure template was added, removed or changed.
  virtual void FigureTemplateChange(vnTemplate& /*eoTemplate*/,
                                    EnumVantrelChangeEvent /*elEventType*/,
                                    int32_t /*elDetailID*/) {}
  // A revision template was added, removed or changed.
  virtual void RevisionTemplateChange(vnTemplate& /*eoTemplate*/,
                                      EnumVantrelChangeEvent /*elEventType*/,
                                      int32_t /*elDetailID*/) {}
  // A file template was added, removed or changed.
  virtual void FileTemplateChange(vnTemplate& /*eoTemplate*/,
                                  EnumVantrelChangeEvent /*elEventType*/, int32_t /*elDetailID*/) {}
  // A jump template was added, removed or changed.
  virtual void JumpTemplateChange(vnTemplate& /*eoTemplate*/,
                                  EnumVantrelChangeEvent /*elEventType*/, int32_t /*elDetailID*/) {}
};

// The published event interface __vnTemplateLibrary.
const automation::EventInterfaceInfo& TemplateLibraryEvents();

}  // namespace vndoc6
