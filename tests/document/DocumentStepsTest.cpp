// Steps of opening and of changing the page that show in what runs between them.

#include <algorithm>

#include <set>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class DocumentSteps : public EditorTest {
protected:
  // A page file of so many bits a pixel.
  std::string MakePage(const std::string& name, int depth) {
    std::string path = folder.File(name);
    SavePicture(Bitmap(30, 20, depth), path);
    return path;
  }
  // The depth that a command, run now, leaves in the engine.
  int DepthAfterACommand() {
    Form().tbrMoreTools.ButtonClick.Raise("Invert");
    return control->Engine().Current().BitsPerPixel();
  }
  // Runs in the next event of that name, and not in those that it brings about.
  void At(const std::string& event, const std::function<void()>& act) {
    events.onEvent = [event, act, isAtWork = false](const std::string& name) mutable {
      if (name != event || isAtWork) return;
      isAtWork = true;
      act();
      isAtWork = false;
    };
  }
};

TEST_F(DocumentSteps, APagesDepthIsKnownWhenItsChangeIsTold) {
  desktop.Expect("DoPreCommandProcess", 4);
  for (const auto& [name, depth] : {std::pair{"a.tif", 24}, {"b.tif", 8}, {"c.tif", 1}, {"D_Page_1.tif", 8}}) {
    const std::string path = MakePage(name, depth);
    int seen = 0;
    At("PageChanged", [&] { seen = DepthAfterACommand(); });
    control->OpenFile(path);
    EXPECT_EQ(seen, depth) << name;
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(DocumentSteps, APagesDepthIsKnownWhenItsFileIsTold) {
  desktop.Expect("DoPreCommandProcess", 3);
  const std::string path = folder.File("D.fmf");
  for (const int depth : {24, 8, 1}) {
    PictureDocument engine;
    engine.Replace(Bitmap(30, 20, depth));
    engine.Append(path);
  }
  std::vector<int> seen;
  At("NewPageCreated", [&] { seen.push_back(DepthAfterACommand()); });
  control->OpenFile(path);
  EXPECT_EQ(seen, (std::vector<int>{1, 8, 24}));
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(DocumentSteps, ACommandOrAnotherPageInTheEventOfAPageFileSpoilsNoPageFile) {
  desktop.Expect("DoPreCommandProcess", 3);
  const std::function<void()> disturbances[] = {
      [this] { Form().tbrMoreTools.ButtonClick.Raise("Invert"); },
      [this] { Form().PageIndex.SetValue(Form().PageIndex.Value() == 3 ? 2 : 3); },
  };
  const std::string path = MakeDocument("D.tif", 3);
  for (const auto& disturb : disturbances) {
    events.created.clear();
    At("NewPageCreated", disturb);
    control->OpenFile(path);
    EXPECT_EQ(events.created.size(), 3U);
    for (int page = 1; page <= 3; ++page) {
      const Bitmap written = LoadPicture(folder.File("D_Page_" + std::to_string(page) + ".tif"));
      const auto grey = static_cast<std::uint8_t>(page);
      EXPECT_EQ(written.Width(), 10 * page);
      EXPECT_EQ(written.PixelAt(0, 0), (Rgb{grey, grey, grey}));
    }
  }
  EXPECT_TRUE(events.errors.empty());
}

// The changes of the page in the two events behind the first one ask, the opening itself does not.
TEST_F(DocumentSteps, OpeningAsksForNoChangesEvenIfAnEventChangedThePage) {
  const std::string path = MakeDocument("D.tif", 3);
  At("NewPageCreated", [this] { Form().PageIndex.SetValue(Form().PageIndex.Value() == 3 ? 2 : 3); });
  ForgetTrace();
  control->OpenFile(path);
  EXPECT_EQ(std::ranges::count(Trace(), "PageIndex_Change"), 4);
  EXPECT_EQ(std::ranges::count(Trace(), "Get IsFileChanged"), 2);
}

TEST_F(DocumentSteps, TheFirstPageIsTheCurrentOneWhenItsChangeIsTold) {
  control->OpenFile(MakeDocument("D.tif", 3));
  for (const char* name : {"D_Page_1.tif", "D.tif"}) {
    Form().PageIndex.SetValue(3);
    std::vector<int> seen;
    events.onPageChanged = [&] { seen.push_back(control->OpenedDocument().CurrentPageNo()); };
    control->OpenFile(folder.File(name));
    events.onPageChanged = nullptr;
    EXPECT_EQ(seen, std::vector<int>{1}) << name;
  }
}

TEST_F(DocumentSteps, OpeningAsksForNoChangesOfAPage) {
  control->OpenFile(MakeDocument("D.tif", 3));
  const std::string single = MakeImage("scan.bmp");
  for (const std::string& path : {folder.File("D.tif"), folder.File("D_Page_1.tif"), single}) {
    ForgetTrace();
    control->OpenFile(path);
    EXPECT_EQ(std::ranges::count(Trace(), "Get IsFileChanged"), 0) << path;
    if (path == single) continue;
    Form().PageIndex.SetValue(2);
    EXPECT_EQ(std::ranges::count(Trace(), "Get IsFileChanged"), 1) << "a change of the page does";
  }
}

TEST_F(DocumentSteps, AFirstPageFileAloneIsTheOnlyPage) {
  control->OpenFile(MakePage("D_Page_1.tif", 8));
  EXPECT_EQ(Form().PageIndex.Max(), 1);
  EXPECT_EQ(Form().cmbPageNo.ItemCount(), 1);
  EXPECT_FALSE(IsEnabled("NextPage"));
}

TEST_F(DocumentSteps, AFirstPageFileHasAsManyPagesAsADocumentCanHave) {
  const std::string first = MakePage("D_Page_1.tif", 8);
  desktop.onLookUp = [](const std::string& path) { return path; };
  control->OpenFile(first);
  EXPECT_EQ(Form().PageIndex.Max(), 32767);
  EXPECT_EQ(Form().cmbPageNo.ItemCount(), 32767);
  EXPECT_EQ(Form().PageIndex.Value(), 1);
}

TEST_F(DocumentSteps, APageThatIsGoneIsToldWithoutTheHourglass) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeDocument("D.tif", 3));
  RemoveFileAt(folder.File("D_Page_2.tif"));
  MousePointer pointer = MousePointer::Arrow;
  desktop.whileBoxIsUp = [&](const auto&) { pointer = Form().editor.Pointer(); };
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(pointer, MousePointer::Default);
}

TEST_F(DocumentSteps, AFileThatCannotBeReadScrollsBackAndTakesUndoAndTheBackgroundAway) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeImage("large.bmp", 2000, 2000));
  control->LetBGImage(MakeImage("back.bmp"));
  Form().vScroll.UserSetValue(100);
  Form().hScroll.UserSetValue(110);
  for (const char* key : {"Undo", "Redo"}) BasicBar(key).SetButtonEnabled(key, true);
  control->OpenFile(folder.File("missing.tif"));
  EXPECT_EQ(Form().vScroll.Value(), 0);
  EXPECT_EQ(Form().hScroll.Value(), 0);
  EXPECT_FALSE(IsEnabled("Undo"));
  EXPECT_FALSE(IsEnabled("Redo"));
  EXPECT_FALSE(Form().TransBackImage.HasPicture());
}

TEST_F(DocumentSteps, AnotherPageScrollsBack) {
  const std::string path = folder.File("D.fmf");
  for (int page = 0; page < 2; ++page) {
    PictureDocument engine;
    engine.Replace(Bitmap(2000, 2000, 8));
    engine.Append(path);
  }
  control->OpenFile(path);
  Form().vScroll.UserSetValue(100);
  Form().hScroll.UserSetValue(110);
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(Form().vScroll.Value(), 0);
  EXPECT_EQ(Form().hScroll.Value(), 0);
}

TEST_F(DocumentSteps, APageIsBroughtBehindTheHourglass) {
  control->OpenFile(MakeDocument("D.tif", 2));
  std::set<MousePointer> pointers;  // while the picture is on its way
  desktop.onProcessNumber = [&] { pointers.insert(Form().editor.Pointer()); };
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(pointers, std::set{MousePointer::Hourglass});
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
}

class ContentWatcher : public View {
public:
  void Changed(Aspect aspect) override { count += aspect == Aspect::Content ? 1 : 0; }
  int count = 0;
};

TEST_F(DocumentSteps, TheListOfPagesIsFilledForAnotherNumberOfPagesOnlyAndShownAnewEachTime) {
  control->OpenFile(MakeDocument("D.tif", 3));
  ContentWatcher watcher;
  Form().cmbPageNo.AttachView(&watcher);
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(watcher.count, 2) << "its selection, and all of it";
  Form().cmbPageNo.DetachView();
}

TEST_F(DocumentSteps, TheSpinnerOfASplitDocumentCountsFromOneThatOfAnyOtherFromNothing) {
  control->OpenFile(MakeDocument("D.tif", 3));
  EXPECT_EQ(Form().PageIndex.Min(), 1);
  EXPECT_EQ(Form().PageIndex.Max(), 3);
  control->OpenFile(folder.File("D_Page_1.tif"));
  EXPECT_EQ(Form().PageIndex.Min(), 1);
  EXPECT_EQ(Form().PageIndex.Max(), 3);
  EXPECT_EQ(Form().PageIndex.Value(), 1);
  control->OpenFile(MakeImage("scan.bmp"));
  EXPECT_EQ(Form().PageIndex.Min(), 0);
  EXPECT_EQ(Form().PageIndex.Max(), 0);
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 0);
}

}  // namespace
}  // namespace kw::test
