// Who tells that the annotated page has changed.

#include "annotated/PageWatch.h"

#include <gtest/gtest.h>

#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class PageWatchTest : public LayersTest {
protected:
  PageWatchTest() : watch(desktop, Form()) {
    watch.Changed.Connect([this] { ++told; });
  }

  // What is told at the next look.
  int Told() {
    told = 0;
    for (const auto& [timer, interval] : std::map(desktop.runningTimers)) {
      if (timer->Name() == "PageWatch") timer->Fire();
    }
    return told;
  }

  PageWatch watch;
  int told = 0;
};

TEST_F(PageWatchTest, TellsNothingAsLongAsNothingChanges) {
  EXPECT_EQ(Told(), 0);
  EXPECT_EQ(Told(), 0);
}

TEST_F(PageWatchTest, TellsEachChangeOnce) {
  TransparentPicture& layer = Add(10, 10);
  EXPECT_EQ(Told(), 1);
  EXPECT_EQ(Told(), 0);
  layer.Move(20, 30);
  layer.SetCaption("new");
  layer.SetForeColor(MakeColour(1, 2, 3));
  EXPECT_EQ(Told(), 1) << "what changes together is told together";
  Add(20, 20);
  EXPECT_EQ(Told(), 1);
  layer.ZOrder();
  EXPECT_EQ(Told(), 1);
  layer.SetVisible(false);
  EXPECT_EQ(Told(), 1);
  EXPECT_EQ(Told(), 0);
}

TEST_F(PageWatchTest, TellsAPictureOfTheSameSize) {
  TransparentPicture& page = Form().TransLayers(Layers::PageLayer);
  const Bitmap same = page.Picture();
  page.SetPicture(same);
  EXPECT_EQ(Told(), 0);
  Bitmap other = page.Picture();
  other.MutableRow(0)[0] ^= 1U;
  page.SetPicture(other);
  EXPECT_EQ(Told(), 1);
}

TEST_F(PageWatchTest, TellsThatADocumentIsOpened) {
  control->OpenFile(MakeImage("other.bmp", 400, 300));
  EXPECT_EQ(Told(), 1);
}

TEST_F(PageWatchTest, TellsTheBackground) {
  TransparentPicture& back = Form().TransBackImage;
  back.SetPicture(Bitmap(20, 20, 24));
  EXPECT_EQ(Told(), 0) << "it is not shown";
  back.SetVisible(true);
  EXPECT_EQ(Told(), 1);
  back.SetLightened(true);
  EXPECT_EQ(Told(), 1);
}

TEST_F(PageWatchTest, PickingALayerIsNoChange) {
  TransparentPicture& layer = Add(10, 10);
  Told();
  Choose("NoTools");
  Room().PassPress(layer.Index().value_or(0));
  ASSERT_EQ(layer.SelectionFrame(), 1);
  layer.SetIsToShowBorderMarks(true);
  Form().fr.SetVisible(true);
  Form().point1(0).SetVisible(true);
  EXPECT_EQ(Told(), 0);
}

TEST_F(PageWatchTest, KeepsNoPixels) {
  TransparentPicture& page = Form().TransLayers(Layers::PageLayer);
  page.SetPicture(Bitmap(8, 8, 24));
  Told();
  Bitmap picture = page.Picture();
  page.SetPicture({});
  const auto* const pixels = picture.Row(0).data();
  EXPECT_EQ(picture.MutableRow(0).data(), pixels) << "nobody shares them";
}

TEST_F(PageWatchTest, EndsWithItsOwner) {
  { const PageWatch second(desktop, Form()); }
  int running = 0;
  for (const auto& [timer, interval] : desktop.runningTimers) running += timer->Name() == "PageWatch" ? 1 : 0;
  EXPECT_EQ(running, 1);
}

}  // namespace
}  // namespace kw::test
