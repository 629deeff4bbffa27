// The system's profile functions through the desktop.

#include <windows.h>

#include "components/base/FilePath.h"
#include "tests/support/ProfileCases.h"
#include "windows/WindowsDesktop.h"

namespace kw::test {
namespace {

using windows::WindowsDesktop;

TEST(Profile, IsReadByTheSystem) {
  WindowsDesktop desktop;
  ExpectProfileReadings(desktop);
}

TEST(Profile, IsReadByTheSystemASectionAtATime) {
  WindowsDesktop desktop;
  ExpectProfileSections(desktop);
}

TEST(Profile, IsWrittenByTheSystem) {
  WindowsDesktop desktop;
  ExpectProfileWritings(desktop);
}

TEST(Profile, KeepsTextThatTheSystemsCodePageLacks) {
  WindowsDesktop desktop;
  ExpectProfilesToKeepEveryText(desktop);
}

TEST(Profile, OfPlainTextStaysAPlainFile) {
  WindowsDesktop desktop;
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "1", "Gr\u00F6\u00DFe", path));
  EXPECT_EQ(ReadWhole(path),
            "[Stamps]\r\n1=Gr\xF6\xDF"
            "e\r\n")
      << "in the code page of a western system";
}

TEST(Profile, LosesNothingWhereItsEncodingHasToChange) {
  WindowsDesktop desktop;
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  WriteWhole(path,
             "; Pr\xFC"
             "fung\r\n[Other]\r\nk=\x80\r\n[Stamps]\r\n1=Gr\xFCn\r\n");
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "2", "\u627F\u8A8D", path));
  EXPECT_EQ(desktop.ReadProfileString("Stamps", "1", "", path), "Gr\u00FCn");
  EXPECT_EQ(desktop.ReadProfileString("Stamps", "2", "", path), "\u627F\u8A8D");
  EXPECT_EQ(desktop.ReadProfileString("Other", "k", "", path), "\u20AC");
  EXPECT_NE(ReadWhole(path).find(std::string("P\0r\0\xFC\0", 6)), std::string::npos) << "the comment too";
}

TEST(Profile, KeepsWhatAReadOnlyFileHolds) {
  WindowsDesktop desktop;
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  WriteWhole(path, "[Stamps]\r\n1=A\r\n");
  SetFileAttributesW(ToFilesystemPath(path).c_str(), FILE_ATTRIBUTE_READONLY);
  desktop.WriteProfileString("Stamps", "2", "\u627F", path);  // whether that fails is the system's affair
  EXPECT_EQ(desktop.ReadProfileString("Stamps", "1", "", path), "A");
  SetFileAttributesW(ToFilesystemPath(path).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(Profile, IsReadAndWrittenInTenMegabytes) {
  WindowsDesktop desktop;
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  std::string content = "[Other]\r\n";
  while (content.size() < 10'000'000) content += "filler=" + std::string(1000, 'f') + "\r\n";
  content += "[Stamps]\r\n1=FAR\r\n";
  WriteWhole(path, content);
  EXPECT_EQ(desktop.ReadProfileString("Stamps", "1", "", path), "FAR");
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "2", "AWAY", path));
  EXPECT_EQ(ReadWhole(path), content + "2=AWAY\r\n");
}

TEST(Profile, OfBinaryContentIsReadAsEmpty) {
  WindowsDesktop desktop;
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  std::string content;
  for (unsigned i = 0; i < 100'000; ++i) content += static_cast<char>(i * 2654435761U >> 13U);
  WriteWhole(path, content);
  EXPECT_EQ(desktop.ReadProfileString("Stamps", "1", "", path), "");
  EXPECT_EQ(ReadWhole(path), content);
}

}  // namespace
}  // namespace kw::test
