// What figures, lines and the chart have in common: a font in six entries of their saved text, a
// picture in one.
#pragma once

#include <string_view>

#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/automation/picture.h"

namespace vndoc6 {

void WriteFontText(bag::BagWriter& writer, const automation::Font& font);
// Missing entries give Tahoma, size 9, plain.
automation::FontValues ReadFontText(bag::BagReader& reader);

// Another font object of the same values; null for null.
automation::Ref<automation::Font> CopyFont(const automation::Font* font);

// Another picture of the same image, for a host may load another one into a picture; null for null.
automation::Ref<automation::Picture> CopyPicture(const automation::Picture* picture);

// The picture under the key; null when there is none or the entry is something else.
automation::Ref<automation::Picture> ReadPicture(bag::BagReader& reader, std::string_view key);

}  // namespace vndoc6
