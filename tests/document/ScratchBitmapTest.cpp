// The scratch bitmap beside others at work in the same folder: controls of other threads, processes and machines.

#include <array>
#include <thread>

#include "components/base/TemporaryFiles.h"
#include "tests/support/EditorFixture.h"
#include "tests/support/FailingFiles.h"

namespace kw::test {
namespace {

class Scratch : public EditorTest {
protected:
  // Does something to the scratch bitmap each time that it is written, before it is read again.
  void WhenItIsWritten(const std::function<void()>& step) {
    desktop.onProcessNumber = [this, step] {
      const std::string bytes = ReadWhole(folder.File("tmp1234.bmp"));
      if (!bytes.ends_with("\n1234\n") || bytes == lastSeen) return;
      step();
      lastSeen = ReadWhole(folder.File("tmp1234.bmp"));
    };
  }

private:
  std::string lastSeen;
};

TEST_F(Scratch, OfAnotherInstanceIsNeverShown) {
  int replaced = 0;
  WhenItIsWritten([&] {
    ++replaced;
    MakeImage("tmp1234.bmp", 5, 5);
  });
  control->OpenFile(MakeImage("scan.bmp", 30, 40));
  control->LetBGImage(MakeImage("back.bmp", 31, 41));
  control->LetSignatureFilePath(MakeImage("sign.bmp", 32, 42));
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 30);
  EXPECT_EQ(Form().TransBackImage.Picture().Width(), 31);
  EXPECT_EQ(control->SignatureImage().Width(), 32);
  EXPECT_TRUE(events.errors.empty());
  EXPECT_GE(replaced, 3) << "one of them each";
}

// Both hold the same pixels until one of them changes.
TEST_F(Scratch, LayerAndEngineShareThePicture) {
  desktop.Expect("DoPreCommandProcess");
  control->OpenFile(MakeDocument("D.tif", 2));
  const auto isShared = [this] {
    return Form().TransLayers(1).Picture().SharesPixelsWith(control->Engine().Current());
  };
  EXPECT_TRUE(isShared()) << "opened";
  Form().PageIndex.SetValue(2);
  EXPECT_TRUE(isShared()) << "turned";
  Form().tbrMoreTools.ButtonClick.Raise("Invert");
  EXPECT_TRUE(isShared()) << "after a command";
}

TEST_F(Scratch, OfTheSameSizeThatIsNoPictureIsNoticed) {
  desktop.Expect("There is not enough memory available");
  control->OpenFile(MakeDocument("D.tif", 2));
  WhenItIsWritten(
      [&] { WriteWhole(folder.File("tmp1234.bmp"), ReadWhole(folder.File("tmp1234.bmp")).replace(0, 1, "X")); });
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
  EXPECT_EQ(events.errors, std::vector<int>{481});
}

TEST_F(Scratch, ThatCannotBeReadLeavesThePicture) {
  desktop.Expect("Critical Error: Error Number : 53");
  control->OpenFile(MakeDocument("D.tif", 2));
  WhenItIsWritten([&] { RemoveFileAt(folder.File("tmp1234.bmp")); });
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(Form().TransLayers(1).Width(), 20);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
  EXPECT_EQ(events.errors, std::vector<int>{53});
}

TEST_F(Scratch, ThatCannotBeWrittenLeavesThePictureAndAnOlderOneIsNotShown) {
  desktop.Expect("Critical Error: Error Number : 70");
  control->OpenFile(MakeDocument("D.tif", 2));
  const std::filesystem::path older = ToFilesystemPath(MakeImage("tmp1234.bmp", 5, 5));
  constexpr auto mayWrite = std::filesystem::perms::owner_write;
  std::filesystem::permissions(older, std::filesystem::perms::owner_read);
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(Form().TransLayers(1).Width(), 20);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
  EXPECT_EQ(events.errors.size(), 1U);
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default) << "what follows ran";
  std::filesystem::permissions(older, mayWrite, std::filesystem::perm_options::add);
}

// An automation error's number.
TEST_F(Scratch, AnErrorAbove32767IsShownButNotRaisedAsAnEvent) {
  desktop.Expect("Critical Error: Error Number : 40000");
  WhenItIsWritten([] { throw RunTimeError(40000, "too large"); });
  control->OpenFile(MakeImage("scan.bmp"));
  ASSERT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(desktop.boxes[1].prompt.rfind("Error Number : 40000\r\n", 0), 0U);
  EXPECT_TRUE(events.errors.empty());
  EXPECT_FALSE(Form().editor.Enabled());
}

// A scratch bitmap that its control did not remove, and whether the next control leaves it.
bool IsLeft(ScriptedDesktop& desktop, const TemporaryFolder& folder, const std::string& machine, std::int64_t process) {
  RecordedEvents events;
  ScriptedDesktop other;
  other.Expect(ListOfPendingWork);
  other.machineName = machine;
  other.processNumber = process;
  std::string left;
  {
    KwEditorLayers crashed(other, events);
    crashed.UserControl_Initialize();
    crashed.OpenFile(folder.File("scan.bmp"));
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
      const std::string name = FromFilesystemPath(entry.path().filename());
      if (name.starts_with("tmp") && name.ends_with(".bmp")) left = name;
    }
  }
  EXPECT_NE(left, "");
  KwEditorLayers next(desktop, events);
  next.UserControl_Initialize();
  const bool isLeft = Exists(folder.File(left));
  if (isLeft) RemoveFileAt(folder.File(left));
  return isLeft;
}

TEST_F(Scratch, LeftByAProcessOfThisMachineThatIsGoneIsRemoved) {
  MakeImage("scan.bmp");
  desktop.machineName = "desk.example";
  EXPECT_FALSE(IsLeft(desktop, folder, "desk.example", 77));
  EXPECT_TRUE(IsLeft(desktop, folder, "till.example", 77)) << "of another machine";
  EXPECT_TRUE(IsLeft(desktop, folder, "desk", 77)) << "of another machine";
  desktop.runningProcesses = {77};
  EXPECT_TRUE(IsLeft(desktop, folder, "desk.example", 77)) << "of a process that is alive";
}

TEST_F(Scratch, OfSomebodyElseIsNotTouched) {
  const std::string mark = "\nKwEditor scratch bitmap\n";
  const std::map<std::string, std::string> files = {
      {"tmp55.bmp", ReadWhole(MakeImage("own.bmp"))},
      {"tmp.bmp", mark + "\n77\n"},
      {"tmp56a.bmp", mark + "\n56\n"},
      {"tmp57.bmp", mark + "\n57"},
      {"tmp58.bmp", mark + "\n58\nand more"},
      {"tmp59.bmp", mark},
      {"tmp60.bmp", ""},
      {"tmp61.bmp", mark + "\n61x\n"},
      {"tmp64.bmp", mark + "\n77\n"},
      {"tmp65.bmp", mark + "till\n65\n"},
  };
  for (const auto& [name, bytes] : files) WriteWhole(folder.File(name), bytes);
  std::filesystem::create_directory(ToFilesystemPath(folder.File("tmp62.bmp")));
  KwEditorLayers second(desktop, events);
  second.UserControl_Initialize();
  second.UserControl_Terminate();
  for (const auto& [name, bytes] : files) EXPECT_EQ(ReadWhole(folder.File(name)), bytes) << name;
  EXPECT_TRUE(std::filesystem::exists(ToFilesystemPath(folder.File("tmp62.bmp"))));
  WriteWhole(folder.File("tmp63.bmp"), mark + "\n63\n");
  second.UserControl_Terminate();
  EXPECT_FALSE(Exists(folder.File("tmp63.bmp"))) << "a mark as it should be";
}

TEST_F(Scratch, HasItsMarkBeforeItsName) {
  FailingFiles files;
  int named = 0;
  files.onCall = [&](FailingFiles::Call call, const std::filesystem::path& path) {
    if (call != FailingFiles::Call::Name || path.filename() != "tmp1234.bmp") return 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
      if (entry.path().extension() != ".tmp") continue;
      ++named;
      EXPECT_TRUE(ReadWhole(folder.File(entry.path().filename().string())).ends_with("\n1234\n"));
    }
    return 0;
  };
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_GE(named, 1);
}

TEST_F(Scratch, TemporaryFileOfAProcessThatIsGoneIsRemovedAtTheStart) {
  const TemporaryFolder other;
  std::string left = FromFilesystemPath(TemporaryBeside("x").filename());
  WriteWhole(other.File(left), "of a process that is alive");
  left.replace(10, 8, "7ffffff0");
  WriteWhole(other.File(left), "of one that is gone");
  WriteWhole(other.File("kw.tmp"), "of somebody else");
  AppDir = other.Path();
  {
    KwEditorLayers next(desktop, events);
    next.UserControl_Initialize();
    next.UserControl_Terminate();
  }
  AppDir = folder.Path();
  EXPECT_FALSE(Exists(other.File(left)));
  EXPECT_TRUE(Exists(other.File("kw.tmp")));
}

// One apartment: its own control, and a folder that it shares.
class Apartment {
public:
  Apartment(const TemporaryFolder& shared, std::string document, int step)
      : folder(shared), path(std::move(document)), direction(step) {}

  void TurnPages(int turns) {
    AppDir = folder.Path();
    ScriptedDesktop desktop;
    desktop.Expect(ListOfPendingWork);
    KwEditorLayers control(desktop, events);
    control.UserControl_Initialize();
    control.OpenFile(path);
    constexpr int pages = 5;
    int page = 1;
    for (int i = 0; i < turns; ++i) {
      page = (page - 1 + direction + pages) % pages + 1;
      control.Form().PageIndex.SetValue(page);
      const Bitmap expected = LoadPicture(GetPageFile(page));
      if (!SamePicture(control.Form().TransLayers(1).Picture(), expected)) ++wrongPages;
      if (i % 10 == 0) control.LetBGImage(GetPageFile(1));
      if (i % 20 == 0) control.LetSignatureFilePath(GetPageFile(2));
    }
    control.UserControl_Terminate();
    AppDir.clear();
  }

  RecordedEvents events;
  int wrongPages = 0;

private:
  std::string GetPageFile(int page) const {
    return path.substr(0, path.size() - 4) + "_Page_" + std::to_string(page) + ".tif";
  }

  const TemporaryFolder& folder;
  std::string path;
  int direction;
};

TEST_F(Scratch, OfTwoApartmentsWithOneFolderIsNeverMixedUp) {
  Apartment first(folder, MakeDocument("first.tif", 5), 1);
  Apartment second(folder, MakeDocument("second.tif", 5), -1);
  constexpr int turns = 200;
  std::thread one([&] { first.TurnPages(turns); });
  std::thread other([&] { second.TurnPages(turns); });
  one.join();
  other.join();
  for (const Apartment* apartment : {&first, &second}) {
    EXPECT_EQ(apartment->wrongPages, 0);
    EXPECT_TRUE(apartment->events.errors.empty()) << testing::PrintToString(apartment->events.errorTexts);
    EXPECT_EQ(apartment->events.changedTo.size(), turns + 1U);
  }
}

}  // namespace
}  // namespace kw::test
