#include "components/controls/ControlArray.h"

#include <gtest/gtest.h>

#include "components/controls/LightWeightMarker.h"
#include "components/controls/TransparentPicture.h"
#include "tests/support/Errors.h"

namespace kw {
namespace {

using test::ErrorOf;

TEST(ControlArray, HoldsItsItemsOfDesign) {
  const ControlArray<TransparentPicture> layers("TransLayers", 2);
  EXPECT_EQ(layers.LBound(), 0);
  EXPECT_EQ(layers.UBound(), 1);
  EXPECT_EQ(layers.Count(), 2);
  EXPECT_EQ(layers(1).Name(), "TransLayers");
  EXPECT_EQ(layers(1).Index(), std::optional<std::int16_t>(1));
}

TEST(ControlArray, LoadsHiddenCopiesOfItemZeroIntoItsContainer) {
  Control canvas("picCanvas", "PictureBox");
  ControlArray<LightWeightMarker> points("point1", 1);
  points(0).SetContainer(&canvas);
  points(0).Move(1, 2, 3, 4);
  points(0).SetColor(7);
  LightWeightMarker& loaded = points.Load(1);
  EXPECT_FALSE(loaded.Visible());
  EXPECT_EQ(loaded.Width(), 3);
  EXPECT_EQ(loaded.Color(), 7U);
  EXPECT_EQ(loaded.Container(), &canvas);
  EXPECT_EQ(points.UBound(), 1);
}

TEST(ControlArray, ConnectsTheItemsThatExistAndThoseLoadedLater) {
  ControlArray<TransparentPicture> layers("TransLayers", 2);
  std::vector<int> connected;
  layers.ConnectItems([&](const TransparentPicture& item) { connected.push_back(*item.Index()); });
  layers.Load(2);
  EXPECT_EQ(connected, (std::vector<int>{0, 1, 2}));
}

TEST(ControlArray, RefusesWhatIsOutOfRangeWithTheRunTimesNumbers) {
  ControlArray<TransparentPicture> layers("TransLayers", 2);
  EXPECT_EQ(ErrorOf([&] { layers(2); }), 340);
  EXPECT_EQ(ErrorOf([&] { layers(-1); }), 340);
  EXPECT_EQ(ErrorOf([&] { layers.Load(-1); }), 341);
  EXPECT_EQ(ErrorOf([&] { layers.Load(32768); }), 341);
  EXPECT_EQ(ErrorOf([&] { layers.Load(1); }), 360);
  EXPECT_EQ(ErrorOf([&] { layers.Unload(5); }), 340);
  EXPECT_EQ(ErrorOf([&] { layers.Unload(1); }), 362);
  EXPECT_EQ(layers.Count(), 2);
}

TEST(ControlArray, NamesTheMissingElementInTheErrorsText) {
  const ControlArray<TransparentPicture> layers("TransLayers", 2);
  try {
    layers(9);
    FAIL() << "no error came";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Description(), "Control array element '9' doesn't exist");
  }
}

TEST(ControlArray, UnloadsWhatWasLoadedAndKnowsItsUpperBound) {
  Control canvas("picCanvas", "PictureBox");
  ControlArray<TransparentPicture> layers("TransLayers", 2);
  layers(0).SetContainer(&canvas);
  layers.Load(2);
  layers.Load(3);
  layers.Unload(2);
  EXPECT_EQ(layers.UBound(), 3);
  EXPECT_EQ(layers.Count(), 3);
  EXPECT_FALSE(layers.IsLoaded(2));
  layers.Unload(3);
  EXPECT_EQ(layers.UBound(), 1);
  EXPECT_EQ(canvas.Children().size(), 1U);
  layers.Load(2);
  EXPECT_TRUE(layers.IsLoaded(2));
}

}  // namespace
}  // namespace kw
