#include "chart/font_text.h"

#include <optional>
#include <utility>
#include <vector>

#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "vndoc6/automation/services.h"

namespace vndoc6 {
namespace {

using automation::FontValues;

struct FontSchema {
  static constexpr std::tuple kRows{
      schema::unpublished(&FontValues::bold, "F.B"),
      schema::unpublished(&FontValues::italic, "F.I"),
      schema::unpublished(&FontValues::name, "F.N").missing(u"Tahoma"),
      schema::unpublished(&FontValues::size, "F.S").missing(automation::Currency{90000}),
      schema::unpublished(&FontValues::strikethrough, "F.St"),
      schema::unpublished(&FontValues::underline, "F.U"),
  };
};

}  // namespace

void WriteFontText(bag::BagWriter& writer, const automation::Font& font) {
  const FontValues values = automation::ReadFont(font);
  schema::WriteEntries<FontSchema>(writer, values, values);
}

FontValues ReadFontText(bag::BagReader& reader) {
  FontValues values;
  schema::ReadEntries<FontSchema>(reader, values, values);
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
