// Font: what the library asks of a font object, whoever made it.
#pragma once

#include <functional>
#include <memory>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {

// A font as a value.
struct FontValues {
  bool bold = false;
  bool italic = false;
  Text name = u"Tahoma";
  Currency size{90000};  // points
  bool strikethrough = false;
  bool underline = false;
  friend bool operator==(const FontValues&, const FontValues&) = default;
};

// A font object that hosts share with the library. Late-bound members: Name, Size, Bold, Italic,
// Underline, Strikethrough.
class Font : public Object {
 public:
  static const ClassInfo& classInfo();
  const ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The typeface; "Tahoma" in a new font.
  virtual Text Name() const = 0;
  virtual void SetName(const Text& name) = 0;
  // The height in points; 9 in a new font.
  virtual Currency Size() const = 0;
  virtual void SetSize(Currency size) = 0;
  // Whether it is bold; False in a new font.
  virtual bool Bold() const = 0;
  virtual void SetBold(bool bold) = 0;
  // Whether it is slanted; False in a new font.
  virtual bool Italic() const = 0;
  virtual void SetItalic(bool italic) = 0;
  // Whether it is underlined; False in a new font.
  virtual bool Underline() const = 0;
  virtual void SetUnderline(bool underline) = 0;
  // Whether it is struck out; False in a new font.
  virtual bool Strikethrough() const = 0;
  virtual void SetStrikethrough(bool strikethrough) = 0;

  // Called after each change of any of the font's properties, by whomever; null for nobody.
  // A font has one listener at the most: the figure that owns it.
  void Listen(std::function<void()> on_change) { on_change_ = std::move(on_change); }

 protected:
  // Called by implementations after a property was set.
  void ReportChange() {
    // A copy: the listener may replace or drop this font.
    if (const auto on_change = on_change_) on_change();
  }

 private:
  std::function<void()> on_change_;
};

// The values of a font object.
FontValues ReadFont(const Font& font);
// Sets bold, italic, name, size, strikethrough and underline, in this order, each with its change.
void WriteFont(Font& font, const FontValues& values);

// The portable font: a plain value. Setting a property reports a change even when it is the same.
Ref<Font> MakePlainFont();

}  // namespace vndoc6::automation
