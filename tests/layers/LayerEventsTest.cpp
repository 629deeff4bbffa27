// The events of layers, and the two layer labels.

#include <algorithm>
#include <set>

#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class LayerEvents : public LayersTest {
protected:
  // A view on which whatever it is told of fails.
  class FailingView final : public View {
  public:
    explicit FailingView(Control& shown) : model(shown) { model.AttachView(this); }
    FailingView(const FailingView&) = delete;
    FailingView& operator=(const FailingView&) = delete;
    ~FailingView() override { model.DetachView(); }
    void Changed(Aspect /*aspect*/) override { Raise(ErrorNumber::OutOfMemory); }

  private:
    Control& model;
  };

  std::vector<Control*> WhatNeedsAPage() {
    return {&Form().tbrBasicTools(0), &Form().tbrBasicTools(1), &Form().frZoomFactorContainer, &Form().picFrame,
            &Form().kwraTools};
  }
};

TEST_F(LayerEvents, MouseEventsReachTheCanvasWithTheLayersPositionAdded) {
  const TransparentPicture& layer = Add(100, 50);
  Form().TransBackImage.Move(3, 4);
  using Seen = std::vector<std::string>;
  Seen seen;
  const auto note = [&seen](const char* kind) {
    return [&seen, kind](std::int16_t button, std::int16_t shift, float x, float y) {
      seen.push_back(kind + std::to_string(button) + " " + std::to_string(shift) + " " +
                     std::to_string(static_cast<int>(x)) + "," + std::to_string(static_cast<int>(y)));
    };
  };
  Room().CanvasMouseDown.Connect(note("down "));
  Room().CanvasMouseMove.Connect(note("move "));
  Room().CanvasMouseUp.Connect(note("up "));
  ForgetTrace();
  for (const TransparentPicture* one : {&layer, static_cast<const TransparentPicture*>(&Form().TransBackImage)}) {
    one->MouseDown.Raise(4, 1, 5, 7);
    one->MouseMove.Raise(4, 2, 6, 8);
    one->MouseUp.Raise(4, 3, 7, 9);
  }
  EXPECT_EQ(seen, (Seen{"down 4 1 105,57", "move 4 2 106,58", "up 4 3 107,59", "down 4 1 8,11", "move 4 2 9,12",
                        "up 4 3 10,13"}));
  EXPECT_EQ(Trace(), (Names{"TransLayers_MouseDown", "TransLayers_MouseMove", "TransLayers_MouseUp",
                            "TransBackImage_MouseDown", "TransBackImage_MouseMove", "TransBackImage_MouseUp"}));
}

TEST_F(LayerEvents, AnEmptyPageDisablesTheToolsAndAPageEnablesThemAgain) {
  EXPECT_EQ(Form().lblImageSize.Caption(), "Size: 400 x 300");
  Form().TransLayers(1).SetPicture({});
  EXPECT_EQ(Form().lblImageSize.Caption(), "");
  for (const Control* one : WhatNeedsAPage()) EXPECT_FALSE(one->Enabled()) << one->Name();
  Form().TransLayers(1).SetPicture(Bitmap(10, 10, 24));
  EXPECT_EQ(Form().lblImageSize.Caption(), "Size: 400 x 300");
  for (const Control* one : WhatNeedsAPage()) EXPECT_TRUE(one->Enabled()) << one->Name();
}

TEST_F(LayerEvents, TheSizeShownIsRoundedToTheEvenNeighbour) {
  Form().TransLayers(1).Move(0, 0, 100.5F, 101.5F);
  EXPECT_EQ(Form().lblImageSize.Caption(), "Size: 100 x 102");
}

TEST_F(LayerEvents, AStepOfPickingThatFailsDoesNotHoldUpTheOthers) {
  desktop.Expect("Critical Error: Error Number : 7");
  TransparentPicture& layer = Add(10, 20);
  Choose("NoTools");
  layer.SetIsToShowBorderMarks(true);
  {
    const FailingView view(layer);
    layer.TakePress();
  }
  EXPECT_FALSE(layer.IsToShowBorderMarks());
  EXPECT_EQ(layer.SelectionFrame(), 1);
  EXPECT_EQ(layer.Left(), 9);
  EXPECT_EQ(layer.Top(), 19);
  EXPECT_TRUE(layer.IsToShowResize());
  {
    const FailingView view(layer);
    layer.GiveUpActivation();
  }
  EXPECT_EQ(layer.SelectionFrame(), 0);
  EXPECT_EQ(layer.Left(), 10);
  EXPECT_EQ(layer.Top(), 20);
  EXPECT_FALSE(layer.IsToShowResize());
  EXPECT_EQ(events.errors, std::vector<int>{7});
}

TEST_F(LayerEvents, TheLabelAddsFiveNumberedCirclesOnTheCanvas) {
  Form().sldLineHeight.SetValue(9);
  ForgetTrace();
  Form().Label1.Click.Raise();
  ASSERT_EQ(Form().TransLayers.UBound(), 6);
  EXPECT_EQ(Form().TransLayers(4).Caption(), "\r\n  Layer # 4  \r\n");
  std::set<Colour> colours;
  std::set<float> lefts;
  std::set<float> tops;
  for (std::int16_t i = 2; i <= 6; ++i) {
    const TransparentPicture& layer = Form().TransLayers(i);
    EXPECT_TRUE(layer.Visible());
    EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Ellipse);
    EXPECT_EQ(layer.LineWidth(), 9);
    EXPECT_EQ(layer.Width(), 69) << "the line's size counts";
    EXPECT_EQ(layer.Height(), 69);
    EXPECT_GE(layer.Left(), 0);
    EXPECT_LT(layer.Left(), Canvas().Width());
    EXPECT_GE(layer.Top(), 0);
    EXPECT_LT(layer.Top(), Canvas().Height());
    EXPECT_EQ(layer.Left(), std::floor(layer.Left()));
    EXPECT_LT(layer.LineColor(), 1000000U);
    EXPECT_EQ(layer.ForeColor(), layer.LineColor());
    colours.insert(layer.LineColor());
    lefts.insert(layer.Left());
    tops.insert(layer.Top());
  }
  EXPECT_GT(colours.size(), 3U) << "the generator is seeded once a click";
  EXPECT_GT(lefts.size(), 3U);
  EXPECT_GT(tops.size(), 3U);
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Circle").pressed);
  Names expected{"Label1_Click"};
  for (int i = 0; i < 5; ++i) {
    for (const char* name : {"lineRightBorderForSelectedArea_MouseUp", "tmrWatchClipBoard_Timer", "Get IsEditable",
                             "NewLayer", "TransLayers_Change"})
      expected.emplace_back(name);
  }
  EXPECT_EQ(Trace(), expected);
}

TEST_F(LayerEvents, TheLabelsCirclesFollowTheClock) {
  const auto placesAt = [this](int second) {
    desktop.time = {10, 20, second};
    desktop.timeReads = 0;
    Form().Label1.Click.Raise();
    EXPECT_EQ(desktop.timeReads, 1);
    std::vector<std::pair<float, float>> places;
    for (std::int16_t i = 2; i <= Form().TransLayers.UBound(); ++i) {
      places.emplace_back(Form().TransLayers(i).Left(), Form().TransLayers(i).Top());
    }
    Room().UnloadLayerItems();
    return places;
  };
  const auto first = placesAt(30);
  EXPECT_EQ(placesAt(30), first);
  EXPECT_NE(placesAt(31), first);
}

TEST_F(LayerEvents, TheLabelChecksTheClipboardFirst) {
  desktop.clipboardFormats = {8};
  EXPECT_FALSE(IsEnabled("Paste"));
  Form().Label1.Click.Raise();
  EXPECT_TRUE(IsEnabled("Paste"));
}

TEST_F(LayerEvents, AStepOfTheLabelThatFailsDoesNotHoldUpTheOthers) {
  desktop.Expect("Critical Error: Error Number : 7");
  Room().BeforeLabelLayer.Connect([] { Raise(ErrorNumber::OutOfMemory); });
  Form().Label1.Click.Raise();
  EXPECT_EQ(Form().TransLayers.UBound(), 6);
  EXPECT_TRUE(Form().TransLayers(6).Visible());
  EXPECT_EQ(events.errors, std::vector<int>{7});
}

TEST_F(LayerEvents, TheSecondLabelQuartersTheBackgroundAndRebuildsTheView) {
  control->LetBGImage(MakeImage("back.bmp", 500, 100));
  control->LetIsToShowBackImage(true);
  EXPECT_EQ(Form().BorderCorner.Left(), 500);
  int changes = 0;
  Form().TransBackImage.Change.Connect([&] { ++changes; });
  ForgetTrace();
  Form().Label2.Click.Raise();
  EXPECT_EQ(Form().TransBackImage.Width(), 125);
  EXPECT_EQ(Form().TransBackImage.Height(), 100);
  EXPECT_EQ(Form().TransBackImage.Picture().Width(), 500);
  EXPECT_EQ(changes, 2) << "its width, and its picture once more";
  EXPECT_EQ(Form().BorderCorner.Left(), 400);
  EXPECT_EQ(Trace(), (Names{"Label2_Click", "UpdateAndZoom", "picCanvas_Resize", "SetScrollBalValues"}));
}

}  // namespace
}  // namespace kw::test
