// Texts that several programs append to one file, and names that no file can have.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "components/base/Files.h"
#include "tests/support/Errors.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::test {
namespace {

std::wstring Wide(const std::string& path) { return {path.begin(), path.end()}; }

HANDLE OpenBeside(const std::string& path) {
  return CreateFileW(Wide(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
}

bool LockWriters(HANDLE file) {
  OVERLAPPED place = {};
  place.OffsetHigh = 0x7FFFFFFF;
  return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != FALSE;
}

TEST(AppendedFiles, AreNotLockedAnyMoreWhenTheTextIsThere) {
  const TemporaryFolder folder;
  const std::string path = folder.File("log.txt");
  AppendToFile(path, "one");
  for (int i = 0; i < 50; ++i) {
    HANDLE other = OpenBeside(path);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(LockWriters(other)) << GetLastError();
    CloseHandle(other);
    AppendToFile(path, "more");
  }
}

// The other writer closes the file without a word about its lock.
TEST(AppendedFiles, AreWaitedForWhileAnotherWriterHasThem) {
  const TemporaryFolder folder;
  const std::string path = folder.File("log.txt");
  AppendToFile(path, "one");
  HANDLE other = OpenBeside(path);
  ASSERT_TRUE(LockWriters(other));
  const ULONGLONG start = GetTickCount64();
  std::thread closing([other] {
    Sleep(200);
    CloseHandle(other);
  });
  AppendToFile(path, "two");
  EXPECT_GE(GetTickCount64() - start, 150U);
  closing.join();
  EXPECT_EQ(ReadWhole(path), "onetwo");
}

TEST(AppendedFiles, HaveNoNamesOfDevices) {
  const TemporaryFolder folder;
  for (const char* name : {"nul", "NUL.txt", "con", "Con.log", "prn", "aux ", "lpt1", "COM9.txt", "conin$"})
    EXPECT_NE(ErrorOf([&] { AppendToFile(folder.File(name), "x"); }), 0) << name;
  for (const char* name : {"n", "null.txt", "console.log", "prnt", "auxiliary", "lpt", "com10.txt", "log nul"})
    EXPECT_EQ(ErrorOf([&] { AppendToFile(folder.File(name), "x"); }), 0) << name;
}

}  // namespace
}  // namespace kw::test
