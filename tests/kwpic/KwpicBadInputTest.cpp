#include "picture/PictureDocument.h"
#include "tests/kwpic/Program.h"

namespace kw {
namespace {

class KwpicErrors : public ProgramTest {
protected:
  // One line on standard error that begins with the program's name, and nothing else.
  std::string ErrorOfRun(const std::vector<std::string>& arguments, int code) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(code, outcome.code) << outcome.errors;
    EXPECT_EQ("", outcome.output);
    EXPECT_EQ(0U, outcome.errors.find("kwpic: ")) << outcome.errors;
    EXPECT_EQ(outcome.errors.size() - 1, outcome.errors.find('\n')) << outcome.errors;
    return outcome.errors;
  }
  std::string Picture(const std::string& name, const Bitmap& picture = Noise(20, 10, 24)) {
    PictureDocument engine;
    engine.Replace(picture);
    engine.Save(At(name));
    return At(name);
  }
  std::string TwoPages(const std::string& name) {
    PictureDocument engine;
    engine.Replace(FaxPage(40, 30));
    engine.Append(At(name));
    engine.Append(At(name));
    return At(name);
  }
};

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST_F(KwpicErrors, WrongCommandLinesEndWith2) {
  const std::string in = Picture("in.bmp");
  const std::string out = At("out.bmp");
  const std::vector<std::vector<std::string>> lines{
      {},
      {"unknown"},
      {"--unknown"},
      {"info"},
      {"info", in, in},
      {"split"},
      {"join"},
      {"join", At("out.fmf")},
      {"join", out, in},
      {"convert", in},
      {"convert", in, out, in},
      {"convert", in, At("out")},
      {"convert", in, At("out.xyz")},
      {"convert", in, out, "--page", "0"},
      {"convert", in, out, "--page", "one"},
      {"convert", in, out, "--bpp", "16"},
      {"convert", in, out, "--quality", "101"},
      {"convert", in, out, "--quality"},
      {"convert", in, out, "--unknown", "1"},
      {"apply"},
      {"apply", "Unknown", in, out},
      {"apply", "Option", in, out},
      {"apply", "Blur", in},
      {"apply", "Blur", in, out, "--Angle", "1"},
      {"apply", "Blur", in, out, "--Sigma", "51"},
      {"apply", "Blur", in, out, "--Sigma", "nan"},
      {"apply", "Threshold", in, out, "--Level", "1.5"},
      {"effects", "more"},
  };
  for (const auto& line : lines) {
    std::string text;
    for (const std::string& argument : line) text += " " + argument;
    SCOPED_TRACE(text);
    ErrorOfRun(line, 2);
  }
  EXPECT_EQ((std::vector<std::string>{"in.bmp"}), Names());
}

TEST_F(KwpicErrors, WhatCannotBeDoneEndsWith1AndNamesTheFile) {
  const std::string two = TwoPages("two.tif");
  const std::string text = Put("text.tif", {'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'});
  EXPECT_TRUE(Has(ErrorOfRun({"info", At("missing.tif")}, 1), "missing.tif: The file does not exist."));
  EXPECT_TRUE(Has(ErrorOfRun({"info", text}, 1), "text.tif: The file is not a picture of a known format."));
  EXPECT_TRUE(Has(ErrorOfRun({"split", text}, 1), "text.tif"));
  EXPECT_TRUE(Has(ErrorOfRun({"convert", two, At("out.bmp")}, 1), "--page"));
  EXPECT_TRUE(Has(ErrorOfRun({"convert", two, At("out.bmp"), "--page", "3"}, 1), "no page 3"));
  EXPECT_TRUE(Has(ErrorOfRun({"apply", "Blur", two, At("out.jpg")}, 1), "2 pages"));
  EXPECT_TRUE(Has(ErrorOfRun({"convert", two, At("no/out.tif")}, 1), "out.tif: Path not found"));
  EXPECT_TRUE(Has(ErrorOfRun({"join", At("no/out.tif"), two}, 1), "out.tif: Path not found"));
  EXPECT_EQ((std::vector<std::string>{"text.tif", "two.tif"}), Names());
}

TEST_F(KwpicErrors, FailedWorkLeavesNoOutputAndTheOldOneAsItWas) {
  const std::string good = TwoPages("good.tif");
  const std::string old = Picture("old.fmf");
  const Bytes before = BytesOf(old);
  // The second page of this one has lost its pixels.
  Bytes bytes = BytesOf(good);
  const std::string bad = Put("bad.tif", {bytes.begin(), bytes.end() - 4});
  ErrorOfRun({"join", old, good, bad}, 1);
  ErrorOfRun({"join", At("new.fmf"), good, bad}, 1);
  ErrorOfRun({"convert", bad, old}, 1);
  ErrorOfRun({"apply", "Invert", bad, old}, 1);
  ErrorOfRun({"convert", good, old, "--page", "3"}, 1);
  EXPECT_EQ(before, BytesOf(old));
  EXPECT_EQ((std::vector<std::string>{"bad.tif", "good.tif", "old.fmf"}), Names());
  EXPECT_TRUE(Has(ErrorOfRun({"split", bad}, 1), "bad.tif, page 2"));
  EXPECT_EQ((std::vector<std::string>{"bad.tif", "bad_Page_1.tif", "good.tif", "old.fmf"}), Names());
}

TEST_F(KwpicErrors, WhatIsRecoveredOfADamagedPictureIsSaid) {
  Bytes bytes = BytesOf(Picture("whole.bmp"));
  const std::string cut = Put("cut.bmp", {bytes.begin(), bytes.end() - 130});
  const Outcome outcome = Run({"convert", cut, At("out.tif")});
  EXPECT_EQ(0, outcome.code);
  EXPECT_EQ("kwpic: warning: " + cut + ": 3 of 10 rows of the page are not whole. The bitmap is cut short.\n",
            outcome.errors);
  PictureDocument engine;
  ASSERT_TRUE(engine.Load(At("out.tif")));
  EXPECT_EQ((Rgb{255, 255, 255}), engine.Current().PixelAt(5, 2));
  EXPECT_EQ(Noise(20, 10, 24).PixelAt(5, 3), engine.Current().PixelAt(5, 3));
}

TEST_F(KwpicErrors, PagesThatShareTheirPixelsAreNotSplit) {
  // 500 pages in 1 MB: a strip of 1,000,000 bytes at 8 and directories behind it.
  constexpr std::uint32_t size = 1000000;
  Bytes bytes{'I', 'I', 42, 0};
  const auto append = [&bytes](std::size_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  append(8 + size, 4);
  bytes.resize(8 + size);
  constexpr std::uint32_t entries[][2] = {{256, 8000}, {257, 1000}, {258, 1},    {259, 1},
                                          {262, 0},    {273, 8},    {278, 1000}, {279, size}};
  for (int page = 1; page <= 500; ++page) {
    append(std::size(entries), 2);
    for (const auto& [tag, value] : entries) {
      append(tag, 2);
      append(4, 2);
      append(1, 4);
      append(value, 4);
    }
    append(page == 500 ? 0 : bytes.size() + 4, 4);
  }
  const std::string path = Put("shared.tif", bytes);
  EXPECT_TRUE(Has(ErrorOfRun({"split", path, At("pages")}, 1), "shared.tif: The TIFF file names the same bytes"));
  ErrorOfRun({"convert", path, At("out.fmf")}, 1);
  EXPECT_EQ((std::vector<std::string>{"shared.tif"}), Names());
}

}  // namespace
}  // namespace kw
