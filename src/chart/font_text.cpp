#include "chart/font_text.h"

#include <optional>
#include <utility>
#include <vector>

#include "automation/services.h"
#include "chart/field_table.h"

namespace vndoc6 {
namespace {

using automation::FontValues;

// The keys are in every file: never change one. The number of a row is not used: a font tells of
// changes itself.
constexpr std::tuple kFields{
    row(&FontValues::bold, "F.B", false, 0),
    row(&FontValues::italic, "F.I", false, 0),
    row(&FontValues::name, "F.N", u"Tahoma", 0),
    row(&FontValues::size, "F.S", automation::Currency{90000}, 0),
    row(&FontValues::strikethrough, "F.St", false, 0),
    row(&FontValues::underline, "F.U", false, 0),
};

}  // namespace

void WriteFontText(bag::BagWriter& writer, const automation::Font& font) {
  WriteFields(writer, kFields, automation::ReadFont(font));
}

FontValues ReadFontText(bag::BagReader& reader) {
  FontValues values;
  ReadFields(reader, kFields, values);
  return values;
}

automation::Ref<automation::Font> CopyFont(const automation::Font* font) {
  if (font == nullptr) return nullptr;
  automation::Ref<automation::Font> copy = automation::services().make_font();
  automation::WriteFont(*copy, automation::ReadFont(*font));
  return copy;
}

automation::Ref<automation::Picture> CopyPicture(const automation::Picture* picture) {
  return picture != nullptr ? automation::services().make_picture(picture->Bytes()) : nullptr;
}

automation::Ref<automation::Picture> ReadPicture(bag::BagReader& reader, std::string_view key) {
  std::optional<std::vector<uint8_t>> bytes = reader.GetPicture(key);
  return bytes ? automation::services().make_picture(std::move(*bytes)) : nullptr;
}

}  // namespace vndoc6
