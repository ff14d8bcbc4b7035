#include "vndoc6/automation/font.h"

namespace vndoc6::automation {
namespace {

class PlainFont : public Font {
 public:
  Text Name() const override { return values_.name; }
  void SetName(const Text& name) override { Set(values_.name, name); }
  Currency Size() const override { return values_.size; }
  void SetSize(Currency size) override { Set(values_.size, size); }
  bool Bold() const override { return values_.bold; }
  void SetBold(bool bold) override { Set(values_.bold, bold); }
  bool Italic() const override { return values_.italic; }
  void SetItalic(bool italic) override { Set(values_.italic, italic); }
  bool Underline() const override { return values_.underline; }
  void SetUnderline(bool underline) override { Set(values_.underline, underline); }
  bool Strikethrough() const override { return values_.strikethrough; }
  void SetStrikethrough(bool strikethrough) override { Set(values_.strikethrough, strikethrough); }

 private:
  template <class T>
  void Set(T& field, const T& value) {
    field = value;
    ReportChange();
  }
  FontValues values_;
};

}  // namespace

FontValues ReadFont(const Font& font) {
  return {font.Bold(), font.Italic(),        font.Name(),
          font.Size(), font.Strikethrough(), font.Underline()};
}

void WriteFont(Font& font, const FontValues& values) {
  font.SetBold(values.bold);
  font.SetItalic(values.italic);
  font.SetName(values.name);
  font.SetSize(values.size);
  font.SetStrikethrough(values.strikethrough);
  font.SetUnderline(values.underline);
}

Ref<Font> MakePlainFont() { return Make<PlainFont>(); }

}  // namespace vndoc6::automation
