#include "com/standard_picture.h"

#include "com/host_for_tests.h"

namespace vndoc6::com {
namespace {

using Bytes = std::vector<uint8_t>;

// One transparent pixel.
const Bytes kGif = {'G',  'I', 'F', '8', '9',  'a',  1, 0, 1, 0,    0x80, 0, 0,    0xFF, 0xFF,
                    0xFF, 0,   0,   0,   0x21, 0xF9, 4, 1, 0, 0,    0,    0, 0x2C, 0,    0,
                    0,    0,   1,   0,   1,    0,    0, 2, 2, 0x44, 1,    0, 0x3B};
// Two pixels, 24 bits each.
const Bytes kBmp = {'B', 'M', 62, 0, 0, 0, 0, 0,  0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 2, 0, 0,
                    0,   1,   0,  0, 0, 1, 0, 24, 0, 0, 0,  0, 0, 8, 0,  0, 0, 0, 0, 0, 0,
                    0,   0,   0,  0, 0, 0, 0, 0,  0, 0, 0,  0, 1, 2, 3,  4, 5, 6, 0, 0};

class StandardPictureTest : public DoorTest {
 protected:
  static SHORT TypeOf(const ComPtr<IDispatch>& picture) { return Get(picture, L"Type").value.iVal; }
};

TEST_F(StandardPictureTest, BytesPassThroughThePlatformsObjectUnchanged) {
  for (const Bytes& bytes : {kGif, kBmp}) {
    const auto gadget = MakeGadget();
    GadgetOf(gadget).SetPicture(automation::services().make_picture(bytes).get());
    const auto picture = Get(gadget, L"Picture").value.Object();
    EXPECT_EQ(TypeOf(picture), PICTYPE_BITMAP);
    EXPECT_EQ(Get(gadget, L"Picture").value.Object().get(), picture.get());

    // The host hands the platform's object on.
    const auto other = MakeGadget();
    EXPECT_EQ(Put(other, L"Picture", picture, DISPATCH_PROPERTYPUTREF).code, S_OK);
    EXPECT_EQ(GadgetOf(other).GetPicture()->Bytes(), bytes);
  }
}

TEST_F(StandardPictureTest, AnEmptyPictureIsAnEmptyPlatformObject) {
  const Ref<automation::Picture> empty = automation::services().make_picture({});
  EXPECT_EQ(TypeOf(ExportObject(*empty)), PICTYPE_UNINITIALIZED);
  EXPECT_EQ(empty->Bytes(), Bytes());
}

TEST_F(StandardPictureTest, BytesThatAreNoImageAreKeptAndRefusedToHosts) {
  const Bytes garbage = {'n', 'o', ' ', 'i', 'm', 'a', 'g', 'e', 0, 1};
  const auto gadget = MakeGadget();
  GadgetOf(gadget).SetPicture(automation::services().make_picture(garbage).get());
  EXPECT_EQ(Get(gadget, L"Picture").scode, static_cast<HRESULT>(0x800A0000 + 481));
  EXPECT_EQ(GadgetOf(gadget).GetPicture()->Bytes(), garbage);
}

}  // namespace
}  // namespace vndoc6::com
