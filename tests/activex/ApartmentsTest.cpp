// Two threads with a control each that share the folder of their files.

#include <windows.h>

#include <ole2.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <thread>
#include <vector>

#include "tests/activex/DrawnPixels.h"
#include "tests/activex/Ocx.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

constexpr int Pages = 4;
constexpr int TurnedPageWidth = 60;
constexpr int TurnedPageHeight = 50;

// How many pixels of each colour the control shows now.
class Shown {
public:
  explicit Shown(IUnknown* control) : pixels(DrawnPixels(control, 600, 450)) {}
  std::ptrdiff_t Count(COLORREF colour) const {
    const DWORD wanted = RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour));
    return std::ranges::count(pixels, wanted);
  }

private:
  std::vector<DWORD> pixels;
};

// A document of one-coloured pages, and a thread that turns them in a control of its own.
class PageTurner {
public:
  PageTurner(const ScratchFolder& shared, std::wstring documentName, int shade)
      : folder(shared), name(std::move(documentName)), blue(shade) {
    for (int page = 1; page <= Pages; ++page) {
      folder.WriteBitmap(name + L"_Page_" + std::to_wstring(page) + L".bmp", TurnedPageWidth, TurnedPageHeight,
                         [&](int, int) { return ColourOf(page); });
    }
  }

  COLORREF ColourOf(int page) const { return RGB(30 * page + 7, 201, blue); }

  // On a thread of its own. `other` is the one whose pages must not be seen here.
  void Run(const PageTurner& other, int turns) {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    TurnPages(other, turns);
    PumpMessages(20);
    OleUninitialize();
  }

  int turned = 0;
  int wrongPages = 0;
  std::vector<std::string> boxes;

private:
  void TurnPages(const PageTurner& other, int turns) {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    const ComPtr<_KwEditorLayers> control = Ocx::Create();
    ASSERT_NE(control.Get(), nullptr);
    StrictContainer container;
    container.place = {0, 0, 600, 450};
    container.Take(control.Get());
    control->put_AppDir(Text(folder.Path()));
    ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
    control->put_IsToolboxVisible(VARIANT_FALSE);
    EXPECT_EQ(control->OpenFile(Text(folder.File(name + L"_Page_1.bmp"))), S_OK);
    std::map<std::string, ToolBarButton> buttons = ToolBarButtons(container.ControlWindow());
    int page = 1;
    int step = 1;
    for (int i = 0; i < turns; ++i) {
      if (page + step < 1 || page + step > Pages) step = -step;
      page += step;
      buttons.at(step > 0 ? "Next Page" : "Previous Page").Post();
      const Shown shown(control.Get());
      const std::ptrdiff_t own = shown.Count(ColourOf(page));
      bool isRight = own > TurnedPageWidth * TurnedPageHeight / 2;
      for (int one = 1; one <= Pages; ++one) {
        isRight = isRight && shown.Count(other.ColourOf(one)) == 0 && (one == page || shown.Count(ColourOf(one)) == 0);
      }
      if (!isRight && wrongPages++ == 0) {
        ADD_FAILURE() << "turn " << i << ", page " << page << ": " << own << " pixels of its colour";
      }
      ++turned;
    }
    container.LetGo();
    boxes = user.Boxes();
  }

  const ScratchFolder& folder;
  std::wstring name;
  int blue;
};

TEST(Apartments, TurnTheirPagesSideBySide) {
  constexpr int turns = 200;
  const ScratchFolder folder;
  PageTurner first(folder, L"first", 11);
  PageTurner second(folder, L"second", 222);
  std::thread one([&] { first.Run(second, turns); });
  std::thread other([&] { second.Run(first, turns); });
  one.join();
  other.join();
  for (const PageTurner* turner : {&first, &second}) {
    EXPECT_EQ(turner->turned, turns);
    EXPECT_EQ(turner->wrongPages, 0);
    EXPECT_EQ(turner->boxes.size(), 1U) << "the list of pending work";
  }
  EXPECT_TRUE(Ocx::CanUnload());
}

}  // namespace
}  // namespace kw::test
