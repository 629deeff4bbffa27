#include "stamps/StampList.h"

#include <algorithm>
#include <filesystem>
#include <thread>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class StampLists : public EditorTest {
protected:
  StampLists() { desktop.time = {13, 5, 9}; }
  std::vector<std::string> Filled() {
    list.FillStampList(combo);
    std::vector<std::string> texts;
    for (std::int32_t i = 1; i <= combo.ItemCount(); ++i) texts.push_back(combo.ItemText(i));
    return texts;
  }
  std::vector<std::string> UserStamps() {
    const std::vector<std::string> all = Filled();
    return {all.begin() + BuiltIn, all.end()};
  }
  std::string ListPath() const { return folder.File("stamps.lst"); }
  void WriteList(const std::string& content) const { WriteWhole(ListPath(), content); }

  static constexpr int BuiltIn = 25;
  StampList list{desktop, control->ErrorTrap()};
  ImageCombo combo{"cmbStamps"};
};

TEST_F(StampLists, HoldTheBuiltInStampsInTheirOrderWithDateAndTime) {
  EXPECT_EQ(Filled(), (std::vector<std::string>{
                          "Dt: 11/15/2026",
                          "11/15/2026",
                          "11/15/2026 13:05:09",
                          "APPROVED",
                          "APPROVED 11/15/2026",
                          "APPROVED 11/15/2026 13:05:09",
                          "APPROVED, BUT MUST SEE MD FOR MORE",
                          "CONFIDENTIAL",
                          "DENIED",
                          "DENIED 11/15/2026",
                          "DENIED 11/15/2026 13:05:09",
                          "DENIED, MUST SEE MD FOR MORE",
                          "DRAFT",
                          "DRAFT 11/15/2026",
                          "DRAFT 11/15/2026 13:05:09",
                          "NOT OUR PATIENT",
                          "RECEIVED",
                          "RECEIVED 11/15/2026",
                          "RECEIVED 11/15/2026 13:05:09",
                          "REJECTED",
                          "REJECTED 11/15/2026",
                          "REJECTED 11/15/2026 13:05:09",
                          "SENT",
                          "SENT 11/15/2026",
                          "SENT 11/15/2026 13:05:09",
                      }));
  EXPECT_EQ(combo.SelectedItem(), 1);
  EXPECT_EQ(list.UserStampCount(), 0);
  EXPECT_FALSE(Exists(ListPath())) << "reading makes no file";
}

TEST_F(StampLists, PadDateAndTimeWithZeros) {
  desktop.date = {2004, 2, 5};
  desktop.time = {0, 0, 0};
  EXPECT_EQ(Filled()[2], "02/05/2004 00:00:00");
  desktop.date = {2024, 2, 29};
  desktop.time = {23, 59, 59};
  EXPECT_EQ(Filled()[24], "SENT 02/29/2024 23:59:59");
  desktop.date = {1999, 12, 31};
  EXPECT_EQ(Filled()[0], "Dt: 12/31/1999");
}

TEST_F(StampLists, AreFilledAfresh) {
  WriteList("[Stamps]\r\n1=ONE\r\n");
  Filled();
  RemoveFileAt(ListPath());
  combo.Select(4);
  EXPECT_EQ(Filled().size(), 25U);
  EXPECT_EQ(combo.SelectedItem(), 1);
  EXPECT_EQ(list.UserStampCount(), 0);
}

TEST_F(StampLists, EndWithTheFirstKeyThatIsMissing) {
  WriteList("[Stamps]\r\n1=ONE\r\n2=TWO\r\n4=FOUR\r\n");
  EXPECT_EQ(UserStamps(), (std::vector<std::string>{"ONE", "TWO"}));
  EXPECT_EQ(list.UserStampCount(), 2);
  EXPECT_EQ(list.NextKey(), "3");
}

TEST_F(StampLists, EndWithTheFirstValueThatIsEmptyOrBlank) {
  for (const char* empty : {"", "   ", "\"  \"", "\"\""}) {
    WriteList("[Stamps]\r\n1=ONE\r\n2=" + std::string(empty) + "\r\n3=THREE\r\n");
    EXPECT_EQ(UserStamps(), (std::vector<std::string>{"ONE"})) << empty;
  }
}

TEST_F(StampLists, FollowTheNumbersOfTheKeysNotTheirPlaceInTheFile) {
  WriteList("[Stamps]\r\n2=TWO\r\n1=ONE\r\n01=OTHER\r\n");
  EXPECT_EQ(UserStamps(), (std::vector<std::string>{"ONE", "TWO"}));
}

TEST_F(StampLists, TrimStampsAndCutThemAt511Characters) {
  WriteList("[Stamps]\r\n1=   SEEN BY ME  \r\n2=\"  QUOTED  \"\r\n3=" + std::string(600, 'x') +
            "\r\n4=a = \"b\" = c\r\n");
  EXPECT_EQ(UserStamps(), (std::vector<std::string>{"SEEN BY ME", "QUOTED", std::string(511, 'x'), "a = \"b\" = c"}));
}

TEST_F(StampLists, KeepTextOfEveryLanguage) {
  list.WriteStamp("1", "GEPRÜFT – 承認 ✓");
  EXPECT_EQ(UserStamps(), (std::vector<std::string>{"GEPRÜFT – 承認 ✓"}));
}

TEST_F(StampLists, TurnNullCharactersIntoBlanks) {
  class NullDesktop : public ScriptedDesktop {
  public:
    std::string ReadProfileString(const std::string& /*section*/, const std::string& key,
                                  const std::string& defaultValue, const std::string& /*path*/) override {
      return key == "1" ? std::string(" \0A\0B\0\0", 7) : defaultValue;
    }
  } nulls;
  EXPECT_EQ(StampList(nulls, control->ErrorTrap()).ReadStamp("1"), "A B");
  EXPECT_EQ(StampList(nulls, control->ErrorTrap()).ReadStamp("2"), "");
}

TEST_F(StampLists, AreReadFromTheWorkFolder) {
  AppDir.clear();
  desktop.applicationFolder = folder.File("program");
  std::filesystem::create_directory(folder.Native() / "program");
  WriteWhole(folder.File("program\\stamps.lst"), "[Stamps]\r\n1=HERE\r\n");
  EXPECT_EQ(list.ReadStamp("1"), "HERE");
  AppDir = folder.File("office");
  std::filesystem::create_directory(folder.Native() / "office");
  list.WriteStamp("1", "THERE");
  EXPECT_EQ(ReadWhole(folder.File("office\\stamps.lst")), "[Stamps]\r\n1=THERE\r\n");
}

TEST_F(StampLists, GetTheNextKeyOfTheFileAsItIsWhenAStampIsAdded) {
  WriteList("[Stamps]\r\n1=ONE\r\n");
  Filled();
  WriteList("[Stamps]\r\n1=ONE\r\n2=ANOTHER USER'S\r\n");
  list.AddStamp("MINE");
  EXPECT_EQ(ReadWhole(ListPath()), "[Stamps]\r\n1=ONE\r\n2=ANOTHER USER'S\r\n3=MINE\r\n");
  WriteList("[Stamps]\r\n3=HIDDEN\r\n");
  list.AddStamp("FIRST");
  EXPECT_EQ(UserStamps(), (std::vector<std::string>{"FIRST"}));
}

TEST_F(StampLists, LoseNoStampOfTwoUsersWhoAddThemAtTheSameTime) {
  constexpr int stampsOfEach = 25;
  std::vector<std::thread> users;
  for (const std::string name : {"A", "B"}) {
    users.emplace_back([this, name] {
      AppDir = folder.Path();
      ScriptedDesktop own;
      StampList ownList(own, control->ErrorTrap());
      for (int i = 0; i < stampsOfEach; ++i) ownList.AddStamp(name + std::to_string(i));
    });
  }
  for (std::thread& user : users) user.join();
  std::vector<std::string> expected;
  for (const std::string name : {"A", "B"}) {
    for (int i = 0; i < stampsOfEach; ++i) expected.push_back(name + std::to_string(i));
  }
  std::vector<std::string> stamps = UserStamps();
  std::ranges::sort(stamps);
  std::ranges::sort(expected);
  EXPECT_EQ(stamps, expected);
  EXPECT_FALSE(Exists(ListPath() + ".lock"));
}

TEST_F(StampLists, OfAnUnreadableFileAreTheBuiltInStamps) {
  for (const std::string& content :
       {std::string(), std::string("\0\1\2\xFF\xFE garbage [Stamps 1=x", 25), std::string("1=A\r\n2=B\r\n")}) {
    WriteList(content);
    EXPECT_EQ(Filled().size(), 25U);
    EXPECT_EQ(ReadWhole(ListPath()), content);
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(StampLists, OfTenMegabytesAreRead) {
  std::string content = "[Other]\r\n";
  while (content.size() < 10'000'000) content += "filler=" + std::string(1000, 'f') + "\r\n";
  WriteList(content + "[Stamps]\r\n1=FAR\r\n2=AWAY\r\n");
  EXPECT_EQ(UserStamps(), (std::vector<std::string>{"FAR", "AWAY"}));
}

TEST_F(StampLists, OfAFolderThatCannotBeWrittenReportNothing) {
  AppDir = folder.File("missing\\");
  list.WriteStamp("1", "LOST");
  EXPECT_EQ(list.ReadStamp("1"), "");
  EXPECT_TRUE(desktop.boxes.empty());
}

// Counts how often the file is read.
class CountingDesktop : public ScriptedDesktop {
public:
  std::string ReadProfileString(const std::string& section, const std::string& key, const std::string& defaultValue,
                                const std::string& path) override {
    ++reads;
    return ScriptedDesktop::ReadProfileString(section, key, defaultValue, path);
  }
  std::map<std::string, std::string> ReadProfileSection(const std::string& section, const std::string& path) override {
    ++reads;
    return ScriptedDesktop::ReadProfileSection(section, path);
  }

  int reads = 0;
};

TEST_F(StampLists, AreReadAtOnceHoweverLongTheyAre) {
  CountingDesktop counting;
  StampList longList(counting, control->ErrorTrap());
  std::string content = "[Stamps]\r\n";
  for (int i = 1; i <= 5000; ++i) content += std::to_string(i) + "=STAMP " + std::to_string(i) + "\r\n";
  WriteList(content);
  longList.FillStampList(combo);
  EXPECT_EQ(combo.ItemCount(), BuiltIn + 5000);
  EXPECT_EQ(combo.ItemText(BuiltIn + 5000), "STAMP 5000");
  EXPECT_EQ(counting.reads, 2) << "all, and the key behind them";
  longList.AddStamp("ONE MORE");
  EXPECT_EQ(counting.reads, 4);
  EXPECT_EQ(ReadWhole(ListPath()), content + "5001=ONE MORE\r\n");
}

// A file with so many stamps.
class FullDesktop : public ScriptedDesktop {
public:
  explicit FullDesktop(int stamps) : count(stamps) {}
  std::string ReadProfileString(const std::string& /*section*/, const std::string& key,
                                const std::string& /*defaultValue*/, const std::string& /*path*/) override {
    return std::stoi(key) <= count ? "STAMP " + key : "";
  }
  bool WriteProfileString(const std::string& /*section*/, const std::string& key, const std::string& /*value*/,
                          const std::string& /*path*/) override {
    written.push_back(key);
    return true;
  }

  int count;
  std::vector<std::string> written;
};

TEST_F(StampLists, Of32766StampsHaveRoomForOneMore) {
  FullDesktop full(32766);
  StampList longList(full, control->ErrorTrap());
  longList.FillStampList(combo);
  EXPECT_TRUE(events.errors.empty());
  EXPECT_EQ(longList.UserStampCount(), 32766);
  EXPECT_EQ(combo.ItemCount(), BuiltIn + 32766);
  longList.AddStamp("LAST");
  EXPECT_EQ(full.written, std::vector<std::string>{"32767"});
}

// The key that would tell whether there is another one is beyond 16 bits.
TEST_F(StampLists, Of32767StampsAreListedWithARunTimeErrorAndHaveNoRoom) {
  desktop.Expect("Critical Error: Error Number : 6");
  FullDesktop full(32767);
  StampList longList(full, control->ErrorTrap());
  longList.FillStampList(combo);
  EXPECT_EQ(events.errors, (std::vector<int>{static_cast<int>(ErrorNumber::Overflow)}));
  EXPECT_EQ(longList.UserStampCount(), 32767);
  EXPECT_EQ(combo.ItemCount(), BuiltIn + 32767);
  EXPECT_THROW(longList.AddStamp("ONE TOO MANY"), RunTimeError);
  EXPECT_TRUE(full.written.empty());
}

TEST_F(StampLists, OfMoreThan32767StampsAreARunTimeErrorAndEndThere) {
  desktop.Expect("Critical Error: Error Number : 6");
  FullDesktop endless(40000);
  StampList longList(endless, control->ErrorTrap());
  longList.FillStampList(combo);
  EXPECT_EQ(events.errors, (std::vector<int>{static_cast<int>(ErrorNumber::Overflow)}));
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].title, "Critical Error");
  EXPECT_FALSE(control->GetEnabled());
  EXPECT_EQ(longList.UserStampCount(), 32767);
  EXPECT_EQ(combo.ItemCount(), BuiltIn + 32767);
  EXPECT_EQ(combo.ItemText(combo.ItemCount()), "STAMP 32767");
  EXPECT_EQ(combo.SelectedItem(), 1) << "the procedure goes on to its end";
}

}  // namespace
}  // namespace kw::test
