// StandardFont: the platform's font object as the library's Font. Controls and scripts share it;
// whoever changes it, the library hears of it.
#pragma once

#include "com/com.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::com {

class StandardFont final : public automation::Font {
 public:
  explicit StandardFont(ComPtr<IFont> font);
  ~StandardFont() override;

  const ComPtr<IFont>& font() const { return font_; }

  // The name, which is the default member of the platform's fonts.
  automation::Variant DefaultValue() override { return Name(); }

  Text Name() const override;
  void SetName(const Text& name) override;
  automation::Currency Size() const override;
  void SetSize(automation::Currency size) override;
  bool Bold() const override;
  void SetBold(bool bold) override;
  bool Italic() const override;
  void SetItalic(bool italic) override;
  bool Underline() const override;
  void SetUnderline(bool underline) override;
  bool Strikethrough() const override;
  void SetStrikethrough(bool strikethrough) override;

 private:
  class ChangeSink;
  bool Flag(HRESULT (STDMETHODCALLTYPE IFont::*get)(BOOL*)) const;

  const ComPtr<IFont> font_;
  ComPtr<IConnectionPoint> changes_;  // null when the font doesn't tell of its changes
  DWORD cookie_ = 0;
};

// A new Tahoma, size 9, plain.
automation::Ref<automation::Font> MakeStandardFont();

}  // namespace vndoc6::com
