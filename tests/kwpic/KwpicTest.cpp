#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "picture/PictureDocument.h"
#include "tests/data/TestData.h"
#include "tests/kwpic/Program.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

class Kwpic : public ProgramTest {
protected:
  std::string Save(const Bitmap& picture, const std::string& name) {
    engine.Replace(picture);
    engine.Save(At(name));
    return At(name);
  }
  std::string Document(const std::vector<Bitmap>& pages, const std::string& name) {
    for (const Bitmap& page : pages) {
      engine.Replace(page);
      engine.Append(At(name));
    }
    return At(name);
  }
  void ExpectPages(const std::vector<Bitmap>& pages, const std::string& path) {
    ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
    ASSERT_EQ(static_cast<std::int32_t>(pages.size()), engine.PageCount());
    for (std::int32_t page = 1; page <= engine.PageCount(); ++page) {
      engine.SelectPage(page);
      EXPECT_TRUE(SamePicture(pages[static_cast<std::size_t>(page - 1)], engine.Current())) << path << " page " << page;
    }
  }
  PictureDocument engine;
};

TEST_F(Kwpic, InfoTellsFormatPagesSizesAndResolutions) {
  const std::string path = Document({FaxPage(80, 40), Noise(7, 5, 24)}, "two.fmf");
  EXPECT_EQ(path + ": FMF, 2 pages\n" +
                "page 1: 80 x 40 pixels, 1 bit per pixel, 300 x 300 dpi\n"
                "page 2: 7 x 5 pixels, 24 bits per pixel\n",
            Output({"info", path}));
  const std::string bitmap = Save(Noise(9, 4, 4), "one.bmp");
  EXPECT_EQ(bitmap + ": BMP, 1 page\npage 1: 9 x 4 pixels, 4 bits per pixel\n", Output({"info", bitmap}));
}

// The bytes of a page's pixels are all zero then, which no codec can read.
TEST_F(Kwpic, InfoAndJoinDoNotLookAtPixels) {
  const std::string path = Save(FaxPage(80, 40), "page.tif");
  TIFF* codec = TIFFOpen(path.c_str(), "r");
  ASSERT_NE(nullptr, codec);
  const auto begin = static_cast<std::ptrdiff_t>(TIFFGetStrileOffset(codec, 0));
  const auto count = static_cast<std::ptrdiff_t>(TIFFGetStrileByteCount(codec, 0));
  TIFFClose(codec);
  Bytes bytes = BytesOf(path);
  std::fill_n(bytes.begin() + begin, count, std::uint8_t{0});
  Put("page.tif", bytes);
  ASSERT_FALSE(engine.Load(path));
  EXPECT_EQ(path + ": TIFF, 1 page\npage 1: 80 x 40 pixels, 1 bit per pixel, 300 x 300 dpi\n", Output({"info", path}));
  EXPECT_EQ("", Output({"join", At("both.tif"), path, path}));
  EXPECT_EQ(CodedPieces(path, 0), CodedPieces(At("both.tif"), 1));
}

TEST_F(Kwpic, InfoEndsAtAPageWhoseHeaderIsUnsound) {
  const std::string path = Document({FaxPage(80, 40), FaxPage(64, 40)}, "two.tif");
  Bytes bytes = BytesOf(path);
  const Bytes width{0, 1, 3, 0, 1, 0, 0, 0, 64, 0};
  const auto entry = std::search(bytes.begin(), bytes.end(), width.begin(), width.end());
  ASSERT_NE(bytes.end(), entry);
  entry[8] = 0;
  Put("two.tif", bytes);
  const Outcome outcome = Run({"info", path});
  EXPECT_EQ(1, outcome.code);
  EXPECT_EQ(path + ": TIFF, 2 pages\npage 1: 80 x 40 pixels, 1 bit per pixel, 300 x 300 dpi\n", outcome.output);
  EXPECT_EQ("kwpic: " + path + ", page 2: The picture has no pixels.\n", outcome.errors);
}

TEST_F(Kwpic, SplitWritesTheCodedPagesBesideTheFileOrIntoAFolder) {
  const std::vector<Bitmap> pages{FaxPage(80, 40), FaxPage(64, 64, 2), Noise(20, 10, 8)};
  const std::string path = Document(pages, "doc.tif");
  EXPECT_EQ("", Output({"split", path}));
  EXPECT_EQ("", Output({"split", path, At("new/pages")}));
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const std::string name = "doc_Page_" + std::to_string(i + 1) + ".tif";
    ExpectPages({pages[i]}, At(name));
    EXPECT_EQ(CodedPieces(path, static_cast<std::uint16_t>(i)), CodedPieces(At(name), 0));
    EXPECT_EQ(BytesOf(At(name)), BytesOf(At("new/pages/" + name)));
  }
  EXPECT_EQ((std::vector<std::string>{"doc.tif", "doc_Page_1.tif", "doc_Page_2.tif", "doc_Page_3.tif", "new"}),
            Names());
}

TEST_F(Kwpic, SplitsIntoALongFolder) {
  const std::string path = At("page.bmp");
  PictureDocument engine;
  engine.Replace(Noise(9, 9, 24));
  engine.Save(path);
  std::string deep = At(std::string(60, 'a'));
  for (const char name : {'b', 'c', 'd', 'e'}) deep += "/" + std::string(60, name);
  EXPECT_EQ("", Output({"split", path, deep}));
  EXPECT_TRUE(engine.Load(deep + "/page_Page_1.bmp")) << engine.LastLoadError();
}

TEST_F(Kwpic, JoinMakesOneDocumentOfAllPages) {
  const std::vector<Bitmap> two{FaxPage(80, 40), Noise(20, 10, 24)};
  const std::string document = Document(two, "two.tif");
  const std::string picture = Save(Noise(12, 12, 8), "picture.bmp");
  for (const char* name : {"joined.fmf", "joined.tif"}) {
    EXPECT_EQ("", Output({"join", At(name), document, picture, document}));
    ExpectPages({two[0], two[1], Noise(12, 12, 8), two[0], two[1]}, At(name));
    EXPECT_EQ(CodedPieces(document, 1), CodedPieces(At(name), 4));
  }
}

TEST_F(Kwpic, ConvertKeepsEveryPixel) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    const Bitmap picture = Noise(37, 23, depth);
    std::string path = Save(picture, "start.bmp");
    for (const char* name : {"a.tif", "b.fmf", "c.bmp", "d.tiff", "e.dib"}) {
      EXPECT_EQ("", Output({"convert", path, At(name)}));
      ExpectPages({picture}, At(name));
      path = At(name);
    }
    if (depth > 8) continue;
    EXPECT_EQ("", Output({"convert", path, At("f.gif")}));
    ExpectPages({picture}, At("f.gif"));
  }
}

TEST_F(Kwpic, ConvertTakesAPageADepthAndAQuality) {
  const std::vector<Bitmap> pages{FaxPage(80, 40), Noise(40, 30, 24)};
  const std::string path = Document(pages, "two.fmf");
  EXPECT_EQ("", Output({"convert", path, At("all.tif")}));
  ExpectPages(pages, At("all.tif"));
  EXPECT_EQ("", Output({"convert", path, At("two.bmp"), "--page", "2"}));
  ExpectPages({pages[1]}, At("two.bmp"));
  EXPECT_EQ("", Output({"convert", path, At("grey.tif"), "--bpp", "8"}));
  ASSERT_TRUE(engine.Load(At("grey.tif")));
  EXPECT_EQ(2, engine.PageCount());
  EXPECT_EQ(8, engine.PageValue());
  EXPECT_EQ("", Output({"convert", At("two.bmp"), At("fine.jpg"), "--quality=95"}));
  EXPECT_EQ("", Output({"convert", At("fine.jpg"), At("same.jpg")}));
  EXPECT_EQ("", Output({"convert", At("fine.jpg"), At("coarse.jpg"), "--quality", "20"}));
  EXPECT_EQ(BytesOf(At("fine.jpg")), BytesOf(At("same.jpg")));
  EXPECT_LT(BytesOf(At("coarse.jpg")).size() * 2, BytesOf(At("fine.jpg")).size());
}

TEST_F(Kwpic, ApplyRunsEveryEffectAsTheEngineDoes) {
  const Bitmap picture = Noise(30, 20, 24);
  const std::string path = Save(picture, "picture.bmp");
  for (const Effect& effect : Effects()) {
    if (effect.procedure == nullptr) continue;
    Bitmap expected = picture;
    ApplyEffect(effect, expected);
    EXPECT_EQ("", Output({"apply", std::string(effect.command), path, At("out.bmp")})) << effect.command;
    ExpectPages({expected}, At("out.bmp"));
  }
}

TEST_F(Kwpic, ApplyTakesParametersInAnyOrderAndCase) {
  const Bitmap picture = Noise(30, 20, 24);
  const std::string path = Save(picture, "picture.bmp");
  Bitmap expected = picture;
  const std::vector<double> turned{-30.5};
  ApplyEffect(*FindEffect("Rotate"), expected, turned);
  EXPECT_EQ("", Output({"apply", "rotate", path, At("out.bmp"), "--angle", "-30.5"}));
  ExpectPages({expected}, At("out.bmp"));
  expected = picture;
  const std::vector<double> sized{50, 12, 34, 1};
  ApplyEffect(*FindEffect("Resize"), expected, sized);
  EXPECT_EQ("", Output({"apply", "Resize", "--Kernel=1", "--height", "34", path, "--WIDTH", "12", At("out.bmp")}));
  ExpectPages({expected}, At("out.bmp"));
}

TEST_F(Kwpic, ApplyChangesEveryPageOfADocument) {
  const std::vector<Bitmap> pages{FaxPage(80, 40), Noise(40, 30, 24)};
  std::vector<Bitmap> expected = pages;
  for (Bitmap& page : expected) ApplyEffect(*FindEffect("Invert"), page);
  const std::string path = Document(pages, "two.fmf");
  EXPECT_EQ("", Output({"apply", "Invert", path, path})) << "onto itself";
  ExpectPages(expected, path);
}

TEST_F(Kwpic, EffectsIsTheTable) {
  const std::string table = Output({"effects"});
  for (const Effect& effect : Effects()) {
    EXPECT_NE(std::string::npos, table.find(std::string(effect.command) + " ")) << effect.command;
    for (const Parameter& parameter : effect.parameters) {
      if (effect.procedure == nullptr) continue;
      EXPECT_NE(std::string::npos, table.find("--" + std::string(parameter.name) + " ")) << parameter.name;
    }
  }
  EXPECT_NE(std::string::npos, table.find("  --Sigma         0 to 50 (default 0: 1.5, in 1 bit 0.8)\n"));
}

TEST_F(Kwpic, EffectsPageHasTheTable) {
  const std::string table = Output({"effects", "--markdown"});
  EXPECT_NE(std::string::npos,
            table.find("\n| `Colorize` | `Hue` 0 to 360 (default 30); `Strength` 0 to 100 (default 50) | "));
  EXPECT_NE(std::string::npos, table.find("\n| `Dither` | | 1 |\n"));
  std::ifstream file(KW_EFFECTS_PAGE, std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(std::string::npos, page.find("\n\n" + table + "\n")) << "docs/effects.md needs this table:\n" << table;
}

TEST_F(Kwpic, MessagesNameTheExtensionsOfTheFormats) {
  const std::string path = Save(Noise(3, 2, 24), "picture.bmp");
  EXPECT_NE(std::string::npos, Run({"convert", path, At("picture.xyz")}).errors.find("(fmf, tif, jpg, gif, bmp)"));
  EXPECT_NE(std::string::npos, Run({"join", At("all.bmp"), path}).errors.find("join to .fmf or .tif\n"));
  EXPECT_NE(std::string::npos, Output({"join", "--help"}).find("The document: .fmf, .tif or .tiff"));
}

TEST_F(Kwpic, HelpAndVersionAreAnswers) {
  for (const char* command : {"info", "split", "join", "convert", "apply", "effects"}) {
    EXPECT_NE(std::string::npos, Output({"--help"}).find(command)) << command;
    EXPECT_NE("", Output({command, "--help"}));
  }
  EXPECT_NE(std::string::npos, Output({"apply", "Rotate", "--help"}).find("-360 to 360 (default 90)"));
}

TEST_F(Kwpic, VersionTellsThoseOfTheLibraries) {
  std::istringstream output(Output({"--version"}));
  std::string line;
  std::getline(output, line);
  EXPECT_EQ("kwpic " KW_VERSION, line);
  std::map<std::string, std::string> versions;
  std::string name;
  std::string version;
  while (output >> name >> version) versions[name] = version;
  std::vector<std::string> names{"giflib", "highway", "libjpeg-turbo", "tiff", "zlib"};
#ifdef _WIN32
  // All of them are inside the program there.
  names = {"giflib", "highway", "lerc", "libjpeg-turbo", "libwebp", "libzstd", "tiff", "xz-utils", "zlib"};
#endif
  for (const std::string& each : names) {
    EXPECT_NE(std::string::npos, versions[each].find('.')) << each << " has the version '" << versions[each] << "'";
  }
  EXPECT_EQ(names.size(), versions.size());
  // The library of this program is the one that kwpic has.
  const std::string report = TIFFGetVersion();
  const std::string number = report.substr(0, report.find('\n')).substr(report.find("Version ") + 8);
  EXPECT_EQ(0U, versions["tiff"].find(number)) << versions["tiff"] << " is not " << number;
}

TEST_F(Kwpic, NamesInAnyScriptAndWithBlanks) {
  const std::string name =
      "Stra\xC3\x9F"
      "e \xE6\x96\x87\xE6\x9B\xB8";
  const std::string path = Document({FaxPage(80, 40), FaxPage(40, 40)}, name + ".tif");
  EXPECT_EQ("", Output({"split", path}));
  ExpectPages({FaxPage(40, 40)}, At(name + "_Page_2.tif"));
  EXPECT_EQ(0U, Output({"info", path}).find(path + ": TIFF, 2 pages\n"));
}

TEST_F(Kwpic, ScansAreSplitJoinedAndConverted) {
  const std::string scan = FromFilesystemPath(TestData("letter.tif"));
  const std::string photo = FromFilesystemPath(TestData("colour.jpg"));
  EXPECT_EQ("", Output({"split", scan, At("pages")}));
  std::vector<std::string> join{"join", At("all.fmf")};
  for (int page = 1; page <= 5; ++page) {
    const std::string file = At("pages/letter_Page_" + std::to_string(page) + ".tif");
    EXPECT_EQ(CodedPieces(scan, static_cast<std::uint16_t>(page - 1)), CodedPieces(file, 0));
    join.push_back(file);
  }
  join.push_back(photo);
  EXPECT_EQ("", Output(join));
  for (std::uint16_t page = 0; page < 5; ++page) EXPECT_EQ(CodedPieces(scan, page), CodedPieces(At("all.fmf"), page));
  ASSERT_TRUE(engine.Load(photo));
  const Bitmap pixels = engine.Current();
  EXPECT_EQ("", Output({"convert", At("all.fmf"), At("photo.bmp"), "--page", "6"}));
  ExpectPages({pixels}, At("photo.bmp"));
}

TEST_F(Kwpic, LicencesShowsItsOwnAndThoseOfItsLibraries) {
  const std::string text = Output({"--licences"});
  EXPECT_EQ(0U, text.find("MIT License\n"));
  for (const char* library : {"giflib", "Highway", "LERC", "libjpeg-turbo", "libtiff", "libwebp", "liblzma", "zlib",
                              "Zstandard", "Run time of GCC", "Run time of mingw-w64", "winpthreads", "CLI11"})
    EXPECT_NE(std::string::npos, text.find("\n" + std::string(library))) << library;
  // Whole, to the end of the last one.
  EXPECT_NE(std::string::npos, text.find("limitations under the License.\n", text.size() - 40));
}

}  // namespace
}  // namespace kw
