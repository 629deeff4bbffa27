#include "components/base/LongWork.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>

#include "components/base/FilePath.h"
#include "components/base/Files.h"
#include "components/base/SystemFile.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::test {
namespace {

int notes = 0;

class LongWork : public testing::Test {
protected:
  LongWork() {
    notes = 0;
    WatchWork([]() noexcept { ++notes; });
  }
  ~LongWork() override { WatchWork(nullptr); }
  // The notes since the last call.
  static int Take() { return std::exchange(notes, 0); }
  TemporaryFolder folder;
};

TEST_F(LongWork, IsNotedByEachReadWriteAndAppend) {
  AppendToFile(folder.File("a"), "text");
  EXPECT_EQ(Take(), 1);
  OpenedFile file;
  const FileSystem& files = FileSystem::Current();
  ASSERT_EQ(files.Open(ToFilesystemPath(folder.File("a")), FileUse::Change, file), 0);
  char text[4];
  std::size_t done = 0;
  ASSERT_EQ(files.Read(file.get(), text, sizeof text, done), 0);
  EXPECT_EQ(Take(), 1);
  ASSERT_EQ(files.Seek(file.get(), 0), 0);
  ASSERT_EQ(files.Write(file.get(), text, sizeof text, done), 0);
  EXPECT_EQ(Take(), 1);
}

TEST_F(LongWork, WithoutAWatcherNobodyIsTold) {
  WatchWork(nullptr);
  NoteWork();
  EXPECT_EQ(Take(), 0);
}

}  // namespace
}  // namespace kw::test
