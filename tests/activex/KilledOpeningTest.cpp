// A host that is ended while the control opens documents: every page file is the old one or the new one, and the next
// control in that folder removes what is left, and nothing else.

#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "picture/PictureDocument.h"
#include "tests/activex/Ocx.h"
#include "tests/picture/Scratch.h"
#include "tests/support/Killing.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr const wchar_t* FolderVariable = L"KW_KILLED_FOLDER";
constexpr int Pages = 6;
constexpr int KilledOpenings = 2;
constexpr int OpeningsOfOne = 8;

std::wstring GivenFolder() {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetEnvironmentVariableW(FolderVariable, folder.data(), static_cast<DWORD>(folder.size())));
  return folder;
}

// What the ended process does; it runs in a process of its own only.
TEST(KilledOpening, DISABLED_OpensAgainAndAgain) {
  const std::wstring folder = GivenFolder();
  ASSERT_FALSE(folder.empty());
  SetCurrentDirectoryW(folder.c_str());  // a new control traces there
  auto control = Ocx::Create();
  ASSERT_NE(control.Get(), nullptr);
  control->put_AppDir(Text(folder));
  const BoxAnswerer user({Times(OpeningsOfOne, ListOfPendingWork)});
  for (int i = 0; i < OpeningsOfOne; ++i) ASSERT_EQ(control->OpenFile(Text(folder + L"scan.tif")), S_OK);
  control.Reset();
  Ocx::ForgetFolder();
}

TEST(KilledOpening, LeavesOldOrNewAndTheNextControlTidiesUp) {
  const TemporaryFolder folder;
  const std::wstring path = folder.Native().wstring() + L"\\";
  SetEnvironmentVariableW(FolderVariable, path.c_str());
  // What was said to this program about its tests is not for the one that it starts.
  for (const wchar_t* const name :
       {L"TEST_PREMATURE_EXIT_FILE", L"GTEST_TOTAL_SHARDS", L"GTEST_SHARD_INDEX", L"GTEST_OUTPUT"}) {
    SetEnvironmentVariableW(name, nullptr);
  }
  for (int page = 1; page <= Pages; ++page) {
    PictureDocument document;
    document.Replace(Noise(100 + page, 80, 24));
    document.Append(folder.File("scan.tif"));
  }
  const Bytes scan = BytesOf(folder.File("scan.tif"));
  std::wstring own(MAX_PATH, L'\0');
  own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
  Killing killing(folder,
                  {FromFilesystemPath(own), "--gtest_also_run_disabled_tests",
                   "--gtest_filter=KilledOpening.DISABLED_OpensAgainAndAgain"},
                  [&] {
                    std::ofstream(folder.Native() / "scan.tif", std::ios::binary)
                        .write(reinterpret_cast<const char*>(scan.data()), std::ssize(scan));
                    std::ofstream(folder.Native() / "scan_Page_2.tif") << "of another document";
                  });
  killing.growing = "FunctionsInExecution.txt";
  killing.isLeftover = [](std::int64_t process, const std::string& name, const std::string& content) {
    return name.starts_with("tmp") && name.ends_with(".bmp") &&
           content.ends_with("\n" + std::to_string(process) + "\n");
  };
  killing.Run(KilledOpenings);
  SetEnvironmentVariableW(FolderVariable, nullptr);
}

}  // namespace
}  // namespace kw::test
