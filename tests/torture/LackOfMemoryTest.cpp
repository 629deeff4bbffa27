// Single places that lack of memory once broke.

#include <gtest/gtest.h>

#include <array>
#include <new>
#include <set>

#include "components/base/CopyOf.h"
#include "components/base/FilePath.h"
#include "components/base/SystemFile.h"
#include "components/controls/ControlArray.h"
#include "components/controls/Label.h"
#include "components/controls/TransparentPicture.h"
#include "picture/PictureDocument.h"
#include "picture/Stream.h"
#include "tests/support/Documents.h"
#include "tests/support/Errors.h"
#include "tests/torture/FailingMemory.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

// Runs `attempt` with each of its requests failing in turn, then `check`; at last it succeeds.
template <class Attempt, class Check>
void FailEachRequest(Attempt attempt, Check check) {
  for (long which = 1;; ++which) {
    bool hasFailed = false;
    std::int32_t error = 0;
    {
      const FailingMemory memory(FailingMemory::Failing::Once, which);
      try {
        error = ErrorOf(attempt);
      } catch (const std::bad_alloc&) {
        error = static_cast<std::int32_t>(ErrorNumber::OutOfMemory);
      }
      hasFailed = memory.HasFailed();
    }
    if (!hasFailed) {
      EXPECT_EQ(error, 0);
      EXPECT_GT(which, 1) << "it needs no memory";
      return;
    }
    check(error);
  }
}

TEST(LackOfMemory, AControlThatCannotBePlacedStaysWhereItIs) {
  FailEachRequest(
      [] {
        Label parent("a parent whose name is no short text");
        Label child("a child whose name is no short text");
        child.SetContainer(&parent);
      },
      [](std::int32_t) {});
}

TEST(LackOfMemory, AnItemThatCannotBeMadeIsNotInTheArray) {
  Label parent("parent");
  ControlArray<TransparentPicture> array("layers of a name that is no short text", 1);
  array(0).SetContainer(&parent);
  FailEachRequest(
      [&] {
        array.Load(1);
        array.Unload(1);
      },
      [&](std::int32_t error) {
        EXPECT_EQ(error, static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
        EXPECT_FALSE(array.IsLoaded(1));
        EXPECT_EQ(parent.Children().size(), 1U);
      });
}

TEST(LackOfMemory, ACopyOfAVariantThrows) {
  const std::variant<bool, std::string> text = std::string(100, 'x');
  FailEachRequest([&] { EXPECT_EQ(CopyOf(text), text); },
                  [](std::int32_t error) { EXPECT_EQ(error, static_cast<std::int32_t>(ErrorNumber::OutOfMemory)); });
  EXPECT_EQ(CopyOf(std::variant<bool, std::string>(true)), (std::variant<bool, std::string>(true)));
}

TEST(LackOfMemory, AFileInMemoryTellsIt) {
  const std::array<std::uint8_t, 100> bytes{};
  FailEachRequest(
      [&] {
        MemoryFile file;
        // As a codec does.
        TellingFailures(file, [&] {
          if (!file.WriteAll(bytes)) Raise(ErrorNumber::InvalidPicture);
        });
      },
      [](std::int32_t error) { EXPECT_EQ(error, static_cast<std::int32_t>(ErrorNumber::OutOfMemory)); });
}

TEST(LackOfMemory, ALoadFailsAndDoesNotThrow) {
  const TemporaryFolder folder;
  const std::string path = folder.File("page.bmp");
  SavePicture(StagePicture(), path);
  bool hasFailed = true;
  for (long which = 1; hasFailed; ++which) {
    PictureDocument document;
    bool isLoaded = false;
    {
      const FailingMemory memory(FailingMemory::Failing::FromThenOn, which);
      EXPECT_NO_THROW(isLoaded = document.Load(path));
      hasFailed = memory.HasFailed();
    }
    EXPECT_EQ(document.PageCount(), isLoaded ? 1 : 0);
    EXPECT_TRUE(hasFailed || isLoaded);
  }
}

TEST(LackOfMemory, AFolderIsListedAsFarAsThereIsMemory) {
  const TemporaryFolder folder;
  WriteWhole(folder.File("one name that is no short text"), "1");
  WriteWhole(folder.File("two"), "2");
  const std::filesystem::path path = ToFilesystemPath(folder.Path());
  std::set<std::string> names;
  FailEachRequest(
      [&] { FileSystem::Current().List(path, [&](const auto& found) { names.insert(found.filename().string()); }); },
      [](std::int32_t) {});
  EXPECT_EQ(names, (std::set<std::string>{"one name that is no short text", "two"}));
  FileSystem::Current().List(path / "no such folder", [](const auto&) { ADD_FAILURE(); });
}

TEST(LackOfMemory, AFileThatCannotBeWrittenToIsNotMade) {
  const TemporaryFolder folder;
  const std::filesystem::path path = ToFilesystemPath(folder.File("made"));
  FailEachRequest(
      [&] {
        OpenedFile file;
        if (const SystemCode code = FileSystem::Current().Open(path, FileUse::Create, file); code != 0)
          RaiseFileError(code);
      },
      [&](std::int32_t error) {
        EXPECT_EQ(error, static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
        EXPECT_FALSE(std::filesystem::exists(path));
      });
}

// Else a split would take it for a damaged page and write white paper.
TEST(LackOfMemory, APageIsNotTakenForADamagedOne) {
  const TemporaryFolder folder;
  for (const char* const extension : {"tif", "jpg", "gif"}) {
    const std::string path = folder.File(std::string("page.") + extension);
    SavePicture(StagePicture(), path);
    PictureDocument document;
    document.Load(path);
    const Bitmap whole = document.Current();
    FailEachRequest(
        [&] {
          if (document.Load(path)) {
            EXPECT_TRUE(SamePicture(document.Current(), whole)) << extension;
            EXPECT_EQ(document.Warning(), "");
          } else if (document.LastLoadError().find("emory") == std::string::npos) {
            ADD_FAILURE() << extension << ": " << document.LastLoadError();
          }
        },
        [](std::int32_t) {});
  }
}

}  // namespace
}  // namespace kw::test
