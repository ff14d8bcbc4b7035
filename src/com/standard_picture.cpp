#include "com/standard_picture.h"

#include "com/entry.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::com {
namespace {

constexpr int32_t kInvalidPicture = 481;

ComPtr<IStream> MakeStream() {
  ComPtr<IStream> stream;
  Check(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
  return stream;
}

std::vector<uint8_t> ReadWhole(IStream& stream) {
  STATSTG status{};
  Check(stream.Stat(&status, STATFLAG_NONAME));
  Check(stream.Seek({}, STREAM_SEEK_SET, nullptr));
  std::vector<uint8_t> bytes(static_cast<size_t>(status.cbSize.QuadPart));
  ULONG count = 0;
  Check(stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count));
  bytes.resize(count);
  return bytes;
}

// The platform puts this before an image that it saves: "lt", two zeros, the number of bytes.
void DropStreamHeader(std::vector<uint8_t>& bytes) {
  constexpr size_t kHeader = 8;
  if (bytes.size() < kHeader) return;
  uint32_t head[2];
  std::memcpy(head, bytes.data(), sizeof head);
  if (head[0] != 0x0000746C || head[1] != bytes.size() - kHeader) return;
  bytes.erase(bytes.begin(), bytes.begin() + kHeader);
}

bool IsEmpty(IPicture& picture) {
  SHORT type = PICTYPE_UNINITIALIZED;
  Check(picture.get_Type(&type));
  return type == PICTYPE_UNINITIALIZED || type == PICTYPE_NONE;
}

std::vector<uint8_t> SavedBytes(const ComPtr<IPicture>& picture) {
  if (IsEmpty(*picture.get())) return {};
  const auto persistent = picture.As<IPersistStream>();
  if (!persistent) throw automation::Error(kInvalidPicture, u"Invalid picture.");
  const ComPtr<IStream> stream = MakeStream();
  Check(persistent->Save(stream.get(), FALSE));
  std::vector<uint8_t> bytes = ReadWhole(*stream.get());
  DropStreamHeader(bytes);
  return bytes;
}

ComPtr<IPicture> MakeEmptyPicture() {
  void* picture = nullptr;
  Check(OleCreatePictureIndirect(nullptr, IID_IPicture, TRUE, &picture));
  return ComPtr<IPicture>::Adopt(static_cast<IPicture*>(picture));
}

ComPtr<IPicture> LoadPictureBytes(const std::vector<uint8_t>& bytes) {
  const ComPtr<IStream> stream = MakeStream();
  const auto size = static_cast<ULONG>(bytes.size());
  Check(stream->Write(bytes.data(), size, nullptr));
  Check(stream->Seek({}, STREAM_SEEK_SET, nullptr));
  void* picture = nullptr;
  // Not in run mode: the picture keeps the bytes as they are, so that it saves them unchanged.
  if (FAILED(
          OleLoadPicture(stream.get(), static_cast<LONG>(size), FALSE, IID_IPicture, &picture))) {
    throw automation::Error(kInvalidPicture, u"Invalid picture.");
  }
  return ComPtr<IPicture>::Adopt(static_cast<IPicture*>(picture));
}

}  // namespace

automation::Variant StandardPicture::DefaultValue() {
  OLE_HANDLE handle = 0;
  Check(picture()->get_Handle(&handle));
  return static_cast<int32_t>(handle);
}

std::vector<uint8_t> StandardPicture::Bytes() const {
  // A host may have loaded another image into the object that it was given or that it made.
  if (bytes_.empty() && picture_) return SavedBytes(picture_);
  return bytes_;
}

const ComPtr<IPicture>& StandardPicture::picture() const {
  if (!picture_) picture_ = bytes_.empty() ? MakeEmptyPicture() : LoadPictureBytes(bytes_);
  return picture_;
}

}  // namespace vndoc6::com
