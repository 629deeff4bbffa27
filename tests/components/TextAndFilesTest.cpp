#include <gtest/gtest.h>

#include "components/FilePath.h"
#include "components/Files.h"
#include "components/RunTimeError.h"
#include "components/Unicode.h"
#include "support/Errors.h"
#include "support/TemporaryFolder.h"

namespace kw {
namespace {

using test::ErrorOf;
using test::ReadWhole;

TEST(Unicode, ConvertsEveryPlaneBothWays) {
  const std::string text = "A\xC3\xA4\xE6\x96\x87\xF0\x9F\x96\x8B";
  const std::u16string wide = u"A\u00E4\u6587\U0001F58B";
  EXPECT_EQ(Utf16FromUtf8(text), wide);
  EXPECT_EQ(Utf8FromUtf16(wide), text);
}

TEST(Unicode, KeepsALoneSurrogate) {
  const std::u16string lone{u'a', char16_t{0xD800}, u'b'};
  EXPECT_EQ(Utf16FromUtf8(Utf8FromUtf16(lone)), lone);
}

TEST(Unicode, ReplacesBytesThatAreNoUtf8) {
  EXPECT_EQ(Utf16FromUtf8("a\xFF"
                          "b"),
            u"a\uFFFDb");
  EXPECT_EQ(Utf16FromUtf8("\xC3"), u"\uFFFD");
  EXPECT_EQ(Utf16FromUtf8("\xC0\xAF").find(u'/'), std::u16string::npos);  // an overlong slash
}

TEST(Files, AppendCreatesTheFileAndAddsToItsEnd) {
  const test::TemporaryFolder folder;
  AppendToFile(folder.File("log.txt"), "one");
  AppendToFile(folder.File("log.txt"), "two");
  EXPECT_EQ(ReadWhole(folder.File("log.txt")), "onetwo");
}

TEST(Files, AppendTakesUnicodeNames) {
  const test::TemporaryFolder folder;
  const std::string path = folder.File("\xE6\x96\x87 \xC3\xA9.txt");
  AppendToFile(path, "x");
  EXPECT_EQ(ReadWhole(path), "x");
}

TEST(Files, AppendToWhatCannotBeWrittenIsAnErrorWithTheSystemsCode) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(ErrorOf([&] { AppendToFile(folder.File("missing\\log.txt"), "x"); }), 76);
  try {
    AppendToFile(folder.File("missing\\log.txt"), "x");
    FAIL() << "no error came";
  } catch (const RunTimeError& error) {
    EXPECT_NE(error.LastDllError(), 0);
  }
  EXPECT_NE(ErrorOf([&] { AppendToFile(folder.Path(), "x"); }), 0);
}

TEST(Files, LookUpFindsFilesOnly) {
  const test::TemporaryFolder folder;
  test::WriteWhole(folder.File("D_Page_2.tif"), "x");
  EXPECT_EQ(LookUpFile(folder.File("D_Page_2.tif")), "D_Page_2.tif");
  EXPECT_EQ(LookUpFile(folder.File("D_Page_3.tif")), "");
  EXPECT_EQ(LookUpFile(folder.Path()), "");
}

TEST(Files, RemoveOfAMissingFileIsError53) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(ErrorOf([&] { RemoveFileAt(folder.File("none.bmp")); }), 53);
  test::WriteWhole(folder.File("some.bmp"), "x");
  RemoveFileAt(folder.File("some.bmp"));
  EXPECT_FALSE(test::Exists(folder.File("some.bmp")));
}

TEST(RunTimeErrors, CarryTheRunTimesTextAndSource) {
  const RunTimeError error(ErrorNumber::InvalidProcedureCall);
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "Invalid procedure call or argument");
  EXPECT_EQ(error.Source(), "KwEditor");
  EXPECT_EQ(ErrorDescription(53), "File not found");
  EXPECT_EQ(ErrorDescription(12345), "Application-defined or object-defined error");
}

}  // namespace
}  // namespace kw
