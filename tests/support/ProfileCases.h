#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "components/platform/Desktop.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::test {

// The promises of a desktop's profile functions, for every implementation. Text beyond ASCII is written by the desktop
// itself, because the encoding of the file is its own affair.

struct ProfileReading {
  const char* what;
  std::string content;
  std::string key;
  std::string value;  // empty: the default
};

inline std::vector<ProfileReading> ProfileReadings() {
  using namespace std::string_literals;
  const std::string longest(511, 'x');
  return {
      {"a value", "[Stamps]\r\n1=A\r\n2=B\r\n", "2", "B"},
      {"a missing key", "[Stamps]\r\n1=A\r\n", "2", ""},
      {"a missing section", "[Other]\r\n1=A\r\n", "1", ""},
      {"an empty file", "", "1", ""},
      {"a key before all sections", "1=A\r\n[Stamps]\r\n", "1", ""},
      {"a section without its end", "[Stamps\r\n1=A\r\n", "1", ""},
      {"blanks around key and value", "[Stamps]\r\n 1 = A b \t\r\n", "1", "A b"},
      {"blanks around the section's name", " [ Stamps ]\r\n1=A\r\n", "1", "A"},
      {"names in other case", "[sTAMPS]\r\nKey=A\r\n", "kEY", "A"},
      {"equals signs", "[Stamps]\r\n1=a=b=c\r\n", "1", "a=b=c"},
      {"a value that begins with one", "[Stamps]\r\n1==x\r\n", "1", "=x"},
      {"no equals sign", "[Stamps]\r\n1\r\n", "1", ""},
      {"no value", "[Stamps]\r\n1=\r\n", "1", ""},
      {"quotes around it", "[Stamps]\r\n1=\"A b\"\r\n", "1", "A b"},
      {"blanks in quotes", "[Stamps]\r\n1=\" A \"\r\n", "1", " A "},
      {"single quotes", "[Stamps]\r\n1='A'\r\n", "1", "A"},
      {"two pairs of quotes", "[Stamps]\r\n1=\"\"A\"\"\r\n", "1", "\"A\""},
      {"a quote that opens only", "[Stamps]\r\n1=\"A\r\n", "1", "\"A"},
      {"a lone quote", "[Stamps]\r\n1=\"\r\n", "1", "\""},
      {"quotes inside", "[Stamps]\r\n1=a \"b\" c\r\n", "1", "a \"b\" c"},
      {"a comment", "[Stamps]\r\n;1=A\r\n1=B ; C\r\n", "1", "B ; C"},
      {"a key twice", "[Stamps]\r\n1=A\r\n1=B\r\n", "1", "A"},
      {"a section twice", "[Stamps]\r\n1=A\r\n[Stamps]\r\n2=B\r\n", "2", ""},
      {"line feeds only", "[Stamps]\n1=A\n2=B", "2", "B"},
      {"carriage returns only", "[Stamps]\r1=A\r2=B", "2", "B"},
      {"a null character", "[Stamps]\r\n1=A\0B\r\n2=C\r\n"s, "1", "A"},
      {"what follows a null character", "[Stamps]\r\n1=A\0B\r\n2=C\r\n"s, "2", "C"},
      {"the longest value", "[Stamps]\r\n1=" + longest + "\r\n", "1", longest},
      {"one that is too long", "[Stamps]\r\n1=" + longest + "yz\r\n2=B\r\n", "1", longest},
      {"what follows one that is too long", "[Stamps]\r\n1=" + longest + "yz\r\n2=B\r\n", "2", "B"},
  };
}

inline void ExpectProfileReadings(Desktop& desktop) {
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  EXPECT_EQ(desktop.ReadProfileString("Stamps", "1", "none", path), "none") << "without a file";
  int number = 0;
  for (const ProfileReading& reading : ProfileReadings()) {
    // A file of its own: a system may keep the last one in memory.
    const std::string file = folder.File(std::to_string(++number) + ".lst");
    WriteWhole(file, reading.content);
    EXPECT_EQ(desktop.ReadProfileString("Stamps", reading.key, "", file), reading.value) << reading.what;
    for (const auto& [key, value] : desktop.ReadProfileSection("Stamps", file)) {
      EXPECT_EQ(value, desktop.ReadProfileString("Stamps", key, "", file)) << reading.what << ", at once";
    }
    EXPECT_EQ(ReadWhole(file), reading.content) << reading.what;
  }
}

// Values that are read at once: all plain ones, however many.
inline void ExpectProfileSections(Desktop& desktop) {
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  using Values = std::map<std::string, std::string>;
  EXPECT_EQ(desktop.ReadProfileSection("Stamps", path), Values()) << "without a file";
  WriteWhole(path, "[Other]\r\n1=x\r\n[Stamps]\r\n1= A b \r\n2=\"q\"\r\n2=late\r\n;3=C\r\nno\r\n4=\r\n5=" +
                       std::string(600, 'x') + "\r\n6=a=b\r\n6=late\r\n[Last]\r\n7=G\r\n");
  EXPECT_EQ(desktop.ReadProfileSection("Stamps", path), (Values{{"1", "A b"}, {"4", ""}, {"6", "a=b"}}));
  Values many;
  std::string content = "[Stamps]\r\n";
  for (int i = 1; i <= 33000; ++i) {
    const std::string key = std::to_string(i);
    many.emplace(key, "STAMP " + key);
    content += key + "=STAMP " + key + "\r\n";
  }
  const std::string large = folder.File("large.lst");
  WriteWhole(large, content);
  EXPECT_EQ(desktop.ReadProfileSection("Stamps", large), many);
}

inline void ExpectProfileWritings(Desktop& desktop) {
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "1", "A", path));
  EXPECT_EQ(ReadWhole(path), "[Stamps]\r\n1=A\r\n") << "a file that was not there";
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "2", "B=b", path));
  ASSERT_TRUE(desktop.WriteProfileString("Other", "x", "y", path));
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "3", "\"C\"", path));
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "1", "D", path));
  EXPECT_EQ(ReadWhole(path), "[Stamps]\r\n1=D\r\n2=B=b\r\n3=\"C\"\r\n[Other]\r\nx=y\r\n");

  const std::string edited = folder.File("edited.lst");
  WriteWhole(edited, "; the office's\r\n[Other]\r\na=b\r\n[Stamps]\r\n1=A\r\n;two\r\n4=D\r\n[Last]\r\nz=1\r\n");
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "2", "New", edited));
  EXPECT_EQ(ReadWhole(edited),
            "; the office's\r\n[Other]\r\na=b\r\n[Stamps]\r\n1=A\r\n;two\r\n4=D\r\n2=New\r\n[Last]\r\nz=1\r\n")
      << "all that was there stays";

  const std::string foreign = folder.File("foreign.lst");
  WriteWhole(foreign, "no profile at all");
  ASSERT_TRUE(desktop.WriteProfileString("Stamps", "1", "A", foreign));
  EXPECT_EQ(ReadWhole(foreign), "no profile at all\r\n[Stamps]\r\n1=A\r\n");

  EXPECT_FALSE(desktop.WriteProfileString("Stamps", "1", "A", folder.File("no folder\\some.lst")));
}

inline void ExpectProfilesToKeepEveryText(Desktop& desktop) {
  const TemporaryFolder folder;
  const std::string path = folder.File("some.lst");
  const std::vector<std::string> texts = {"plain", "Größe geprüft", "ПРОВЕРЕНО", "承認", "✓ 😀"};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    ASSERT_TRUE(desktop.WriteProfileString("Stamps", std::to_string(i + 1), texts[i], path)) << texts[i];
    for (std::size_t j = 0; j <= i; ++j) {
      EXPECT_EQ(desktop.ReadProfileString("Stamps", std::to_string(j + 1), "", path), texts[j]) << texts[i];
    }
  }
}

}  // namespace kw::test
