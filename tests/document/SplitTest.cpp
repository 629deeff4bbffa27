// Splitting with something in the way: a full disk, a damaged page, the document itself, an unfit format.

#include <algorithm>

#include "tests/support/EditorFixture.h"
#include "tests/support/FailingFiles.h"

namespace kw::test {
namespace {

const ScriptedDesktop::Box SplitFileError{"Invalid file format..", "File Error", MessageButtons::Ok};

// Some page files cannot be written.
class HinderedSplit : public EditorTest {
protected:
  HinderedSplit() {
    files.onCall = [this](FailingFiles::Call call, const std::filesystem::path& target) {
      if (call != FailingFiles::Call::Name || target.extension() != ".tif") return 0;
      tried.push_back(FromFilesystemPath(target.filename()));
      return tried.back() == hindered ? error : 0;
    };
    path = MakeDocument("D.tif", 4);
    // Of another document that had this name.
    for (const char* name : {"D_Page_1.tif", "D_Page_2.tif", "D_Page_3.tif"})
      SavePicture(Bitmap(99, 9, 8), folder.File(name));
    tried.clear();
  }

  std::vector<int> Announced() const {
    std::vector<int> pages;
    for (const auto& page : events.created) pages.push_back(page.page);
    return pages;
  }

  std::string path;
  std::string hindered;
  SystemCode error = FileTroubles[0].code;
  Names tried;
  FailingFiles files;
};

TEST_F(HinderedSplit, AFullDiskEndsTheLoopAndTheProcedureRunsOn) {
  desktop.Expect("Critical Error: Error Number : 61");
  desktop.Expect("File Error: Invalid file format..");
  hindered = "D_Page_3.tif";
  control->OpenFile(path);
  EXPECT_EQ(tried, (Names{"D_Page_4.tif", "D_Page_3.tif"}));
  EXPECT_EQ(Announced(), std::vector<int>{4});
  EXPECT_EQ(events.errors, std::vector<int>{61});
  EXPECT_EQ(events.changedTo, std::vector<int>{1});
  EXPECT_EQ(control->OpenedDocument().CurrentPageNo(), 1);
  EXPECT_EQ(Form().PageIndex.Max(), 4);
}

TEST_F(HinderedSplit, NoOlderPageFileIsShownInPlaceOfOneThatWasNotWritten) {
  desktop.Expect("Critical Error: Error Number : 70");
  desktop.Expect("File Error: Invalid file format..");
  hindered = "D_Page_1.tif";
  error = FileTroubles[2].code;
  control->OpenFile(path);
  EXPECT_EQ(Announced(), (std::vector<int>{4, 3, 2}));
  EXPECT_EQ(events.errors, std::vector<int>{70});
  EXPECT_EQ(desktop.boxes.back(), SplitFileError);
  EXPECT_FALSE(Form().TransLayers(1).HasPicture());
  EXPECT_EQ(control->Engine().PageCount(), 0);
  EXPECT_EQ(LoadPicture(folder.File("D_Page_1.tif")).Width(), 99) << "it is not deleted";
  // The next split writes it.
  hindered.clear();
  control->LetEnabled(true);
  control->OpenFile(path);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
}

TEST_F(HinderedSplit, NoOlderPageFileIsPrintedInPlaceOfOneThatWasNotWritten) {
  desktop.Expect("Critical Error: Error Number : 70");
  desktop.Expect("Critical Error: Error Number : 53");
  hindered = "D_Page_3.tif";
  error = FileTroubles[2].code;
  control->OpenFile(path);
  control->LetEnabled(true);
  events.errors.clear();
  desktop.printerAnswers.emplace_back([](PrinterDialog&) {});
  BasicBar("PrinterSetup").UserClick("PrinterSetup");
  ASSERT_EQ(desktop.printedJobs.size(), 1U);
  std::vector<int> widths;
  for (const Bitmap& sheet : desktop.printedJobs[0]) widths.push_back(sheet.Width());
  EXPECT_EQ(widths, (std::vector<int>{10, 20, 0, 40}));
  EXPECT_EQ(events.errors, std::vector<int>{static_cast<int>(ErrorNumber::FileNotFound)});
}

TEST_F(HinderedSplit, APageFileThatCannotBeLookedAtIsNotTheEndOfTheDocument) {
  desktop.Expect("Critical Error: Error Number : 75");
  control->OpenFile(path);
  files.onCall = [](FailingFiles::Call call, const std::filesystem::path& asked) {
    return call == FailingFiles::Call::Look && asked.filename() == "D_Page_3.tif" ? FileTroubles[3].code : 0;
  };
  control->OpenFile(folder.File("D_Page_1.tif"));
  EXPECT_EQ(events.errors, std::vector<int>{75});
}

TEST_F(HinderedSplit, ADocumentThatCannotBeReadOnIsNotReplacedByWhitePaper) {
  desktop.Expect("Critical Error: Error Number : 75");
  desktop.Expect("File Error: Invalid file format..");
  files.onCall = [this, reads = 0](FailingFiles::Call call, const std::filesystem::path& asked) mutable {
    const bool isOfDocument = call == FailingFiles::Call::Read && asked.filename() == "D.tif";
    return isOfDocument && events.created.size() == 1 && ++reads > 0 ? FileTroubles[4].code : 0;
  };
  control->OpenFile(path);
  EXPECT_EQ(Announced(), std::vector<int>{4});
  EXPECT_EQ(events.errors, std::vector<int>{75});
  EXPECT_EQ(LoadPicture(folder.File("D_Page_3.tif")).Width(), 99) << "the old one";
}

class Split : public EditorTest {
protected:
  // A document of pictures, in the format of its name.
  std::string MakeFile(const std::string& name, const std::vector<Bitmap>& pages) {
    std::string path = folder.File(name);
    for (const Bitmap& page : pages) {
      PictureDocument engine;
      engine.Replace(page);
      engine.Append(path);
    }
    return path;
  }
  std::vector<int> Announced() const {
    std::vector<int> pages;
    for (const auto& page : events.created) pages.push_back(page.page);
    return pages;
  }
  static std::string FormatOf(const std::string& path) {
    PictureDocument engine;
    EXPECT_TRUE(engine.Load(path)) << path;
    return std::string(engine.FormatName());
  }
};

TEST_F(Split, ADamagedPageBecomesAnEmptyOneAndTheSoundOnesAreThere) {
  desktop.Expect("Critical Error: There is not enough memory available to execute this task.");
  // The pixels of page 3 are said to lie beyond the end.
  const std::string bytes = GreyTiff(3);
  WriteWhole(folder.File("D.tif"), bytes.substr(0, bytes.size() - 10));
  control->OpenFile(folder.File("D.tif"));
  EXPECT_EQ(events.errors, std::vector<int>{481});
  EXPECT_EQ(Announced(), (std::vector<int>{3, 2, 1}));
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
  control->LetEnabled(true);
  Form().PageIndex.SetValue(3);
  const Bitmap& shown = Form().TransLayers(1).Picture();
  EXPECT_EQ(shown.Width(), 30);
  EXPECT_EQ(shown.Height(), 20);
  EXPECT_EQ(shown.PixelAt(29, 19), (Rgb{255, 255, 255}));
  EXPECT_EQ(events.errors.size(), 1U);
}

TEST_F(Split, ADamagedPageThatIsDecodedDoesNotHoldUpTheOthers) {
  desktop.Expect("Critical Error: There is not enough memory available to execute this task.");
  control->OpenFile(MakeImage("first.bmp"));
  std::string bytes = GreyTiff(3);
  // Page 2 is said to be coded in a way that it is not (the entry is the fourth of its directory).
  constexpr std::size_t second = std::size_t{8} + 102 + 10 * std::size_t{20};
  bytes[second + 2 + 3 * std::size_t{12} + 8] = 7;
  WriteWhole(folder.File("D.tif"), bytes);
  control->OpenFile(folder.File("D.tif"));
  EXPECT_EQ(events.errors, std::vector<int>{481});
  EXPECT_EQ(Announced(), (std::vector<int>{3, 2, 1}));
  EXPECT_EQ(LoadPicture(folder.File("first_Page_3.bmp")).PixelAt(0, 0), (Rgb{3, 3, 3}));
  EXPECT_EQ(LoadPicture(folder.File("first_Page_2.bmp")).Width(), 20);
  EXPECT_EQ(LoadPicture(folder.File("first_Page_2.bmp")).PixelAt(0, 0), (Rgb{255, 255, 255}));
  EXPECT_EQ(LoadPicture(folder.File("first_Page_1.bmp")).PixelAt(0, 0), (Rgb{1, 1, 1}));
}

// Pages are copied as they are coded; that the first one cannot be shown is found behind the split.
TEST_F(Split, AFirstPageThatIsTooLargeToBeShownIsToldOnce) {
  desktop.Expect("File Error: Invalid file format..");
  const std::string path = MakeFile("D.tif", {Bitmap(300, 200, 8), Bitmap(20, 10, 8)});
  control->Engine().GetOptions().reading.pageMemory = 20000;
  control->OpenFile(path);
  EXPECT_EQ(Announced(), (std::vector<int>{2, 1}));
  EXPECT_EQ(desktop.boxes.back(), SplitFileError);
  EXPECT_TRUE(events.errors.empty());
  EXPECT_TRUE(control->GetEnabled());
  EXPECT_FALSE(control->GetIsEditable());
  EXPECT_FALSE(Form().TransLayers(1).HasPicture());
  Form().PageIndex.SetValue(2);
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 20);
}

TEST_F(Split, OntoTheFileThatItReadsIsRefusedBeforeAnythingIsWritten) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeDocument("D.tif", 3));
  events.created.clear();
  const std::string whole = GreyTiff(4);
  WriteWhole(folder.File("D_Page_2.tif"), whole);
  control->OpenFile(folder.File("D_Page_2.tif"));
  EXPECT_EQ(desktop.boxes.back(), SplitFileError);
  EXPECT_TRUE(events.created.empty());
  EXPECT_TRUE(events.errors.empty());
  EXPECT_EQ(ReadWhole(folder.File("D_Page_2.tif")), whole);
  EXPECT_FALSE(Exists(folder.File("D_Page_4.tif")));
  EXPECT_EQ(control->Engine().PageCount(), 0);
  EXPECT_FALSE(Form().TransLayers(1).HasPicture());
  EXPECT_FALSE(control->GetIsEditable());
}

TEST_F(Split, OntoTheFileThatItReadsIsRefusedUnderAnyName) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(MakeDocument("D.tif", 3));
  events.created.clear();
  const std::string whole = GreyTiff(2);
  WriteWhole(folder.File("other.tif"), whole);
  RemoveFileAt(folder.File("D_Page_1.tif"));
  std::error_code error;
  std::filesystem::create_hard_link(ToFilesystemPath(folder.File("other.tif")),
                                    ToFilesystemPath(folder.File("D_Page_1.tif")), error);
  if (error) GTEST_SKIP() << "files have one name here";
  control->OpenFile(folder.File("other.tif"));
  EXPECT_EQ(desktop.boxes.back(), SplitFileError);
  EXPECT_TRUE(events.created.empty());
  EXPECT_EQ(ReadWhole(folder.File("other.tif")), whole);
}

TEST_F(Split, OfANameWithAnUnknownExtensionKeepsTheDocumentsFormat) {
  WriteWhole(folder.File("fax.dat"), GreyTiff(2));
  control->OpenFile(folder.File("fax.dat"));
  EXPECT_TRUE(events.errors.empty());
  EXPECT_EQ(Announced(), (std::vector<int>{2, 1}));
  EXPECT_EQ(FormatOf(folder.File("fax_Page_2.dat")), "TIFF");
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
}

TEST_F(Split, AfterAFirstFileThatCouldNotBeOpenedHasItsName) {
  desktop.Expect("File Error: Invalid file format..");
  control->OpenFile(folder.File("memo.pdf"));
  control->LetIsEditable(true);
  control->OpenFile(MakeDocument("D.tif", 2));
  EXPECT_TRUE(events.errors.empty());
  EXPECT_EQ(FormatOf(folder.File("memo_Page_2.pdf")), "TIFF");
  EXPECT_EQ(Form().TransLayers(1).Picture().Width(), 10);
}

TEST_F(Split, UnderAKnownExtensionTakesItsFormat) {
  control->OpenFile(MakeImage("first.bmp"));
  control->OpenFile(MakeDocument("D.tif", 2));
  EXPECT_EQ(FormatOf(folder.File("first_Page_2.bmp")), "BMP");
}

TEST_F(Split, NeverWritesAPageOfOneBitAsJpeg) {
  control->OpenFile(MakeImage("photo.jpg"));
  control->OpenFile(MakeFile("fax.fmf", {Bitmap(64, 32, 1), Bitmap(64, 32, 24)}));
  EXPECT_TRUE(events.errors.empty());
  EXPECT_EQ(FormatOf(folder.File("photo_Page_1.jpg")), "FMF");
  EXPECT_EQ(LoadPicture(folder.File("photo_Page_1.jpg")).BitsPerPixel(), 1);
  EXPECT_EQ(FormatOf(folder.File("photo_Page_2.jpg")), "JPEG");
}

}  // namespace
}  // namespace kw::test
