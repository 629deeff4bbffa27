// The tools that are no plain figures: colour picker, fill, rubber, image, signature, selection, text.

#include <functional>
#include <utility>

#include "canvas/tools/PagePixels.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

constexpr Colour Blue = MakeColour(0, 0, 255);
constexpr Colour White = MakeColour(255, 255, 255);

// A page of 400 x 300: white, a black frame of one pixel at (50, 50) to (149, 149), and a red spot at (300, 200).
Bitmap MakePage() {
  Bitmap page(400, 300, 24);
  const auto put = [&](std::int32_t x, std::int32_t y, std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
    const auto row = page.MutableRow(y);
    const std::size_t at = static_cast<std::size_t>(x) * 3;
    row[at] = blue;
    row[at + 1] = green;
    row[at + 2] = red;
  };
  for (std::int32_t y = 0; y < 300; ++y) {
    for (std::int32_t x = 0; x < 400; ++x) put(x, y, 255, 255, 255);
  }
  for (std::int32_t i = 50; i < 150; ++i) {
    put(i, 50, 0, 0, 0);
    put(i, 149, 0, 0, 0);
    put(50, i, 0, 0, 0);
    put(149, i, 0, 0, 0);
  }
  put(300, 200, 10, 20, 200);
  return page;
}

class LayerTool : public LayersTest {
protected:
  LayerTool() {
    Form().TransLayers(1).SetPicture(MakePage());
    Form().SampleForeGroundColor.SetBackColor(Blue);
    Form().SampleBackGroundColor.SetBackColor(White);
  }
  TransparentPicture& Newest() { return Form().TransLayers(Form().TransLayers.UBound()); }
};

TEST_F(LayerTool, TheColourPickerTakesThePagesColour) {
  Choose("Chooser");
  Press(300, 200);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), MakeColour(200, 20, 10));
  EXPECT_EQ(Form().SampleBackGroundColor.BackColor(), White);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  Drag(340, 240);
  Release(340, 240);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  Canvas().MouseDown.Raise(1, Mouse::ShiftKey, 50, 60);
  EXPECT_EQ(Form().SampleBackGroundColor.BackColor(), 0U);
}

TEST_F(LayerTool, BesideThePageTheColourPickerTakesNothing) {
  Choose("Chooser");
  Press(399.9F, 299.9F);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), White);
  Form().SampleForeGroundColor.SetBackColor(Blue);
  Press(400, 10);
  Press(-1, 10);
  Press(10, 1e9F);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), Blue);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(LayerTool, FillCoversTheConnectedRegionWithTheForegroundColour) {
  Choose("Fill");
  Press(100, 100);
  Release(100, 100);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Newest();
  EXPECT_EQ(layer.Left(), 51);
  EXPECT_EQ(layer.Top(), 51);
  EXPECT_EQ(layer.Width(), 98);
  EXPECT_EQ(layer.Height(), 98);
  EXPECT_TRUE(layer.Visible());
  ASSERT_EQ(layer.Picture().BitsPerPixel(), 32);
  EXPECT_EQ(layer.Picture().PixelAt(0, 0), (Rgb{0, 0, 255}));
  EXPECT_EQ(layer.Picture().Row(0)[3], 255);
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
}

TEST_F(LayerTool, FillLeavesOutWhatIsNotSimilarAndStaysOnItsSide) {
  Choose("Fill");
  Press(10, 10);
  const Bitmap& outside = Newest().Picture();
  EXPECT_EQ(outside.Width(), 400);
  EXPECT_EQ(outside.Height(), 300);
  const auto alpha = [&](std::int32_t x, std::int32_t y) {
    return outside.Row(y)[static_cast<std::size_t>(x) * 4 + 3];
  };
  EXPECT_EQ(alpha(0, 0), 255);
  EXPECT_EQ(alpha(399, 299), 255);
  EXPECT_EQ(alpha(50, 50), 0) << "the frame";
  EXPECT_EQ(alpha(100, 100), 0) << "inside the frame";
  EXPECT_EQ(alpha(300, 200), 0) << "the spot";
}

TEST_F(LayerTool, FillAgreesWithASearchFromPixelToPixel) {
  Bitmap page(37, 29, 8);
  std::uint32_t state = 7;
  for (std::int32_t y = 0; y < 29; ++y) {
    for (std::uint8_t& value : page.MutableRow(y)) {
      state = state * 1664525U + 1013904223U;
      value = (state >> 24U) % 5 < 3 ? 250 : 10;
    }
  }
  TransparentPicture& layer = Form().TransLayers(1);
  layer.SetPicture(page);
  layer.Move(0, 0, 37, 29);
  for (const auto& [seedX, seedY] : {std::pair{0, 0}, {18, 14}, {36, 28}, {5, 20}}) {
    std::vector<bool> inside(std::size_t{37} * 29);
    std::vector<std::pair<int, int>> next = {{seedX, seedY}};
    while (!next.empty()) {
      const auto [x, y] = next.back();
      next.pop_back();
      if (x < 0 || y < 0 || x >= 37 || y >= 29) continue;
      const auto at = static_cast<std::size_t>(y) * 37 + static_cast<std::size_t>(x);
      if (inside[at] || page.Row(y)[static_cast<std::size_t>(x)] != page.Row(seedY)[static_cast<std::size_t>(seedX)])
        continue;
      inside[at] = true;
      for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) next.emplace_back(x + dx, y + dy);
    }
    const auto region = RegionOfPageAt(layer, static_cast<float>(seedX), static_cast<float>(seedY), Blue, 40);
    ASSERT_TRUE(region);
    for (int y = 0; y < 29; ++y) {
      for (int x = 0; x < 37; ++x) {
        const int column = x - static_cast<int>(region->left);
        const int row = y - static_cast<int>(region->top);
        const bool isFilled = column >= 0 && row >= 0 && column < region->picture.Width() &&
                              row < region->picture.Height() &&
                              region->picture.Row(row)[static_cast<std::size_t>(column) * 4 + 3] == 255;
        ASSERT_EQ(isFilled, inside[static_cast<std::size_t>(y * 37 + x)]) << x << ", " << y;
      }
    }
  }
}

TEST_F(LayerTool, TheRubberDrawsInTheBackgroundColourAndShowsEvenWhenThatIsWhite) {
  Choose("Rubber");
  Form().sldLineHeight.SetValue(6);
  Press(60, 60);
  Drag(90, 60);
  EXPECT_EQ(Form().point1.UBound(), 1);
  Release(90, 60);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Newest();
  EXPECT_EQ(layer.Picture().PixelAt(10, 4), (Rgb{255, 255, 255}));
  EXPECT_NE(layer.TransparentColor(), White);
  EXPECT_EQ(Form().point1.UBound(), 0);
}

TEST_F(LayerTool, AnImageIsPlacedInItsProportionsInTheDraggedRectangle) {
  Choose("Image");
  const std::string path = MakeImage("inserted.bmp", 40, 20);
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = path; });
  DragOut(100, 50, 200, 250);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Newest();
  EXPECT_EQ(layer.Left(), 100);
  EXPECT_EQ(layer.Top(), 125);
  EXPECT_EQ(layer.Width(), 100);
  EXPECT_EQ(layer.Height(), 50);
  EXPECT_EQ(layer.Picture().Width(), 40);
  EXPECT_FALSE(desktop.openShown.empty());
}

TEST_F(LayerTool, AnImageThatIsNotChosenOrCannotBeReadMakesNoLayer) {
  desktop.Expect("Critical Error: There is not enough memory available to execute this task.");
  Choose("Image");
  DragOut(100, 50, 200, 250);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_TRUE(events.errors.empty());
  const std::string path = folder.File("broken.bmp");
  WriteWhole(path, "BMnothing");
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = path; });
  DragOut(100, 50, 200, 250);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_EQ(events.errors, (std::vector<int>{481}));
}

TEST_F(LayerTool, AnImageIsNotPlacedOnADocumentThatWasOpenedMeanwhile) {
  Choose("Image");
  const std::string path = MakeImage("inserted.bmp", 40, 20);
  const std::string other = MakeImage("other.bmp", 300, 200);
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) {
    control->OpenFile(other);
    dialog.fileName = path;
  });
  DragOut(100, 50, 200, 250);
  EXPECT_EQ(Form().TransLayers(Layers::PageLayer).Picture().Width(), 300);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(LayerTool, WithoutASignatureTheSignatureToolMakesNothing) {
  Choose("Signature");
  DragOut(100, 50, 200, 250);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
}

TEST_F(LayerTool, ASelectionHoldsThePagesPixelsUnderIt) {
  Choose("NoTools");
  DragOut(40, 45, 160, 55);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const Bitmap& copy = Newest().Picture();
  ASSERT_EQ(copy.Width(), 120);
  ASSERT_EQ(copy.Height(), 10);
  for (std::int32_t y = 0; y < 10; ++y) {
    for (std::int32_t x = 0; x < 120; ++x) {
      ASSERT_EQ(copy.PixelAt(x, y), Form().TransLayers(1).Picture().PixelAt(40 + x, 45 + y)) << x << ", " << y;
    }
  }
}

// The menu's view: looks at the menu when it opens.
class MenuWatcher : public View {
public:
  explicit MenuWatcher(std::function<void()> whatToDo) : look(std::move(whatToDo)) {}
  void Changed(Aspect aspect) override {
    if (aspect == Aspect::PopUp) look();
  }

private:
  std::function<void()> look;
};

TEST_F(LayerTool, TheMenuOpensOnALayerWithEverythingEnabledButPasteAsTheWatchSays) {
  Choose("NoTools");
  Add(100, 100, 50, 50);
  int openings = 0;
  bool isPasteExpected = false;
  MenuWatcher watcher([&] {
    ++openings;
    for (const Menu* entry :
         {&Form().mnuCopySelectedArea, &Form().mnuCutSelectedArea, &Form().mnuMergeDown, &Form().mnuSelectAll}) {
      EXPECT_TRUE(entry->Enabled()) << entry->Caption();
    }
    EXPECT_EQ(Form().mnuPasteSelectedArea.Enabled(), isPasteExpected);
  });
  Form().mnuImgSelectedArea.AttachView(&watcher);
  Press(20, 20, 2);
  EXPECT_EQ(openings, 0) << "beside all layers";
  Form().editor.UserPaint();
  Press(110, 110, 2);
  EXPECT_EQ(openings, 1);
  EXPECT_EQ(Room().CurrentLayerIndex(), 2);
  desktop.clipboardFormats = {ClipboardDib};
  isPasteExpected = true;
  ASSERT_TRUE(desktop.FireTimer(Form().tmrWatchClipBoard));
  Press(110, 110, 2);
  desktop.clipboardFormats.clear();
  isPasteExpected = false;
  Form().editor.UserPaint();
  Press(110, 110, 2);
  EXPECT_EQ(openings, 3);
  Form().mnuImgSelectedArea.DetachView();
}

TEST_F(LayerTool, ATextOpensReadyToTypeInTheCurrentFont) {
  const Font font{.name = "Arial", .size = 20, .bold = true};
  Room().CurrentLayer().SetTextFont(font);
  Choose("Text");
  DragOut(40, 45, 160, 85);
  const TransparentPicture& layer = Newest();
  EXPECT_TRUE(layer.IsTextEntry());
  EXPECT_TRUE(layer.IsTyping());
  EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Text);
  EXPECT_EQ(layer.TextFont(), font);
  EXPECT_EQ(layer.ForeColor(), Blue);
}

TEST_F(LayerTool, AToolThatChangesInADragLeavesNeitherBandNorMarkers) {
  Canvas().ReceiveFocus();
  Choose("Rectangle");
  Press(20, 20);
  Drag(60, 60);
  Choose("Pen");
  Drag(70, 60);
  Drag(90, 60);
  Release(90, 60);
  EXPECT_FALSE(Form().fr.Visible());
  EXPECT_FALSE(Form().point1(0).Visible());
  EXPECT_EQ(Form().point1.UBound(), 0);
  ASSERT_EQ(Form().TransLayers.UBound(), 2) << "the stroke since";
  EXPECT_GE(Newest().Left(), 60);
  Choose("Pen");
  Press(200, 200);
  Drag(220, 200);
  Choose("Rectangle");
  Release(220, 200);
  EXPECT_FALSE(Form().point1(0).Visible());
  EXPECT_EQ(Form().point1.UBound(), 0);
}

TEST_F(LayerTool, ALongStrokeGoesOnInASecondLayer) {
  Choose("Pen");
  Press(0, 0);
  constexpr int Points = 100'000;
  for (int i = 1; i < Points; ++i) Drag(static_cast<float>(i % 399), static_cast<float>(i * 7 % 299));
  Release(1, 1);
  EXPECT_EQ(events.errorTexts, std::vector<std::string>{});
  EXPECT_EQ(Form().TransLayers.UBound(), 1 + 4);
  EXPECT_EQ(Form().point1.UBound(), 0);
  EXPECT_FALSE(Form().point1(0).Visible());
}

}  // namespace
}  // namespace kw::test
