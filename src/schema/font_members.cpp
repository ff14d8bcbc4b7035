// What is published of Font.
#include "schema/rows.h"
#include "vndoc6/automation/font.h"

namespace vndoc6::automation {

const ClassInfo& Font::classInfo() {
  using namespace schema;
  static const ClassInfo info(
      "Font", "A font that hosts share with the library.", {}, {}, nullptr,
      MembersOf(std::tuple{
          property<&Font::Name, &Font::SetName>("Name", "psName"),
          property<&Font::Size, &Font::SetSize>("Size", "pcSize"),
          property<&Font::Bold, &Font::SetBold>("Bold", "pbBold"),
          property<&Font::Italic, &Font::SetItalic>("Italic", "pbItalic"),
          property<&Font::Underline, &Font::SetUnderline>("Underline", "pbUnderline"),
          property<&Font::Strikethrough, &Font::SetStrikethrough>("Strikethrough",
                                                                  "pbStrikethrough"),
      }));
  return info;
}

}  // namespace vndoc6::automation
