#include "document/PageFiles.h"

#include <gtest/gtest.h>

#include "tests/support/Errors.h"
#include "tests/support/ScriptedDesktop.h"
#include "trap/Trap.h"

namespace kw {
namespace {

using test::ErrorOf;

class WorkFolderTest : public testing::Test {
protected:
  ~WorkFolderTest() override { AppDir.clear(); }
  test::ScriptedDesktop desktop;
};

TEST_F(WorkFolderTest, ABlankAppDirGivesTheExecutablesFolder) {
  for (const char* blank : {"", " ", "   "}) {
    AppDir = blank;
    EXPECT_EQ(GetWorkFolder(desktop), "C:\\Program Files\\Host\\");
  }
}

TEST_F(WorkFolderTest, AnExecutableInTheRootGetsNoSecondBackslash) {
  desktop.applicationFolder = "C:\\";
  EXPECT_EQ(GetWorkFolder(desktop), "C:\\");
}

TEST_F(WorkFolderTest, AppDirGetsAMissingBackslashAndKeepsItsBlanks) {
  AppDir = "C:\\w";
  EXPECT_EQ(GetWorkFolder(desktop), "C:\\w\\");
  AppDir = "C:\\w\\";
  EXPECT_EQ(GetWorkFolder(desktop), "C:\\w\\");
  AppDir = " C:\\w ";
  EXPECT_EQ(GetWorkFolder(desktop), " C:\\w \\");
}

TEST_F(WorkFolderTest, TheScratchBitmapIsNamedByTheAbsoluteNumberOfTheProcess) {
  AppDir = "C:\\app\\";
  EXPECT_EQ(GetTempImagePath(desktop), "C:\\app\\tmp1234.bmp");
  desktop.processNumber = -77;
  EXPECT_EQ(GetTempImagePath(desktop), "C:\\app\\tmp77.bmp");
  desktop.processNumber = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(GetTempImagePath(desktop), "C:\\app\\tmp2147483648.bmp");
}

TEST_F(WorkFolderTest, TheScratchBitmapsOfTwoMachinesHaveDifferentNames) {
  desktop.machineName = "desk";
  const std::string first = GetTempImagePath(desktop);
  EXPECT_EQ(GetTempImagePath(desktop), first);
  desktop.machineName = "till";
  EXPECT_NE(GetTempImagePath(desktop), first);
}

TEST(PageFileName, StandsBesideTheDocument) {
  EXPECT_EQ(GetPageFileName("C:\\docs\\scan.tif", 1), "C:\\docs\\scan_Page_1.tif");
  EXPECT_EQ(GetPageFileName("C:\\docs\\letter.tif", 3), "C:\\docs\\letter_Page_3.tif");
}

TEST(PageFileName, ThePartBehindTheLastDotIsTheExtension) {
  EXPECT_EQ(GetPageFileName("a.b.c.bmp", 10), "a.b.c_Page_10.bmp");
}

TEST(PageFileName, ADotOnlyInTheFolderPutsThePageIntoTheParentFolder) {
  EXPECT_EQ(GetPageFileName("C:\\a.b\\file", 1), "C:\\a_Page_1.b\\file");
}

TEST(PageFileName, OfAPathWithoutADotIsAnInvalidCall) {
  EXPECT_EQ(ErrorOf([] { static_cast<void>(GetPageFileName("C:\\docs\\scan", 1)); }), 5);
}

TEST(PageFileName, HoldsLettersOfEveryScript) {
  EXPECT_EQ(GetPageFileName("C:\\Gr\xC3\xBC\xC3\x9F"
                            "e\\\xE6\x96\x87.tif",
                            2),
            "C:\\Gr\xC3\xBC\xC3\x9F"
            "e\\\xE6\x96\x87_Page_2.tif");
}

TEST(SourceFileName, IsTheInverseOfAPageFileName) {
  EXPECT_EQ(GetSourceFileName("C:\\docs\\scan_Page_1.tif"), "C:\\docs\\scan.tif");
  EXPECT_EQ(GetSourceFileName(GetPageFileName("a.b.c.bmp", 32767)), "a.b.c.bmp");
}

TEST(SourceFileName, EndsBeforeTheFirstMarker) { EXPECT_EQ(GetSourceFileName("x_Page_12_Page_1.bmp"), "x.bmp"); }

TEST(SourceFileName, WithoutADotOrAMarkerIsAnInvalidCall) {
  EXPECT_EQ(ErrorOf([] { static_cast<void>(GetSourceFileName("x_Page_1")); }), 5);
  EXPECT_EQ(ErrorOf([] { static_cast<void>(GetSourceFileName("x.bmp")); }), 5);
}

TEST(FirstPageFile, IsRecognisedLoosely) {
  EXPECT_TRUE(IsFirstPageFile("x_Page_1.bmp"));
  EXPECT_TRUE(IsFirstPageFile("x_Page_12_1.bmp"));
  EXPECT_FALSE(IsFirstPageFile("x_Page_10.bmp"));
  EXPECT_FALSE(IsFirstPageFile("x.bmp"));
  EXPECT_FALSE(IsFirstPageFile("x_1._Page_2.bmp"));
}

}  // namespace
}  // namespace kw
