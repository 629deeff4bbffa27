// Stamps on the page, from the click to the layers.

#include <gtest/gtest.h>

#include "scene/CanvasItems.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class Stamping : public LayersTest {
protected:
  Stamping() { Choose("Stamp"); }

  // Clicks on the page and does this in the dialog, then OK.
  void StampAt(float x, float y, const std::function<void(DialogForm&)>& user = {}) {
    desktop.formAnswers.emplace_back([user](DialogForm& dialog) {
      if (user) user(dialog);
      if (dialog.Visible()) dialog.KeyDown.Raise(13, 0);
    });
    Press(x, y);
    Release(x, y);
  }
  template <class Model>
  static Model& Find(const DialogForm& dialog, const std::string& name) {
    for (Control* child : dialog.Children()) {
      if (auto* found = dynamic_cast<Model*>(child); found != nullptr && child->Name() == name) return *found;
    }
    Raise(ErrorNumber::ElementNotFound);
  }
  static void Type(const DialogForm& dialog, const std::string& text) {
    Find<ImageCombo>(dialog, "cmbStamps").UserType(text);
  }
  static void Tick(const DialogForm& dialog) { Find<CheckBox>(dialog, "chkAttachSignature").UserToggle(); }
  int Floating() { return static_cast<int>(Form().TransLayers.Count()) - 2; }
  TransparentPicture& Layer(int number) { return Form().TransLayers(number + 1); }
  PixelRect Place(int number) { return PixelsOf(Layer(number)); }
  static PixelRect Page() { return {0, 0, 400, 300}; }
  static bool IsInside(const PixelRect& inner, const PixelRect& outer) { return Common(inner, outer) == inner; }
  // A black bar on white paper.
  void TakeSignature(std::int32_t width, std::int32_t height) {
    control->LetSignatureFilePath(MakeImage("sign.bmp", width, height));
    ASSERT_FALSE(control->SignatureImage().IsEmpty());
  }
};

TEST_F(Stamping, PlacesTheTextWhereThePageWasClicked) {
  Font font = Room().CurrentLayer().TextFont();
  font.name = "Tahoma";
  font.size = 12;
  font.italic = true;
  Room().CurrentLayer().SetTextFont(font);
  Form().SampleForeGroundColor.SetBackColor(MakeColour(200, 0, 0));
  StampAt(30, 40, [](DialogForm& dialog) { Find<ImageCombo>(dialog, "cmbStamps").UserChoose(4); });
  ASSERT_EQ(Floating(), 1);
  const TransparentPicture& layer = Layer(1);
  EXPECT_TRUE(layer.Visible());
  EXPECT_EQ(layer.Caption(), "APPROVED");
  EXPECT_EQ(layer.ForeColor(), MakeColour(200, 0, 0));
  EXPECT_EQ(layer.BackColor(), layer.TransparentColor()) << "the page shows through";
  EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Text);
  EXPECT_FALSE(layer.IsTextEntry());
  font.bold = true;
  EXPECT_EQ(layer.TextFont(), font);
  const TextExtent size = desktop.MeasureText("APPROVED", font, 0);
  EXPECT_EQ(Place(1), (PixelRect{30, 40, 30 + size.width, 40 + size.height}));
  EXPECT_EQ(Room().ZOrder().Order().back(), layer.Index());
}

TEST_F(Stamping, PlacesNothingOnADocumentThatWasOpenedMeanwhile) {
  const std::string other = MakeImage("other.bmp", 400, 300);
  StampAt(30, 40, [&](DialogForm& dialog) {
    Find<ImageCombo>(dialog, "cmbStamps").UserType("MINE");
    control->OpenFile(other);
  });
  EXPECT_EQ(Floating(), 0);
  std::string offered;
  StampAt(30, 40, [&](DialogForm& dialog) { offered = Find<ImageCombo>(dialog, "cmbStamps").Text(); });
  EXPECT_EQ(offered, "MINE");
  EXPECT_EQ(Floating(), 1);
}

TEST_F(Stamping, AsksNothingWithAnotherTool) {
  Choose("Rectangle");
  StampAt(30, 40);
  EXPECT_EQ(Floating(), 0);
  EXPECT_EQ(desktop.formAnswers.size(), 1U);
}

TEST_F(Stamping, CancelledLeavesThePageAndTheLastChoiceAsTheyAre) {
  StampAt(10, 10, [](DialogForm& dialog) { Find<ImageCombo>(dialog, "cmbStamps").UserChoose(8); });
  StampAt(30, 40, [](DialogForm& dialog) {
    Find<ImageCombo>(dialog, "cmbStamps").UserChoose(9);
    dialog.KeyDown.Raise(27, 0);
  });
  EXPECT_EQ(Floating(), 1);
  StampAt(300, 200, [](DialogForm& dialog) {
    EXPECT_EQ(Find<ImageCombo>(dialog, "cmbStamps").Text(), "CONFIDENTIAL");
    dialog.UserClose();
  });
  EXPECT_EQ(Floating(), 1);
}

TEST_F(Stamping, OffersTheLastStampCountAndTickAgain) {
  TakeSignature(10, 4);
  StampAt(10, 10, [](DialogForm& dialog) {
    EXPECT_EQ(Find<ImageCombo>(dialog, "cmbNoOfTimes").Text(), "1") << "the first time";
    Find<ImageCombo>(dialog, "cmbStamps").UserChoose(8);
    Find<OptionButton>(dialog, "opt").UserChoose();
    Find<ImageCombo>(dialog, "cmbNoOfTimes").SetText("5");
    Tick(dialog);
  });
  StampAt(200, 200, [](DialogForm& dialog) {
    EXPECT_EQ(Find<ImageCombo>(dialog, "cmbStamps").Text(), "CONFIDENTIAL");
    EXPECT_EQ(Find<ImageCombo>(dialog, "cmbNoOfTimes").Text(), "5");
    EXPECT_TRUE(Find<CheckBox>(dialog, "chkAttachSignature").Value());
  });
  EXPECT_EQ(Floating(), 4);
}

TEST_F(Stamping, CancelledForgetsNoTick) {
  TakeSignature(10, 4);
  StampAt(10, 10, [](DialogForm& dialog) { Tick(dialog); });
  StampAt(100, 100, [](DialogForm& dialog) { dialog.KeyDown.Raise(27, 0); });
  bool isTicked = false;
  StampAt(200, 200, [&](DialogForm& dialog) { isTicked = Find<CheckBox>(dialog, "chkAttachSignature").Value(); });
  EXPECT_TRUE(isTicked);
}

TEST_F(Stamping, OffersAPickedDatedStampWithTheDateOfThatMoment) {
  desktop.date = {2026, 11, 14};
  StampAt(10, 10, [](DialogForm& dialog) { Find<ImageCombo>(dialog, "cmbStamps").UserChoose(6); });
  desktop.date = {2026, 11, 15};
  std::string offered;
  for (const float top : {60.0F, 110.0F}) {
    StampAt(10, top, [&](DialogForm& dialog) { offered = Find<ImageCombo>(dialog, "cmbStamps").Text(); });
    EXPECT_TRUE(offered.starts_with("APPROVED 11/15/2026 ")) << offered;
  }
  EXPECT_EQ(Layer(3).Caption(), offered);
  EXPECT_FALSE(Exists(folder.File("stamps.lst"))) << "nobody typed one";
  StampAt(10, 160, [](DialogForm& dialog) { Type(dialog, "SEEN 11/14/2026"); });
  StampAt(10, 210, [&](DialogForm& dialog) { offered = Find<ImageCombo>(dialog, "cmbStamps").Text(); });
  EXPECT_EQ(offered, "SEEN 11/14/2026");
}

TEST_F(Stamping, StaysInsideThePage) {
  for (const auto& [x, y] : {std::pair{399.0F, 299.0F}, {395.0F, 5.0F}, {0.0F, 299.0F}}) {
    StampAt(x, y, [](DialogForm& dialog) { Type(dialog, "SEEN"); });
    EXPECT_TRUE(IsInside(Place(Floating()), Page())) << x << ", " << y;
    EXPECT_FALSE(Place(Floating()).IsEmpty());
    Room().UnloadLayerItems();
  }
}

TEST_F(Stamping, BreaksATextThatIsWiderThanThePage) {
  StampAt(200, 150, [](DialogForm& dialog) { Type(dialog, "DENIED, " + std::string(100, 'x')); });
  EXPECT_TRUE(IsInside(Place(1), Page()));
  EXPECT_GT(Place(1).Height(), desktop.MeasureText("X", Layer(1).TextFont(), 0).height);
}

TEST_F(Stamping, OfMoreThanAPageCanHoldFillsThePage) {
  StampAt(200, 150, [](DialogForm& dialog) { Type(dialog, std::string(20000, 'x')); });
  EXPECT_TRUE(IsInside(Place(1), Page()));
  EXPECT_EQ(Place(1).Height(), 300);
}

TEST_F(Stamping, BringsTheSignatureAsALayerOfItsOwnBelow) {
  TakeSignature(60, 20);
  StampAt(30, 40, [](DialogForm& dialog) {
    Type(dialog, "APPROVED");
    Tick(dialog);
  });
  ASSERT_EQ(Floating(), 2);
  EXPECT_TRUE(Layer(2).Visible());
  EXPECT_TRUE(SamePicture(Layer(2).Picture(), control->SignatureImage()));
  EXPECT_EQ(Layer(2).Picture().BitsPerPixel(), 32) << "ink on nothing";
  EXPECT_EQ(Layer(2).Caption(), "");
  EXPECT_EQ(Place(2).left, 30);
  EXPECT_GE(Place(2).top, Place(1).bottom);
  EXPECT_LE(Place(2).top, Place(1).bottom + 4);
  EXPECT_EQ(Place(2).Width(), 60);
  EXPECT_EQ(Place(2).Height(), 20);
}

TEST_F(Stamping, KeepsTextAndSignatureTogetherAtTheBottomOfThePage) {
  TakeSignature(60, 20);
  StampAt(390, 295, [](DialogForm& dialog) {
    Type(dialog, "APPROVED");
    Tick(dialog);
  });
  EXPECT_TRUE(IsInside(Place(1), Page()));
  EXPECT_TRUE(IsInside(Place(2), Page()));
  EXPECT_EQ(Place(2).bottom, 300);
  EXPECT_TRUE(Common(Place(1), Place(2)).IsEmpty());
}

TEST_F(Stamping, ReducesASignatureThatIsTooLargeInItsProportions) {
  for (const auto& [width, height] : {std::pair{1000, 500}, {100, 5000}}) {
    TakeSignature(width, height);
    StampAt(0, 0, [](DialogForm& dialog) {
      Type(dialog, "APPROVED");
      Find<CheckBox>(dialog, "chkAttachSignature").SetValue(true);
    });
    EXPECT_TRUE(IsInside(Place(2), Page()));
    EXPECT_LE(Place(2).Width(), 133);
    EXPECT_NEAR(static_cast<double>(Place(2).Width()) / Place(2).Height(), static_cast<double>(width) / height, 0.02);
    Room().UnloadLayerItems();
  }
}

TEST_F(Stamping, WithoutASignatureHasNothingToAttach) {
  StampAt(30, 40, [](DialogForm& dialog) {
    EXPECT_FALSE(Find<CheckBox>(dialog, "chkAttachSignature").Enabled());
    Tick(dialog);
  });
  EXPECT_EQ(Floating(), 1);
}

TEST_F(Stamping, WithASignatureFileThatIsMissingOrBrokenHasNothingToAttach) {
  for (const std::string& path : {folder.File("missing.bmp"), folder.File("broken.bmp")}) {
    WriteWhole(folder.File("broken.bmp"), "BM, but no picture");
    TakeSignature(60, 20);
    control->LetSignatureFilePath(path);
    StampAt(30, 40, [](DialogForm& dialog) {
      Find<CheckBox>(dialog, "chkAttachSignature").SetValue(true);
      EXPECT_FALSE(Find<CheckBox>(dialog, "chkAttachSignature").Enabled());
    });
    EXPECT_EQ(Floating(), 1) << path;
    Room().UnloadLayerItems();
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Stamping, OfAnEmptyTextIsNoLayer) {
  TakeSignature(60, 20);
  StampAt(30, 40, [](DialogForm& dialog) {
    Type(dialog, "");
    Tick(dialog);
  });
  ASSERT_EQ(Floating(), 1);
  EXPECT_EQ(Place(1), (PixelRect{30, 40, 90, 60})) << "the signature alone";
}

TEST_F(Stamping, BeyondTheLimitOfLayersIsReported) {
  desktop.Expect("Critical Error: Error Number : 341");
  TakeSignature(60, 20);
  Form().TransLayers.Load(32767);
  StampAt(30, 40);
  StampAt(30, 40, [](DialogForm& dialog) {
    Type(dialog, "");
    Find<CheckBox>(dialog, "chkAttachSignature").SetValue(true);
  });
  EXPECT_EQ(events.errors, std::vector<int>{341});
  EXPECT_EQ(Form().TransLayers.Count(), 3);
}

TEST_F(Stamping, InWhiteIsSeen) {
  Form().SampleForeGroundColor.SetBackColor(MakeColour(255, 255, 255));
  StampAt(30, 40);
  EXPECT_NE(Layer(1).TransparentColor(), Layer(1).ForeColor());
}

TEST_F(Stamping, OnALayerPicksThatLayer) {
  StampAt(30, 40);
  Choose("NoTools");
  Press(32, 42);
  EXPECT_EQ(Room().CurrentLayerIndex(), Layer(1).Index());
  Choose("Stamp");
  StampAt(32, 42);
  EXPECT_EQ(Floating(), 1);
}

TEST_F(Stamping, MakesLayersThatAreMovedAndRestackedLikeAllOthers) {
  StampAt(30, 40, [](DialogForm& dialog) { Type(dialog, "ONE"); });
  StampAt(34, 70, [](DialogForm& dialog) { Type(dialog, "TWO"); });
  ASSERT_EQ(Floating(), 2);
  Layer(2).Move(32, 42);
  Choose("NoTools");
  Room().SetCurrentLayer(Layer(1).Index().value_or(0));
  EXPECT_TRUE(Room().BringForward());
  EXPECT_EQ(Room().ZOrder().Order().back(), Layer(1).Index());
}

TEST_F(Stamping, LeavesNoDragBehind) {
  StampAt(30, 40);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_FALSE(Form().tmrMoveLayer.Enabled());
  EXPECT_FALSE(Form().fr.Visible());
}

TEST_F(Stamping, WithTheRightButtonIsNone) {
  desktop.formAnswers.emplace_back([](DialogForm&) {});
  Press(30, 40, Mouse::RightButton);
  EXPECT_EQ(desktop.formAnswers.size(), 1U);
}

TEST_F(Stamping, ShowsTheStampBeforehand) {
  TakeSignature(60, 20);
  StampAt(30, 40, [](DialogForm& dialog) {
    const PictureBox& preview = Find<PictureBox>(dialog, "picPreview");
    ASSERT_EQ(preview.Children().size(), 2U);
    const auto& text = dynamic_cast<const TransparentPicture&>(*preview.Children()[0]);
    const auto& signature = dynamic_cast<const TransparentPicture&>(*preview.Children()[1]);
    Type(dialog, "SEEN BY ME");
    EXPECT_EQ(text.Caption(), "SEEN BY ME");
    EXPECT_TRUE(text.TextFont().bold);
    EXPECT_FALSE(signature.HasPicture());
    Tick(dialog);
    EXPECT_TRUE(signature.HasPicture());
    EXPECT_TRUE(IsInside(PixelsOf(signature), {0, 0, PixelsOf(preview).Width(), PixelsOf(preview).Height()}));
  });
}

// Four pixels from the edges of the preview, in a font whose characters are 8 by 16 pixels.
TEST_F(Stamping, ShowsTheStampBeforehandInItsPlaces) {
  TakeSignature(60, 20);
  Room().CurrentLayer().SetTextFont({.name = "Arial", .size = 12});
  StampAt(30, 40, [](DialogForm& dialog) {
    const std::vector<Control*>& shown = Find<PictureBox>(dialog, "picPreview").Children();
    Type(dialog, "SEEN");
    EXPECT_EQ(PixelsOf(*shown.at(0)), (PixelRect{4, 4, 36, 20}));
    Tick(dialog);
    EXPECT_EQ(PixelsOf(*shown.at(1)), (PixelRect{4, 22, 64, 42}));
    Type(dialog, std::string(51, 'x'));
    EXPECT_EQ(PixelsOf(*shown.at(0)), (PixelRect{4, 4, 404, 36}));
  });
}

TEST_F(Stamping, TracesThePlacing) {
  ForgetTrace();
  StampAt(30, 40, [](DialogForm& dialog) { dialog.KeyDown.Raise(27, 0); });
  const std::vector<std::string> trace = Trace();
  ASSERT_FALSE(trace.empty());
  EXPECT_EQ(trace.front(), "PlaceStamp");
}

}  // namespace
}  // namespace kw::test
