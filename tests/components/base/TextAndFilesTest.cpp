#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <map>
#include <sstream>
#include <thread>
#include <vector>

#include "components/base/FilePath.h"
#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "components/base/SystemFile.h"
#include "components/base/Unicode.h"
#include "tests/support/Errors.h"
#include "tests/support/TemporaryFolder.h"

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

TEST(Files, LinesOfTwoWritersDoNotMix) {
  const test::TemporaryFolder folder;
  const std::string path = folder.File("log.txt");
  constexpr int count = 300;
  std::vector<std::thread> writers;
  for (const char mark : {'a', 'b', 'c'}) {
    writers.emplace_back([&path, mark] {
      for (int i = 0; i < count; ++i) AppendToFile(path, std::string(200, mark) + "\n");
    });
  }
  for (std::thread& writer : writers) writer.join();
  std::map<std::string, int> lines;
  std::istringstream text(ReadWhole(path));
  for (std::string line; std::getline(text, line);) ++lines[line];
  EXPECT_EQ(lines,
            (std::map<std::string, int>{
                {std::string(200, 'a'), count}, {std::string(200, 'b'), count}, {std::string(200, 'c'), count}}));
}

TEST(Files, FoldersAreMadeAlsoWhereThePathIsLong) {
  const test::TemporaryFolder folder;
  const std::string deep =
      folder.File(std::string(100, 'a') + "\\" + std::string(100, 'b') + "\\" + std::string(100, 'c'));
  MakeFolders(deep);
  MakeFolders(deep + "\\");
  AppendToFile(deep + "\\log.txt", "x");
  EXPECT_EQ(LookUpFile(deep + "\\log.txt"), "log.txt");
  EXPECT_TRUE(IsSameFile(deep + "\\log.txt", deep + "\\..\\" + std::string(100, 'c') + "\\log.txt"));
  EXPECT_NE(ErrorOf([&] { MakeFolders(deep + "\\log.txt\\more"); }), 0);
  RemoveFileAt(deep + "\\log.txt");
}

TEST(Files, LockIsTakenInTurn) {
  const test::TemporaryFolder folder;
  const auto path = folder.Native() / "list.lock";
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  std::vector<std::thread> users;
  users.reserve(3);
  for (int user = 0; user < 3; ++user) {
    users.emplace_back([&] {
      for (int i = 0; i < 30; ++i) {
        const FileLock lock(path);
        EXPECT_TRUE(lock.IsHeld());
        most = std::max(most.load(), ++inside);
        std::this_thread::yield();
        --inside;
      }
    });
  }
  for (std::thread& user : users) user.join();
  EXPECT_EQ(most, 1);
  EXPECT_FALSE(std::filesystem::exists(path)) << "nothing is left of it";
  EXPECT_FALSE(FileLock(folder.Native() / "missing" / "list.lock").IsHeld());
}

TEST(Files, LookUpFindsFilesOnly) {
  const test::TemporaryFolder folder;
  test::WriteWhole(folder.File("D_Page_2.tif"), "x");
  EXPECT_EQ(LookUpFile(folder.File("D_Page_2.tif")), "D_Page_2.tif");
  EXPECT_EQ(LookUpFile(folder.File("D_Page_3.tif")), "");
  EXPECT_EQ(LookUpFile(folder.Path()), "");
}

TEST(Files, AFileIsOfTheSameKindWhetherItIsOpenedOrNot) {
  const test::TemporaryFolder folder;
  AppendToFile(folder.File("plain.txt"), "text");
  const std::filesystem::path& native = folder.Native();
  std::vector<std::filesystem::path> paths{
      native,           native / "plain.txt", native / "missing.txt",     native / "missing" / "plain.txt",
      native / "CON",   native / "NUL.tif",   native / "plain.txt" / "x", std::filesystem::path(),
      native / "a*b?c", native / ""};
#ifndef _WIN32
  std::filesystem::create_symlink("plain.txt", native / "link");
  std::filesystem::create_symlink(native, native / "folder");
  std::filesystem::create_symlink("nothing", native / "dangling");
  std::filesystem::create_symlink("circle", native / "circle");
  for (const char* name : {"link", "folder", "dangling", "circle"}) paths.push_back(native / name);
  paths.emplace_back("/dev/null");
#endif
  const FileSystem& files = FileSystem::Current();
  for (const auto& path : paths) {
    FileFacts facts;
    FileKind kind{};
    const SystemCode opened = files.LookAt(path, facts);
    const SystemCode asked = files.LookAt(path, kind);
    EXPECT_EQ(opened, asked) << path;
    if (opened == 0 && asked == 0) {
      EXPECT_EQ(facts.kind, kind) << path;
    }
  }
}

TEST(Files, RemoveOfAMissingFileIsError53) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(ErrorOf([&] { RemoveFileAt(folder.File("none.bmp")); }), 53);
  test::WriteWhole(folder.File("some.bmp"), "x");
  RemoveFileAt(folder.File("some.bmp"));
  EXPECT_FALSE(test::Exists(folder.File("some.bmp")));
}

TEST(Files, AFolderHandsOverItsPlainFiles) {
  const FileSystem& files = FileSystem::Current();
  const test::TemporaryFolder folder;
  const std::filesystem::path path = ToFilesystemPath(folder.File("inner"));
  ASSERT_EQ(files.MakeFolder(path), 0);
  std::vector<std::string> names;
  const auto keep = [&](const std::filesystem::path& found) {
    EXPECT_EQ(found.parent_path(), path);
    EXPECT_TRUE(std::filesystem::exists(found));
    names.push_back(FromFilesystemPath(found.filename()));
  };
  EXPECT_EQ(files.List(path, keep), 0);
  EXPECT_EQ(names, std::vector<std::string>());
  test::WriteWhole(folder.File("inner\\a.bmp"), "a");
  test::WriteWhole(folder.File("inner\\\xC3\xA4 b"), "b");
  ASSERT_EQ(files.MakeFolder(path / "c"), 0);
  EXPECT_EQ(files.List(path, keep), 0);
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::string>{"a.bmp", "\xC3\xA4 b"}));
  EXPECT_NE(files.List(path / "a.bmp", keep), 0);
  EXPECT_NE(files.List(path / "missing", keep), 0);
  EXPECT_EQ(names.size(), 2U);
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
