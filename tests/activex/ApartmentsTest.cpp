// Eight threads with a control each that share the folder of their files.

#include <windows.h>

#include <ole2.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "tests/activex/DrawnPixels.h"
#include "tests/activex/Ocx.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/Torture.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

constexpr int Apartments = 8;
constexpr int Pages = 4;
constexpr int Turns = 12;  // of one life
constexpr int TurnedPageWidth = 60;
constexpr int TurnedPageHeight = 50;

// No other page of any thread has it, and nothing else of the control.
COLORREF ColourOf(int apartment, int page) { return RGB(30 * page + 7, 201, 11 + 30 * apartment); }

// How many pixels of each page's colour the control shows now.
std::map<COLORREF, std::ptrdiff_t> PagesShown(IUnknown* control) {
  std::unordered_map<DWORD, std::ptrdiff_t> all;
  for (const DWORD pixel : DrawnPixels(control, 600, 450)) ++all[pixel];
  std::map<COLORREF, std::ptrdiff_t> shown;
  for (int apartment = 0; apartment < Apartments; ++apartment) {
    for (int page = 1; page <= Pages; ++page) {
      const COLORREF colour = ColourOf(apartment, page);
      const auto found = all.find(RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour)));
      if (found != all.end()) shown[colour] = found->second;
    }
  }
  return shown;
}

// A document of one-coloured pages, and a thread that opens and turns them in controls of its own, one after the other.
class PageTurner {
public:
  PageTurner(const ScratchFolder& shared, int number)
      : folder(shared), apartment(number), name(L"document" + std::to_wstring(number)) {
    for (int page = 1; page <= Pages; ++page) {
      folder.WriteBitmap(name + L"_Page_" + std::to_wstring(page) + L".bmp", TurnedPageWidth, TurnedPageHeight,
                         [&](int, int) { return ColourOf(apartment, page); });
    }
  }

  // On a thread of its own.
  void Run(int leastLives, std::chrono::steady_clock::time_point end) {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    while (!testing::Test::HasFatalFailure() && (lives < leastLives || std::chrono::steady_clock::now() < end)) {
      Live();
      ++lives;
    }
    PumpMessages(20);
    OleUninitialize();
  }

  int lives = 0;
  int turned = 0;
  int wrongPages = 0;

private:
  void Live() {
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
    TurnPages(control.Get(), ToolBarButtons(container.ControlWindow()));
    container.LetGo();
  }

  void TurnPages(IUnknown* control, const std::map<std::string, ToolBarButton>& buttons) {
    int page = 1;
    int step = 1;
    for (int i = 0; i < Turns; ++i) {
      if (page + step < 1 || page + step > Pages) step = -step;
      page += step;
      buttons.at(step > 0 ? "Next Page" : "Previous Page").Post();
      const auto shown = PagesShown(control);
      const bool isRight = shown.size() == 1 && shown.begin()->first == ColourOf(apartment, page) &&
                           shown.begin()->second > TurnedPageWidth * TurnedPageHeight / 2;
      if (!isRight && wrongPages++ == 0) {
        ADD_FAILURE() << "apartment " << apartment << ", life " << lives << ", turn " << i << ", page " << page << ": "
                      << testing::PrintToString(shown);
      }
      ++turned;
    }
  }

  const ScratchFolder& folder;
  int apartment;
  std::wstring name;
};

TEST(Apartments, LiveAndTurnTheirPagesSideBySide) {
  const int lives = IsTortured() ? 1 : 4;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(TortureSeconds());
  const ScratchFolder folder;
  std::vector<std::unique_ptr<PageTurner>> turners;
  std::vector<std::thread> threads;
  turners.reserve(Apartments);
  threads.reserve(Apartments);
  for (int i = 0; i < Apartments; ++i) turners.push_back(std::make_unique<PageTurner>(folder, i));
  for (const auto& turner : turners) threads.emplace_back([&turner, lives, end] { turner->Run(lives, end); });
  for (std::thread& thread : threads) thread.join();
  int allLives = 0;
  int allTurns = 0;
  for (const auto& turner : turners) {
    EXPECT_GE(turner->lives, lives);
    EXPECT_EQ(turner->turned, turner->lives * Turns);
    EXPECT_EQ(turner->wrongPages, 0);
    allLives += turner->lives;
    allTurns += turner->turned;
  }
  std::cout << allLives << " lives and " << allTurns << " pages in " << Apartments << " apartments\n";
  EXPECT_TRUE(Ocx::CanUnload());
}

}  // namespace
}  // namespace kw::test
