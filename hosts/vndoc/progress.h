// Progress: a bar on the terminal while a document is loaded or saved, from the document's events.
#pragma once

#include <string>

#include "command.h"

namespace vndoc {

class Progress : public vndoc6::DocumentListener {
 public:
  // Shows nothing unless it was asked for and a person is looking.
  Progress(Context& context, vnDocument& document, std::string title);
  ~Progress() override;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Loading(int16_t eiPercent) override { Draw(eiPercent); }
  void Saving(int16_t eiPercent) override { Draw(eiPercent); }

 private:
  void Draw(int percent);

  Context& context_;
  vnDocument& document_;
  std::string title_;
  bool drawn_ = false;
};

}  // namespace vndoc
