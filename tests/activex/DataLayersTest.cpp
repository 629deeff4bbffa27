// The annotated page of a control in a user's hand is, pixel for pixel, what the canvas shows.

#include <algorithm>

#include "tests/activex/GivenPage.h"
#include "tests/activex/InputFixture.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {
namespace {

HBITMAP WINAPI NoSection(HDC /*context*/, const BITMAPINFO* /*info*/, UINT /*usage*/, void** /*bits*/, HANDLE /*file*/,
                         DWORD /*offset*/) {
  return nullptr;
}

class DataLayersTest : public InputTest {
protected:
  static constexpr int PageWidth = 500;
  static constexpr int PageHeight = 400;

  GivenPicture Page() const { return DibOf(*As<IDataObject>().Get()); }
  // The first pixel that differs.
  static testing::AssertionResult Equal(const GivenPicture& page, const Snapshot& seen) {
    if (page.width != PageWidth || page.height != PageHeight) {
      return testing::AssertionFailure() << page.width << " x " << page.height;
    }
    for (int y = 0; y < PageHeight; ++y) {
      for (int x = 0; x < PageWidth; ++x) {
        if (page.At(x, y) == seen.At(x, y)) continue;
        return testing::AssertionFailure() << x << ", " << y << ": " << page.At(x, y) << " and not " << seen.At(x, y);
      }
    }
    return testing::AssertionSuccess();
  }
};

TEST_F(DataLayersTest, IsWhatTheCanvasShows) {
  EXPECT_TRUE(Equal(Page(), Look()));
  ChooseRedOnBlue();
  Choose(L"Rectangle");
  Choose(L"Fill Inside");
  DrawFrom({200, 200}, {100, 120});
  Choose(L"Circle");
  DrawFrom({320, 260}, {150, 150});
  Choose(L"Pen");
  DrawFrom({40, 60}, {120, 200});
  EXPECT_TRUE(Equal(Page(), Look()));
}

TEST_F(DataLayersTest, HasNeitherFrameNorHandlesOfThePickedLayer) {
  ChooseRedOnBlue();
  Choose(L"Rectangle");
  DrawFrom({200, 200}, {100, 120});
  const GivenPicture before = Page();
  Choose(L"Selection");
  hand.ClickAt(OnCanvas(150, 160));
  hand.MoveTo(OnCanvas(300, 300));
  ASSERT_TRUE(Shows(99, 119, RGB(0, 0, 0))) << "the corner of a handle";
  EXPECT_FALSE(Equal(before, Look())) << "the canvas shows the handles";
  EXPECT_EQ(Page().pixels, before.pixels);
}

TEST_F(DataLayersTest, HasTheTextThatIsBeingTyped) {
  const GivenPicture empty = Page();
  ChooseRedOnBlue();
  Choose(L"Text");
  DrawFrom({60, 150}, {330, 230});
  hand.Type(L"hello");
  const GivenPicture typed = Page();
  EXPECT_NE(typed.pixels, empty.pixels);
  EXPECT_GT(std::count(typed.pixels.begin(), typed.pixels.end(), Red),
            std::count(empty.pixels.begin(), empty.pixels.end(), Red))
      << "the letters";
  {
    const ImportPatch patch(Ocx::Library(), "CreateDIBSection", &NoSection);
    FORMATETC format = FormatOf(CF_DIB, TYMED_HGLOBAL);
    Given given;
    EXPECT_EQ(As<IDataObject>()->GetData(&format, &given), E_OUTOFMEMORY) << "rather than a page without its text";
  }
  hand.Strike(VK_ESCAPE);
  hand.Pump();
  hand.MoveTo(OnCanvas(400, 380));
  EXPECT_EQ(Page().pixels, typed.pixels);
}

}  // namespace
}  // namespace kw::test
