// The page as it is seen, drawn for the host.

#include "annotated/AnnotatedPage.h"

#include <algorithm>

#include "drawing/Compositor.h"
#include "picture/File.h"
#include "picture/LimitedStream.h"
#include "scene/CanvasItems.h"
#include "tests/drawing/PatternText.h"
#include "tests/support/Errors.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

// A text for which there is no memory.
class NoText final : public TextRenderer {
public:
  void Render(const TextRun& /*run*/, const PixelRect& /*bounds*/, CoverageMask& /*mask*/) override { Fail(); }
};

Bitmap Striped(std::int32_t width, std::int32_t height, int colour) {
  Bitmap picture(width, height, 24);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = static_cast<std::uint8_t>(static_cast<int>(i) * 5 + y * 3 + colour);
    }
  }
  return picture;
}

using Pixels = std::vector<std::uint32_t>;

class AnnotatedPageTest : public LayersTest {
protected:
  AnnotatedPageTest() { Form().TransLayers(Layers::PageLayer).SetPicture(Striped(400, 300, 7)); }

  // What the canvas shows on that area.
  Pixels Shown(std::int32_t width, std::int32_t height) {
    PatternText texts;
    Compositor compositor(Canvas().BackColor());
    compositor.Show(ItemsOf(Canvas()));
    Pixels pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const PixelRect area = {0, 0, width, height};
    compositor.Paint({pixels.data(), static_cast<std::size_t>(width), area}, area, &texts);
    for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFFU;
    return pixels;
  }

  // The same of the annotated page, drawn in bands of that memory.
  static Pixels Drawn(const AnnotatedPage& page, std::size_t mostBytes = AnnotatedPage::MostBandBytes) {
    PatternText texts;
    Pixels pixels;
    const bool isWhole = page.Draw(
        texts,
        [&](std::int32_t top, const Bitmap& band) {
          EXPECT_EQ(static_cast<std::size_t>(top) * static_cast<std::size_t>(page.Width()), pixels.size());
          for (std::int32_t y = 0; y < band.Height(); ++y) {
            const auto row = band.Row(y);
            for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
              pixels.push_back(PixelOf(MakeColour(row[i + 2], row[i + 1], row[i])));
            }
          }
          return true;
        },
        mostBytes);
    EXPECT_TRUE(isWhole);
    return pixels;
  }
  Pixels Drawn() { return Drawn(AnnotatedPage(Form())); }

  TransparentPicture& AddText(const std::string& text) {
    TransparentPicture& layer = Add(30, 40, 120, 50);
    layer.SetFigure({.kind = FigureKind::Text});
    layer.SetTextEntry(true);
    layer.SetCaption(text);
    layer.SetBackColor(MakeColour(250, 240, 10));
    return layer;
  }
  TransparentPicture& AddEllipse() {
    TransparentPicture& layer = Add(200, 100, 90, 60);
    layer.SetFigure({.kind = FigureKind::Ellipse});
    layer.SetLineColor(MakeColour(200, 10, 20));
    layer.SetLineWidth(5);
    return layer;
  }
  void ShowBackground(std::int32_t width, std::int32_t height) {
    TransparentPicture& back = Form().TransBackImage;
    back.SetPicture(Striped(width, height, 90));
    back.Move(0, 0, static_cast<float>(width), static_cast<float>(height));
    back.SetVisible(true);
    control->ZoomRoom().UpdateAndZoom();
  }
};

TEST_F(AnnotatedPageTest, IsEmptyWithoutAPage) {
  Form().TransLayers(Layers::PageLayer).SetPicture({});
  EXPECT_TRUE(AnnotatedPage(Form()).IsEmpty());
}

TEST_F(AnnotatedPageTest, ShowsWhatTheCanvasShows) {
  AddText("seen");
  AddEllipse();
  Add(350, 250, 100, 100).SetPicture(Striped(100, 100, 33));
  EXPECT_EQ(Drawn(), Shown(400, 300));
}

TEST_F(AnnotatedPageTest, HasTheAreaOfPageAndShownBackground) {
  ShowBackground(450, 200);
  Form().TransBackImage.SetLightened(true);
  AddEllipse();
  const AnnotatedPage both(Form());
  EXPECT_EQ(both.Width(), 450);
  EXPECT_EQ(both.Height(), 300);
  EXPECT_EQ(Drawn(both), Shown(450, 300));
  Form().TransBackImage.SetVisible(false);
  control->ZoomRoom().UpdateAndZoom();
  EXPECT_EQ(AnnotatedPage(Form()).Width(), 400);
  EXPECT_EQ(Drawn(), Shown(400, 300));
}

TEST_F(AnnotatedPageTest, LeavesOutHowLayersAreWorkedOn) {
  TransparentPicture& text = AddText("typed");
  TransparentPicture& ellipse = AddEllipse();
  const Pixels plain = Drawn();
  text.SetTyping(true);
  EXPECT_EQ(Drawn(), plain) << "the text that is typed is on the page";
  Choose("NoTools");
  Room().PassPress(ellipse.Index().value_or(0));
  ASSERT_EQ(ellipse.SelectionFrame(), 1);
  ASSERT_TRUE(ellipse.IsToShowResize());
  EXPECT_EQ(Drawn(), plain);
  text.SetIsToShowBorderMarks(true);
  Form().fr.Move(10, 10, 100, 100);
  Form().fr.SetIsToShowBorderMarks(true);
  Form().fr.SetVisible(true);
  Form().point1(0).Move(50, 50, 20, 20);
  Form().point1(0).SetVisible(true);
  EXPECT_EQ(Drawn(), plain) << "marks, the frame of a drag and a stroke under way are not on the page";
  EXPECT_NE(Shown(400, 300), plain);
}

TEST_F(AnnotatedPageTest, LeavesOutHiddenLayers) {
  const Pixels plain = Drawn();
  AddEllipse().SetVisible(false);
  EXPECT_EQ(Drawn(), plain);
}

TEST_F(AnnotatedPageTest, IsTheSameInBandsOfAnyHeight) {
  AddText("bands");
  AddEllipse();
  const AnnotatedPage page(Form());
  const Pixels whole = Drawn(page);
  for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, std::size_t{33600}, std::size_t{1435200}}) {
    EXPECT_EQ(Drawn(page, bytes), whole) << bytes;
  }
}

TEST_F(AnnotatedPageTest, KeepsToTheMemoryOfABand) {
  PatternText texts;
  int bands = 0;
  AnnotatedPage(Form()).Draw(
      texts,
      [&bands](std::int32_t /*top*/, const Bitmap& band) {
        EXPECT_LE(band.Height(), 10);
        ++bands;
        return true;
      },
      std::size_t{400} * 12 * 10);
  EXPECT_EQ(bands, 30);
}

TEST_F(AnnotatedPageTest, EndsWhenItsTakerHasEnough) {
  PatternText texts;
  int bands = 0;
  EXPECT_FALSE(AnnotatedPage(Form()).Draw(
      texts, [&bands](std::int32_t /*top*/, const Bitmap& /*band*/) { return ++bands < 3; }, 0));
  EXPECT_EQ(bands, 3);
}

TEST_F(AnnotatedPageTest, IsASnapshot) {
  AddEllipse();
  const AnnotatedPage page(Form());
  const Pixels before = Drawn(page);
  PatternText texts;
  bool isOther = false;
  const bool isWhole = page.Draw(
      texts,
      [&](std::int32_t /*top*/, const Bitmap& /*band*/) {
        if (!isOther) control->OpenFile(MakeImage("other.bmp", 10, 10));
        isOther = true;
        return true;
      },
      0);
  EXPECT_TRUE(isWhole);
  EXPECT_EQ(Drawn(page), before);
  EXPECT_EQ(AnnotatedPage(Form()).Width(), 10);
}

TEST_F(AnnotatedPageTest, ATextThatCannotBeDrawnIsAnError) {
  AddText("lost");
  NoText texts;
  const AnnotatedPage page(Form());
  EXPECT_EQ(ErrorOf([&] { page.Draw(texts, [](std::int32_t, const Bitmap&) { return true; }); }),
            static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
  MemoryFile file;
  EXPECT_EQ(ErrorOf([&] { page.WriteTiff(texts, file); }), static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
}

TEST_F(AnnotatedPageTest, TellsTheResolutionOfThePage) {
  Bitmap picture = Striped(40, 30, 1);
  picture.SetResolution(300, 200);
  Form().TransLayers(Layers::PageLayer).SetPicture(picture);
  const AnnotatedPage page(Form());
  EXPECT_EQ(page.HorizontalResolution(), 300);
  EXPECT_EQ(page.VerticalResolution(), 200);
}

TEST_F(AnnotatedPageTest, ChangesNothingAndIsNotTraced) {
  AddEllipse();
  ForgetTrace();
  int told = 0;
  events.onEvent = [&told](const std::string& /*name*/) { ++told; };
  const std::int16_t layers = Form().TransLayers.Count();
  Drawn();
  EXPECT_TRUE(Trace().empty());
  EXPECT_EQ(told, 0);
  EXPECT_EQ(Form().TransLayers.Count(), layers);
  EXPECT_FALSE(control->m_IsFileChanged);
}

class AnnotatedTiff : public AnnotatedPageTest {
protected:
  AnnotatedTiff() {
    Bitmap picture = Striped(400, 300, 9);
    picture.SetResolution(150, 100);
    Form().TransLayers(Layers::PageLayer).SetPicture(picture);
    AddText("kept");
  }
};

TEST_F(AnnotatedTiff, IsAPictureOfThePage) {
  const AnnotatedPage page(Form());
  PatternText texts;
  {
    OutputFile file(folder.File("annotated.tif"));
    page.WriteTiff(texts, file);
    file.Commit();
  }
  const Bitmap read = LoadPicture(folder.File("annotated.tif"));
  EXPECT_EQ(read.HorizontalResolution(), 150);
  EXPECT_EQ(read.VerticalResolution(), 100);
  EXPECT_EQ(read.BitsPerPixel(), 24);
  page.Draw(texts, [&read](std::int32_t top, const Bitmap& band) {
    EXPECT_EQ(top, 0);
    EXPECT_TRUE(SamePicture(band, read));
    return true;
  });
}

TEST_F(AnnotatedTiff, AStreamThatFillsUpIsAnErrorWhereverThatHappens) {
  const AnnotatedPage page(Form());
  PatternText texts;
  MemoryFile whole;
  page.WriteTiff(texts, whole);
  const std::uint64_t size = whole.Size();
  for (const std::uint64_t most : {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{8}, size / 2, size - 1}) {
    MemoryFile file;
    LimitedStream limited(file, most);
    EXPECT_EQ(ErrorOf([&] { page.WriteTiff(texts, limited); }), static_cast<std::int32_t>(ErrorNumber::InvalidPicture))
        << most;
  }
  MemoryFile file;
  LimitedStream limited(file, size);
  EXPECT_EQ(ErrorOf([&] { page.WriteTiff(texts, limited); }), 0);
}

}  // namespace
}  // namespace kw::test
