// The events of a template library, as a native host hears them.
#pragma once

#include <cstdint>

#include "automation/event_info.h"
#include "core/document_events.h"

namespace vndoc6 {

class vnTemplate;

// Derive from this, override what you want to hear of, and pass it to
// vnTemplateLibrary::AddListener. What is said of DocumentListener holds here too.
class TemplateLibraryListener {
 public:
  virtual ~TemplateLibraryListener() = default;

  virtual void Loading(int16_t /*eiPercent*/) {}
  virtual void LoadComplete() {}
  virtual void LoadFailed(int32_t /*elFailCode*/) {}
  virtual void Saving(int16_t /*eiPercent*/) {}
  virtual void SaveComplete() {}
  virtual void SaveFailed(int32_t /*elFailCode*/) {}
  virtual void ReportTemplateChange(vnTemplate& /*eoTemplate*/,
                                    EnumVantrelChangeEvent /*elEventType*/,
                                    int32_t /*elDetailID*/) {}
  virtual void FigureTemplateChange(vnTemplate& /*eoTemplate*/,
                                    EnumVantrelChangeEvent /*elEventType*/,
                                    int32_t /*elDetailID*/) {}
  virtual void RevisionTemplateChange(vnTemplate& /*eoTemplate*/,
                                      EnumVantrelChangeEvent /*elEventType*/,
                                      int32_t /*elDetailID*/) {}
  virtual void FileTemplateChange(vnTemplate& /*eoTemplate*/,
                                  EnumVantrelChangeEvent /*elEventType*/, int32_t /*elDetailID*/) {}
  virtual void JumpTemplateChange(vnTemplate& /*eoTemplate*/,
                                  EnumVantrelChangeEvent /*elEventType*/, int32_t /*elDetailID*/) {}
};

// The published event interface __vnTemplateLibrary.
const automation::EventInterfaceInfo& TemplateLibraryEvents();

// Hands every event of a library on to a sink as data.
class TemplateLibraryEventForwarder final : public TemplateLibraryListener {
 public:
  explicit TemplateLibraryEventForwarder(automation::EventSink& sink) : sink_(sink) {}
  const automation::EventSink* sink() const { return &sink_; }

  void Loading(int16_t eiPercent) override;
  void LoadComplete() override;
  void LoadFailed(int32_t elFailCode) override;
  void Saving(int16_t eiPercent) override;
  void SaveComplete() override;
  void SaveFailed(int32_t elFailCode) override;
  void ReportTemplateChange(vnTemplate& eoTemplate, EnumVantrelChangeEvent elEventType,
                            int32_t elDetailID) override;
  void FigureTemplateChange(vnTemplate& eoTemplate, EnumVantrelChangeEvent elEventType,
                            int32_t elDetailID) override;
  void RevisionTemplateChange(vnTemplate& eoTemplate, EnumVantrelChangeEvent elEventType,
                              int32_t elDetailID) override;
  void FileTemplateChange(vnTemplate& eoTemplate, EnumVantrelChangeEvent elEventType,
                          int32_t elDetailID) override;
  void JumpTemplateChange(vnTemplate& eoTemplate, EnumVantrelChangeEvent elEventType,
                          int32_t elDetailID) override;

 private:
  automation::EventSink& sink_;
};

}  // namespace vndoc6
