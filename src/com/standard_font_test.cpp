#include "com/standard_font.h"

#include "com/host_for_tests.h"

namespace vndoc6::com {
namespace {

using automation::FontValues;

class StandardFontTest : public DoorTest {};

TEST_F(StandardFontTest, BeginsAsTheLibrarysFontAndIsTheSameForHostAndModel) {
  const auto gadget = MakeGadget();
  const auto font = Get(gadget, L"Font").value.Object();
  ASSERT_TRUE(font.As<IFontDisp>());
  EXPECT_EQ(ReadFont(*GadgetOf(gadget).GetFont()), FontValues{});

  EXPECT_EQ(Put(font, L"Bold", true).code, S_OK);
  EXPECT_EQ(Put(font, L"Size", 12.0).code, S_OK);
  const FontValues changed = ReadFont(*GadgetOf(gadget).GetFont());
  EXPECT_TRUE(changed.bold);
  EXPECT_EQ(changed.size, Currency{120000});

  WriteFont(*GadgetOf(gadget).GetFont(), {false, true, u"Tahoma", {90000}, true, true});
  EXPECT_EQ(Get(font, L"Italic").value.boolVal, VARIANT_TRUE);
  EXPECT_EQ(Get(font, L"Strikethrough").value.boolVal, VARIANT_TRUE);
  EXPECT_EQ(Get(gadget, L"Font").value.Object().get(), font.get());
}

TEST_F(StandardFontTest, AFontOfTheHostIsTaken) {
  const auto gadget = MakeGadget();
  const auto other = MakeGadget();
  const auto font = Get(gadget, L"Font").value.Object();
  EXPECT_EQ(Put(other, L"Font", font, DISPATCH_PROPERTYPUTREF).code, S_OK);
  EXPECT_EQ(Get(other, L"Font").value.Object().get(), font.get());
}

TEST_F(StandardFontTest, ReportsChangesByWhomever) {
  const Ref<automation::Font> font = MakeStandardFont();
  int changes = 0;
  font->Listen([&] { ++changes; });
  const auto dispatch = ExportObject(*font);
  Put(dispatch, L"Underline", true);
  EXPECT_EQ(changes, 1);
  font->SetItalic(true);
  EXPECT_EQ(changes, 2);
  font->Listen(nullptr);
  Put(dispatch, L"Underline", false);
  EXPECT_EQ(changes, 2);
}

TEST_F(StandardFontTest, OutlivesTheModelInAHostsHands) {
  ComPtr<IDispatch> font;
  {
    const Ref<automation::Font> owned = MakeStandardFont();
    owned->Listen([] { FAIL() << "nobody is left to tell"; });
    font = ExportObject(*owned);
  }
  EXPECT_EQ(Put(font, L"Bold", true).code, S_OK);
}

TEST_F(StandardFontTest, MayBeDroppedWhileItReports) {
  Ref<automation::Font> font = MakeStandardFont();
  const auto dispatch = ExportObject(*font);
  font->Listen([&] { font = {}; });
  EXPECT_EQ(Put(dispatch, L"Bold", true).code, S_OK);
}

}  // namespace
}  // namespace vndoc6::com
