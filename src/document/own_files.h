// OwnFiles: what a document knows of the files that it was loaded from and saved to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/document/not_read.h"

namespace vndoc6 {

class OwnFiles {
 public:
  // Until LoadEnded says otherwise, nothing of the file counts as read. `text` is all of it.
  void LoadBegins(const Text& name, const bag::KeptText& text);
  void LoadEnded(bool whole);
  void Saved(const Text& name, std::string_view text);

  // False when the document holds less than the file of that name: its load did not come to a good
  // end, or some text of it turned out to be at fault. True for a file that it was never loaded
  // from: what a host replaces by another document, it means to.
  bool IsReadWhole(const Text& name) const;
  // Whether there is other content in the file than when it was loaded or saved last, or no file.
  bool HasChanged(const Text& name) const;
  // Of the file that was loaded last.
  std::vector<NotRead> WhatWasNotRead() const;

 private:
  struct File {
    Text name;
    std::optional<platform::FileIdentity> identity;
    size_t size = 0;
    uint64_t checksum = 0;
    bool read_whole = false;
    // How many faults were known when all of them were in this file.
    size_t faults = 0;
  };

  const File* Find(const Text& name) const;
  void Put(const Text& name, std::string_view text, bool read_whole);

  std::vector<File> files_;
  std::shared_ptr<bag::FaultLog> faults_ = std::make_shared<bag::FaultLog>();
  // The size of the file that was loaded last, unless that came to a good end.
  std::optional<size_t> broken_off_;
};

}  // namespace vndoc6
