#include "theme.h"

#include "markup.h"

namespace vndoc6::drawing {
namespace {

constexpr int32_t kBlack = 0;
constexpr int32_t kWhite = 0xFFFFFF;

}  // namespace

std::string Palette::Back(int32_t colour) const {
  if (theme_ == Theme::kPrint) return Colour(kWhite);
  return theme_ == Theme::kDark && colour == kWhite ? "#12161d" : Colour(colour);
}

std::string Palette::Fill(int32_t colour) const {
  if (theme_ == Theme::kPrint) return Colour(kWhite);
  return theme_ == Theme::kDark && colour == kWhite ? "#1b2029" : Colour(colour);
}

std::string Palette::Pen(int32_t colour) const {
  if (theme_ == Theme::kPrint) return Colour(kBlack);
  return theme_ == Theme::kDark && colour == kBlack ? "#c3cad6" : Colour(colour);
}

std::string Palette::Ink(int32_t colour, int32_t fill) const {
  if (theme_ == Theme::kPrint) return Colour(kBlack);
  // On a colour of the document the text keeps its own.
  const bool usual = colour == kBlack && fill == kWhite;
  return theme_ == Theme::kDark && usual ? "#e6e9ef" : Colour(colour);
}

}  // namespace vndoc6::drawing
