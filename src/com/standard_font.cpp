#include "com/standard_font.h"

#include "com/com_object.h"
#include "com/entry.h"

namespace vndoc6::com {

using automation::Currency;

// Hands the platform's notification on. Counted by the font object, so it may outlive the adapter
// for as long as a running notification holds it.
class StandardFont::ChangeSink final : public ComObject<IPropertyNotifySink> {
 public:
  explicit ChangeSink(StandardFont& font) : font_(&font) {}

  STDMETHODIMP OnChanged(DISPID) override {
    // Keeps the DLL, when whoever listens lets go of the font.
    const ComPtr<IPropertyNotifySink> staying(this);
    return Enter([&] {
      const automation::Ref<StandardFont> running(font_.get());
      if (running) running->ReportChange();
      return S_OK;
    });
  }
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

 private:
  const automation::Weak<StandardFont> font_;
};

StandardFont::StandardFont(ComPtr<IFont> font) : font_(std::move(font)) {
  const auto container = font_.As<IConnectionPointContainer>();
  if (!container) return;
  if (FAILED(container->FindConnectionPoint(IID_IPropertyNotifySink, changes_.Receive()))) return;
  const auto sink = MakeCom<ChangeSink>(*this);
  Check(changes_->Advise(sink.get(), &cookie_));
}

StandardFont::~StandardFont() {
  if (changes_) changes_->Unadvise(cookie_);
}

Text StandardFont::Name() const {
  OwnedBstr name;
  Check(font_->get_Name(name.Receive()));
  return Text(name.text());
}
void StandardFont::SetName(const Text& name) { Check(font_->put_Name(OwnedBstr(name).get())); }

Currency StandardFont::Size() const {
  CY size{};
  Check(font_->get_Size(&size));
  return {size.int64};
}
void StandardFont::SetSize(Currency size) {
  CY platform_size{};
  platform_size.int64 = size.scaled;
  Check(font_->put_Size(platform_size));
}

bool StandardFont::Flag(HRESULT (STDMETHODCALLTYPE IFont::*get)(BOOL*)) const {
  BOOL flag = FALSE;
  Check((font_.get()->*get)(&flag));
  return flag != FALSE;
}
bool StandardFont::Bold() const { return Flag(&IFont::get_Bold); }
void StandardFont::SetBold(bool bold) { Check(font_->put_Bold(bold)); }
bool StandardFont::Italic() const { return Flag(&IFont::get_Italic); }
void StandardFont::SetItalic(bool italic) { Check(font_->put_Italic(italic)); }
bool StandardFont::Underline() const { return Flag(&IFont::get_Underline); }
void StandardFont::SetUnderline(bool underline) { Check(font_->put_Underline(underline)); }
bool StandardFont::Strikethrough() const { return Flag(&IFont::get_Strikethrough); }
void StandardFont::SetStrikethrough(bool strikethrough) {
  Check(font_->put_Strikethrough(strikethrough));
}

automation::Ref<automation::Font> MakeStandardFont() {
  wchar_t name[] = L"Tahoma";
  FONTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = name;
  description.cySize.int64 = 90000;
  description.sWeight = FW_NORMAL;
  description.sCharset = DEFAULT_CHARSET;
  void* font = nullptr;
  Check(OleCreateFontIndirect(&description, IID_IFont, &font));
  return automation::Make<StandardFont>(ComPtr<IFont>::Adopt(static_cast<IFont*>(font)));
}

}  // namespace vndoc6::com
