#include "vndoc6/process/file.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "tests/support/saved_text.h"

namespace vndoc6 {
namespace {

using automation::Make;
using testing::Kept;
using testing::SavedText;

TEST(File, SavesItsNumberOnlyWhenItHasOne) {
  const auto file = Make<vnFile>();
  file->SetKey(u"k");
  file->SetDisplayName(u"Form");
  file->SetFileName(uR"(C:\"forms"\a.doc)");
  EXPECT_EQ(SavedText(*file), R"(K=~64"k":DN=~64"Form":FN=~64"C:\^jforms^j\a.doc":)");
  file->SetDocID(7);
  EXPECT_EQ(SavedText(*file), R"(K=~64"k":DN=~64"Form":FN=~64"C:\^jforms^j\a.doc":DID=7:)");

  const auto loaded = Make<vnFile>();
  Inside::Read(*loaded, Kept(SavedText(*file)), u"given");
  EXPECT_EQ(loaded->Key(), u"given");
  Inside::Read(*loaded, Kept("DID=~64\"none\":"), Text());
  EXPECT_EQ(SavedText(*loaded), R"(K=~64"":DN=~64"":FN=~64"":)");
}

}  // namespace
}  // namespace vndoc6
