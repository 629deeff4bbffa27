// The selection menu and the clipboard watch of the real control, with another program at the clipboard.

#include <string>
#include <vector>

#include "tests/activex/InputFixture.h"
#include "tests/activex/OtherProgram.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

struct Entry {
  std::wstring text;
  bool isEnabled = false;
  friend bool operator==(const Entry&, const Entry&) = default;
};
using Entries = std::vector<Entry>;

Entries EntriesOf(HWND menuWindow) {
  constexpr UINT GetMenuHandle = 0x01E1;  // MN_GETHMENU
  auto* const menu = reinterpret_cast<HMENU>(SendMessageW(menuWindow, GetMenuHandle, 0, 0));
  Entries entries;
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    wchar_t text[64] = {};
    MENUITEMINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING | MIIM_STATE;
    info.dwTypeData = static_cast<wchar_t*>(text);
    info.cch = 64;
    EXPECT_NE(GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info), FALSE);
    entries.push_back({static_cast<const wchar_t*>(text), (info.fState & MFS_DISABLED) == 0});
  }
  return entries;
}

Entries MenuWithPaste(bool isEnabled) {
  return {{L"&Copy", true}, {L"Cu&t", true}, {L"&Merge", true}, {L"&Paste", isEnabled}, {L"Select &All", true}};
}

class InputMenu : public InputTest {
protected:
  static constexpr POINT OnLayer = {120, 120};

  void SetUp() override {
    OtherProgram::LeaveOnTheClipboard(L"empty");
    InputTest::SetUp();
    Choose(L"Rectangle");
    DrawFrom({100, 100}, {180, 180});
    Choose(L"Selection");
    hand.MoveTo(OnCanvas(300, 200));
  }
  void TearDown() override {
    InputTest::TearDown();
    OtherProgram::LeaveOnTheClipboard(L"empty");
  }
  // Opens the menu with the right button, looks at it, and strikes a key in it.
  Entries OpenMenu(WORD key = VK_ESCAPE) {
    Entries shown;
    const Bystander user(MenuClass, {}, [&](HWND menu) {
      shown = EntriesOf(menu);
      SendKey(key, false);
      SendKey(key, true);
    });
    hand.ClickAt(OnCanvas(OnLayer.x, OnLayer.y), Hand::Button::Right);
    EXPECT_TRUE(hand.Await([&] { return user.HasActed(); }));
    return shown;
  }
  // The system paints the control again.
  void Repaint() const {
    RedrawWindow(editor, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    hand.Pump();
  }
  bool IsPasteEnabled() const { return ButtonOf(L"Paste").IsEnabled(); }
};

TEST_F(InputMenu, OpensOnALayerWithItsEntriesAndNotBeside) {
  const Snapshot before = Look();
  EXPECT_EQ(OpenMenu(), MenuWithPaste(false));
  // The press picked the layer, too.
  EXPECT_TRUE(hand.Await([&] { return Look() != before; }));
  bool hasMenu = false;
  {
    const Bystander user(MenuClass, {}, [&](HWND) {
      hasMenu = true;
      EndMenu();
    });
    hand.ClickAt(OnCanvas(300, 250), Hand::Button::Right);
    hand.GlideTo(OnCanvas(300, 260));
  }
  EXPECT_FALSE(hasMenu);
}

TEST_F(InputMenu, ItsEntriesRunTheCommands) {
  {
    const BoxAnswerer user({Once(": copy"), Once(": cut")});
    OpenMenu('C');
    EXPECT_TRUE(hand.Await([&] { return !user.Boxes().empty(); }));
    OpenMenu('T');
    EXPECT_TRUE(hand.Await([&] { return user.Boxes().size() == 2; }));
    const std::vector<std::string> boxes = user.Boxes();
    ASSERT_EQ(boxes.size(), 2U);
    EXPECT_TRUE(boxes[0].ends_with(": copy")) << boxes[0];
    EXPECT_TRUE(boxes[1].ends_with(": cut")) << boxes[1];
  }
  ForgetTrace();
  OpenMenu('M');
  EXPECT_TRUE(hand.Await([&] { return HasTraced("mnuMergeDown_Click"); }));
  OpenMenu('A');
  EXPECT_TRUE(hand.Await([&] { return HasTraced("mnuSelectAll_Click"); }));
}

TEST_F(InputMenu, PasteFollowsTheClipboardOfAnotherProgramAtEachRepaint) {
  Repaint();
  EXPECT_FALSE(IsPasteEnabled());
  OtherProgram::LeaveOnTheClipboard(L"image");
  Repaint();
  EXPECT_TRUE(IsPasteEnabled());
  EXPECT_EQ(OpenMenu(), MenuWithPaste(true));
  OtherProgram::LeaveOnTheClipboard(L"text");
  Repaint();
  EXPECT_FALSE(IsPasteEnabled()) << "a text is no image";
  EXPECT_EQ(OpenMenu(), MenuWithPaste(false));
  OtherProgram::LeaveOnTheClipboard(L"bitmap");
  ASSERT_NE(IsClipboardFormatAvailable(CF_DIB), FALSE) << "the system makes one of the bitmap";
  Repaint();
  EXPECT_FALSE(IsPasteEnabled()) << "nor is a plain bitmap what is pasted";
  EXPECT_EQ(OpenMenu(), MenuWithPaste(false));
  OtherProgram::LeaveOnTheClipboard(L"image");
  Repaint();
  EXPECT_TRUE(IsPasteEnabled());
  {
    const BoxAnswerer user({Once(": mnuPasteSelectedArea_Click")});
    ForgetTrace();
    OpenMenu('P');
    EXPECT_TRUE(hand.Await([&] { return !user.Boxes().empty(); }));
    EXPECT_TRUE(HasTraced("mnuPasteSelectedArea_Click")) << "the entry's own procedure";
    EXPECT_TRUE(HasTraced("ToolbarButtonClick"));
    for (const std::string& box : user.Boxes()) EXPECT_TRUE(box.ends_with(": mnuPasteSelectedArea_Click")) << box;
  }
  OtherProgram::LeaveOnTheClipboard(L"empty");
  Repaint();
  EXPECT_FALSE(IsPasteEnabled());
}

TEST_F(InputMenu, PasteFollowsTheClipboardAtTheNextTickWithoutARepaint) {
  // A tick comes every ten seconds; the hand waits that long.
  const auto becomes = [&](bool isEnabled) {
    const auto isSo = [&] { return IsPasteEnabled() == isEnabled; };
    return hand.Await(isSo) || hand.Await(isSo);
  };
  Repaint();
  ASSERT_FALSE(IsPasteEnabled());
  OtherProgram::LeaveOnTheClipboard(L"image");
  EXPECT_TRUE(becomes(true)) << "an image";
  OtherProgram::LeaveOnTheClipboard(L"bitmap");
  EXPECT_TRUE(becomes(false)) << "no image any more";
}

TEST_F(InputMenu, AnImageIsNotPastedWhereNothingMayBeEdited) {
  OtherProgram::LeaveOnTheClipboard(L"image");
  Repaint();
  ASSERT_TRUE(IsPasteEnabled());
  control->put_IsEditable(VARIANT_FALSE);
  Repaint();
  EXPECT_FALSE(IsPasteEnabled());
  control->put_IsEditable(VARIANT_TRUE);
  Repaint();
  EXPECT_TRUE(IsPasteEnabled());
}

TEST_F(InputMenu, AClipboardThatAnotherProgramHoldsStopsNothing) {
  OtherProgram::LeaveOnTheClipboard(L"image");
  Repaint();
  const DWORD start = GetTickCount();
  {
    const OtherProgram holder;
    Repaint();
    EXPECT_TRUE(IsPasteEnabled()) << "which formats there are can be seen all the same";
    EXPECT_EQ(OpenMenu(), MenuWithPaste(true));
    const BoxAnswerer user({Once(": mnuPasteSelectedArea_Click")});
    hand.Strike('V', VK_CONTROL);
    EXPECT_TRUE(hand.Await([&] { return user.Boxes().size() == 1; }));
    // A text in which a paste is tried keeps what was typed.
    Choose(L"Text");
    hand.DragFrom(OnCanvas(250, 250), OnCanvas(330, 290));
    HWND field = nullptr;
    ASSERT_TRUE(hand.Await([&] { return (field = FindWindowExW(canvas, nullptr, L"Edit", nullptr)) != nullptr; }));
    hand.Type(L"ab");
    hand.Strike('V', VK_CONTROL);
    EXPECT_TRUE(hand.Await([&] { return GetWindowTextLengthW(field) == 2; }));
    hand.Strike(VK_ESCAPE);
    EXPECT_TRUE(hand.Await([&] { return IsWindow(field) == FALSE; }));
  }
  EXPECT_LT(GetTickCount() - start, 30000U);
  OtherProgram::LeaveOnTheClipboard(L"empty");
  Repaint();
  EXPECT_FALSE(IsPasteEnabled());
}

}  // namespace
}  // namespace kw::test
