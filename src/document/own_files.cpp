#include "document/own_files.h"

#include <algorithm>

#include "bag/bag_file.h"
#include "platform/checksum.h"

namespace vndoc6 {

void OwnFiles::LoadBegins(const Text& name, const bag::KeptText& text) {
  text.LogFaults(faults_);
  Put(name, text.raw(), false);
  broken_off_ = text.raw().size();
}

void OwnFiles::LoadEnded(bool whole) {
  files_.back().read_whole = whole;
  if (whole) broken_off_.reset();
}

void OwnFiles::Saved(const Text& name, std::string_view text) { Put(name, text, true); }

bool OwnFiles::IsReadWhole(const Text& name) const {
  const File* const file = Find(name);
  return file == nullptr || (file->read_whole && file->faults == faults_->count());
}

bool OwnFiles::HasChanged(const Text& name) const {
  const File* const file = Find(name);
  if (file == nullptr) return false;
  const std::optional<bag::KeptText> text = bag::ReadTextFile(name);
  if (!text || text->raw().size() != file->size) return true;
  return platform::Checksum(text->raw()) != file->checksum;
}

std::vector<NotRead> OwnFiles::WhatWasNotRead() const {
  if (broken_off_) return {{{}, 0, *broken_off_}};
  return FindNotRead(faults_->File());
}

// A file may have several names, and another one may have come under a known name.
const OwnFiles::File* OwnFiles::Find(const Text& name) const {
  const auto found = std::find_if(files_.begin(), files_.end(),
                                  [&](const File& file) { return file.name == name; });
  if (found != files_.end()) return &*found;
  const std::optional<platform::FileIdentity> identity = platform::IdentityOf(name);
  if (!identity) return nullptr;
  const auto same = std::find_if(files_.begin(), files_.end(),
                                 [&](const File& file) { return file.identity == identity; });
  return same != files_.end() ? &*same : nullptr;
}

// The last one comes to the end.
void OwnFiles::Put(const Text& name, std::string_view text, bool read_whole) {
  std::erase_if(files_, [&](const File& file) { return file.name == name; });
  files_.push_back({name, platform::IdentityOf(name), text.size(), platform::Checksum(text),
                    read_whole, faults_->count()});
}

}  // namespace vndoc6
