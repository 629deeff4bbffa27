// Tool bars in a form that is too narrow for them, under the keyboard, and for those who cannot see them.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/windows/WholeEditor.h"
#include "windows/base/Text.h"

namespace kw::test {
namespace {

constexpr UINT GetMenuOf = 0x1E1;  // MN_GETHMENU

int CountOf(const ToolBar& bar) { return static_cast<int>(SendMessageW(WindowOf(bar), TB_BUTTONCOUNT, 0, 0)); }

bool HasMore(const ToolBar& bar) { return CountOf(bar) > static_cast<int>(bar.Buttons().size()); }

bool IsHidden(const ToolBar& bar, std::size_t index) {
  return SendMessageW(WindowOf(bar), TB_ISBUTTONHIDDEN, index + 1, 0) != 0;
}

std::vector<std::string> ShownKeys(const ToolBar& bar) {
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < bar.Buttons().size(); ++i) {
    if (!IsHidden(bar, i) && !bar.Buttons()[i].key.empty()) keys.push_back(bar.Buttons()[i].key);
  }
  return keys;
}

RECT ItemPlace(const ToolBar& bar, int index) {
  RECT place = {};
  SendMessageW(WindowOf(bar), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  return place;
}

// Pixels from the root window's left edge.
LONG RightOf(const ToolBar& bar, int index, HWND root) {
  RECT place = ItemPlace(bar, index);
  MapWindowPoints(WindowOf(bar), root, reinterpret_cast<POINT*>(&place), 2);
  return place.right;
}

void ClickItem(const ToolBar& bar, int index) {
  const RECT place = ItemPlace(bar, index);
  ClickAt(WindowOf(bar), (place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

std::string HotKey(const ToolBar& bar) {
  const auto hot = SendMessageW(WindowOf(bar), TB_GETHOTITEM, 0, 0);
  if (hot < 0) return "none";
  const auto index = static_cast<std::size_t>(hot);
  return index < bar.Buttons().size() ? bar.Buttons()[index].key : "more";
}

// Another thread that reads the menu that comes up and chooses the entry of that number, from 1 on; 0: none.
class MenuReader {
public:
  // "|" is a separator, "+" a ticked entry, "-" a grey one. `found` has them when the reader is gone.
  MenuReader(HWND window, int entry, std::vector<std::string>& found)
      : owner(window), entries(found), user([this, entry] { Read(entry); }) {}
  MenuReader(const MenuReader&) = delete;
  MenuReader& operator=(const MenuReader&) = delete;
  ~MenuReader() { user.join(); }

private:
  void Read(int entry) {
    HWND popUp = nullptr;
    for (int i = 0; i < 300 && popUp == nullptr; ++i) {
      popUp = FindWindowW(L"#32768", nullptr);
      if (popUp == nullptr) Sleep(10);
    }
    if (popUp == nullptr) return;
    auto* const menu = reinterpret_cast<HMENU>(SendMessageW(popUp, GetMenuOf, 0, 0));
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
      wchar_t text[80] = {};
      GetMenuStringW(menu, static_cast<UINT>(i), text, 80, MF_BYPOSITION);
      const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
      const std::string marks =
          std::string((state & MF_CHECKED) != 0 ? "+" : "") + ((state & MF_GRAYED) != 0 ? "-" : "");
      entries.push_back((state & MF_SEPARATOR) != 0 ? "|" : marks + windows::FromWide(text));
    }
    for (int i = 0; i < entry; ++i) PostMessageW(owner, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(owner, WM_KEYDOWN, entry == 0 ? VK_ESCAPE : VK_RETURN, 0);
    for (int i = 0; i < 200 && FindWindowW(L"#32768", nullptr) != nullptr; ++i) Sleep(10);
    PostMessageW(owner, WM_CANCELMODE, 0, 0);  // a menu that is still up would wait for ever
  }

  HWND owner;
  std::vector<std::string>& entries;
  std::thread user;
};

class ToolBars : public WholeEditor {
protected:
  // As with a page that is editable.
  ToolBars() {
    Form().kwraTools.SetEnabled(true);
    for (ToolBar* bar : {&Basic(), &Pages()}) {
      bar->SetEnabled(true);
      bar->EnableAllButtons(true);
    }
  }
  ToolBar& Basic() { return Form().tbrBasicTools(0); }
  ToolBar& Pages() { return Form().tbrBasicTools(1); }
  // Clicks the button for the rest and reads its menu.
  std::vector<std::string> Rest(ToolBar& bar, int entry = 0) {
    std::vector<std::string> found;
    {
      const MenuReader reader(window->Handle(), entry, found);
      ClickItem(bar, CountOf(bar) - 1);
    }
    return found;
  }
  bool Key(WPARAM key) {
    MSG message = {GetFocus(), WM_KEYDOWN, key, 0, 0, {}};
    const bool isTaken = window->TranslateAccelerator(message);
    TestForm::Pump();
    return isTaken;
  }
};

TEST_F(ToolBars, InAWideFormEveryButtonShows) {
  EXPECT_FALSE(HasMore(Basic()));
  EXPECT_FALSE(HasMore(Pages()));
  EXPECT_EQ(ShownKeys(Pages()).size(), 4U);
}

TEST_F(ToolBars, ButtonsThatANarrowFormWouldCutOffGiveWayToTheButtonForTheRest) {
  const std::size_t all = ShownKeys(Basic()).size();
  for (int width = 326; width >= 70; width -= 8) {
    Resize(width, 640);
    ASSERT_TRUE(HasMore(Basic())) << width;
    EXPECT_LE(RightOf(Basic(), CountOf(Basic()) - 1, window->Handle()), width);
    EXPECT_LT(ShownKeys(Basic()).size(), all) << width;
  }
  EXPECT_EQ(ShownKeys(Basic()).size(), 1U) << "and there is room for one beside it";
  Resize(860, 640);
  EXPECT_FALSE(HasMore(Basic()));
  EXPECT_EQ(ShownKeys(Basic()).size(), all);
}

TEST_F(ToolBars, TheMenuOfTheRestHasWhatDoesNotShow) {
  Resize(496, 640);
  ASSERT_TRUE(HasMore(Pages()));
  ASSERT_FALSE(HasMore(Basic()));
  EXPECT_EQ(ShownKeys(Pages()), (std::vector<std::string>{"ShowHideTools"}));
  EXPECT_EQ(Rest(Pages()), (std::vector<std::string>{"Show/Hide Background Image", "Previous Page", "Next Page"}));
}

TEST_F(ToolBars, ABarThatIsOutOfSightIsInTheMenuOfTheOneBefore) {
  Resize(300, 640);
  ASSERT_TRUE(HasMore(Basic()));
  const std::vector<std::string> found = Rest(Basic());
  ASSERT_GE(found.size(), 5U);
  EXPECT_EQ(
      std::vector<std::string>(found.end() - 5, found.end()),
      (std::vector<std::string>{"|", "Show/Hide Tools", "Show/Hide Background Image", "Previous Page", "Next Page"}));
  EXPECT_TRUE(std::ranges::find(found, "Zoom Out") != found.end());
  EXPECT_TRUE(std::ranges::find(found, "Cut") == found.end()) << "hidden by the editor";
}

TEST_F(ToolBars, WhatIsChosenThereIsClicked) {
  Resize(496, 640);
  int clicks = 0;
  const std::string page = "ShowHideBackImage";
  Form().tbrBasicTools(1).ButtonClick.Connect([&](const std::string& key) {
    EXPECT_EQ(key, page);
    ++clicks;
  });
  Rest(Pages(), 1);
  EXPECT_EQ(clicks, 1);
}

TEST_F(ToolBars, AMenuThatIsClosedAgainClicksNothing) {
  Resize(496, 640);
  int clicks = 0;
  Form().tbrBasicTools(1).ButtonClick.Connect([&](const std::string&) { ++clicks; });
  Rest(Pages(), 0);
  EXPECT_EQ(clicks, 0);
}

TEST_F(ToolBars, DisabledAndPressedButtonsAreSoInTheMenu) {
  Pages().SetButtonEnabled("PrevPage", false);
  Pages().SetButtonPressed("NextPage", true);
  Resize(496, 640);
  EXPECT_EQ(Rest(Pages()), (std::vector<std::string>{"Show/Hide Background Image", "-Previous Page", "+Next Page"}));
}

TEST_F(ToolBars, AWindowThatGoesWhileTheMenuIsUpIsGone) {
  Resize(496, 640);
  std::atomic<bool> wasUp = false;
  std::thread user([&, owner = window->Handle(), thread = GetCurrentThreadId()] {
    for (int i = 0; i < 300 && FindWindowW(L"#32768", nullptr) == nullptr; ++i) Sleep(10);
    wasUp = FindWindowW(L"#32768", nullptr) != nullptr;
    PostMessageW(host, WM_CLOSE, 0, 0);  // handled in the menu's loop
    for (int i = 0; i < 300 && IsWindow(host) != FALSE; ++i) Sleep(10);
    PostMessageW(owner, WM_CANCELMODE, 0, 0);
    PostThreadMessageW(thread, WM_NULL, 0, 0);
  });
  const HWND bar = WindowOf(Pages());
  ClickItem(Pages(), CountOf(Pages()) - 1);
  user.join();
  EXPECT_TRUE(wasUp);
  EXPECT_FALSE(IsWindow(bar));
}

TEST_F(ToolBars, InTwoRowsTheSecondBarHasRoomAgain) {
  Resize(436, 640);
  ASSERT_TRUE(HasMore(Basic())) << "for the second bar";
  Form().kwraBasicToolsContainer(1).Move(1, 32);
  EXPECT_FALSE(HasMore(Basic()));
  EXPECT_FALSE(HasMore(Pages()));
}

TEST_F(ToolBars, TheTabKeyReachesEveryBarAndTheArrowsItsButtons) {
  std::vector<const ToolBar*> reached;
  SetFocus(window->Handle());
  for (int i = 0; i < 40 && Key(VK_TAB); ++i) {
    for (Control* control : Form().Controls()) {
      const auto* bar = dynamic_cast<const ToolBar*>(control);
      if (bar != nullptr && WindowOf(*bar) == GetFocus()) reached.push_back(bar);
    }
  }
  std::vector<const ToolBar*> shown;
  for (Control* control : Form().Controls()) {
    const auto* bar = dynamic_cast<const ToolBar*>(control);
    if (bar != nullptr && IsWindowVisible(WindowOf(*bar)) != FALSE) shown.push_back(bar);
  }
  EXPECT_EQ(reached, shown);
  EXPECT_GE(reached.size(), 6U);
}

TEST_F(ToolBars, ArrowsHomeAndEndGoFromButtonToButtonPastWhatCannotBeClicked) {
  Basic().SetButtonEnabled("Print", false);
  SetFocus(WindowOf(Basic()));
  EXPECT_EQ(HotKey(Basic()), "Save");
  EXPECT_TRUE(Key(VK_RIGHT));
  EXPECT_EQ(HotKey(Basic()), "PrinterSetup") << "past the gap and the disabled one";
  Key(VK_LEFT);
  EXPECT_EQ(HotKey(Basic()), "Save");
  Key(VK_LEFT);
  EXPECT_EQ(HotKey(Basic()), "Save") << "the first stays the first";
  Key(VK_END);
  EXPECT_EQ(HotKey(Basic()), "ZoomOut");
  Key(VK_HOME);
  EXPECT_EQ(HotKey(Basic()), "Save");
  SetFocus(window->Handle());
  EXPECT_EQ(HotKey(Basic()), "none");
  Key(VK_RIGHT);
  SetFocus(WindowOf(Pages()));
  SetFocus(WindowOf(Basic()));
  EXPECT_EQ(HotKey(Basic()), "Save") << "where the keyboard was last";
}

TEST_F(ToolBars, UpAndDownGoFromRowToRow) {
  ToolBar& tools = Form().tbrEditingTools;
  tools.EnableAllButtons(true);
  SetFocus(WindowOf(tools));
  Key(VK_HOME);
  Key(VK_RIGHT);
  EXPECT_EQ(HotKey(tools), "Chooser");
  Key(VK_DOWN);
  EXPECT_EQ(HotKey(tools), "Circle");
  Key(VK_DOWN);
  EXPECT_EQ(HotKey(tools), "Circle");
  Key(VK_UP);
  EXPECT_EQ(HotKey(tools), "Chooser");
}

TEST_F(ToolBars, TheSpaceBarAndEnterClickAndEscapeGoesBackToTheForm) {
  std::vector<std::string> clicks;
  Form().tbrBasicTools(1).ButtonClick.Connect([&](const std::string& key) { clicks.push_back(key); });
  SetFocus(WindowOf(Pages()));
  Key(VK_SPACE);
  Key(VK_RIGHT);
  Key(VK_RETURN);
  EXPECT_EQ(clicks, (std::vector<std::string>{"ShowHideTools", "ShowHideBackImage"}));
  Key(VK_ESCAPE);
  EXPECT_EQ(GetFocus(), window->Handle());
  EXPECT_EQ(HotKey(Pages()), "none");
}

TEST_F(ToolBars, TheMenuOfTheRestOpensFromTheKeyboard) {
  Resize(496, 640);
  SetFocus(WindowOf(Pages()));
  Key(VK_END);
  EXPECT_EQ(HotKey(Pages()), "more");
  std::vector<std::string> found;
  {
    const MenuReader reader(window->Handle(), 0, found);
    Key(VK_SPACE);
  }
  EXPECT_EQ(found.size(), 3U);
}

TEST_F(ToolBars, AKeyThatIsHeldDownClicksOnce) {
  int clicks = 0;
  Pages().ButtonClick.Connect([&](const std::string&) { ++clicks; });
  SetFocus(WindowOf(Pages()));
  for (const LPARAM details : {LPARAM{1}, LPARAM{0x40000001}, LPARAM{0x40000001}}) {
    SendMessageW(GetFocus(), WM_CHAR, L'\r', details);
  }
  EXPECT_EQ(clicks, 1);
}

TEST_F(ToolBars, ABarWithNothingToClickIsNoTabStop) {
  Pages().EnableAllButtons(false);
  SetFocus(window->Handle());
  for (int i = 0; i < 40 && Key(VK_TAB); ++i) EXPECT_NE(GetFocus(), WindowOf(Pages()));
  Resize(300, 640);
  Pages().EnableAllButtons(true);
  SetFocus(window->Handle());
  for (int i = 0; i < 40 && Key(VK_TAB); ++i) EXPECT_NE(GetFocus(), WindowOf(Pages())) << "out of sight";
}

TEST_F(ToolBars, EveryButtonIsNamedByItsToolTip) {
  Resize(496, 640);
  int named = 0;
  for (Control* control : Form().Controls()) {
    const auto* bar = dynamic_cast<const ToolBar*>(control);
    if (bar == nullptr) continue;
    control->SetVisible(true);
    for (std::size_t i = 0; i < bar->Buttons().size(); ++i) {
      if (bar->Buttons()[i].style == ButtonStyle::Separator) continue;
      wchar_t text[80] = {};
      SendMessageW(WindowOf(*bar), TB_GETBUTTONTEXTW, i + 1, reinterpret_cast<LPARAM>(text));
      EXPECT_EQ(windows::FromWide(text), bar->Buttons()[i].toolTip);
      ++named;
    }
  }
  EXPECT_GT(named, 40);
  wchar_t text[80] = {};
  SendMessageW(WindowOf(Pages()), TB_GETBUTTONTEXTW, Pages().Buttons().size() + 1, reinterpret_cast<LPARAM>(text));
  EXPECT_STREQ(text, L"More Buttons");
}

TEST_F(ToolBars, WindowsAreNamedByTheirToolTips) {
  int named = 0;
  for (Control* control : Form().Controls()) {
    const HWND own = WindowOf(*control);
    if (own == nullptr || control->ToolTip().empty() || dynamic_cast<const ImageCombo*>(control) != nullptr) continue;
    wchar_t text[80] = {};
    GetWindowTextW(own, text, 80);
    EXPECT_EQ(windows::FromWide(text), control->ToolTip()) << control->Name();
    ++named;
  }
  EXPECT_GE(named, 4);
}

}  // namespace
}  // namespace kw::test
