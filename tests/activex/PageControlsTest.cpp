// The page controls as a user sees and uses them: the label with the page count and the list of the pages in its gap.

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/InputFixture.h"
#include "tests/activex/Sinks.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class PageControls : public InputTest {
protected:
  void Open(const std::wstring& path) {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    ASSERT_EQ(control->OpenFile(Text(path)), S_OK);
    PumpMessages(20);
  }
  // The list of the pages is that of the two whose first entry is "1".
  HWND PageList() const {
    for (const HWND list : ChildWindows(editor, WC_COMBOBOXW)) {
      if (EntryOf(list, 0) == L"1") return list;
    }
    return nullptr;
  }
  // Chooses by the mouse and the keyboard: drops the list down, goes down so many entries, takes that one.
  void ChooseEntryBelow(int steps) {
    const HWND list = PageList();
    ASSERT_NE(list, nullptr);
    RECT place = {};
    GetWindowRect(list, &place);
    PumpMessages(GetDoubleClickTime() + 50);  // each click is one of its own
    hand.ClickAt({place.right - 8, (place.top + place.bottom) / 2});
    ASSERT_TRUE(hand.Await([&] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != FALSE; }));
    for (int i = 0; i < steps; ++i) hand.Strike(VK_DOWN);
    hand.Strike(VK_RETURN);
    ASSERT_TRUE(hand.Await([&] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) == FALSE; }));
  }
  // Whether a label of the strip shows this text and nothing covers it.
  bool ShowsLabel(const std::wstring& text) const {
    for (const HWND window : VisibleWindows(editor)) {
      wchar_t name[40] = {};
      GetClassNameW(window, name, 40);
      RECT client = {};
      GetClientRect(window, &client);
      constexpr LONG AnyLabel = 24;
      if (std::wstring(name) != L"KwEditorView" || client.bottom > AnyLabel || client.right < AnyLabel) continue;
      if (LooksLike(window, client, text)) return true;
    }
    return false;
  }

private:
  bool LooksLike(HWND window, const RECT& client, const std::wstring& text) const {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HDC memory = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    const HGDIOBJ font = SelectObject(memory, reinterpret_cast<HFONT>(SendMessageW(PageList(), WM_GETFONT, 0, 0)));
    RECT all = client;
    FillRect(memory, &all, GetSysColorBrush(COLOR_3DFACE));
    SetBkMode(memory, TRANSPARENT);
    SetTextColor(memory, GetSysColor(COLOR_BTNTEXT));
    DrawTextW(memory, text.c_str(), -1, &all, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    const Snapshot shown(window);
    bool isSame = true;
    for (int y = 0; y < client.bottom && isSame; ++y) {
      for (int x = 0; x < client.right && isSame; ++x) {
        if (shown.At(x, y) == GetPixel(memory, x, y)) continue;
        POINT point = {x, y};
        ClientToScreen(window, &point);
        isSame = WindowFromPoint(point) != window;
      }
    }
    SelectObject(memory, font);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    return isSame;
  }
};

TEST_F(PageControls, ShowTheCountOfThePages) {
  EXPECT_TRUE(ShowsLabel(L"Page                    of 1"));
  EXPECT_FALSE(ShowsLabel(L"Page                    of 3"));
  Open(scratch.WriteTiff(L"D.tif", 3));
  EXPECT_TRUE(ShowsLabel(L"Page                    of 3"));
  EXPECT_FALSE(ShowsLabel(L"Page                    of 1"));
  EXPECT_EQ(SendMessageW(PageList(), CB_GETCOUNT, 0, 0), 3);
  EXPECT_EQ(EntryOf(PageList(), 2), L"3");
}

TEST_F(PageControls, TurnToThePageThatIsChosenAndTheSameOneAgainDoesNothing) {
  Open(scratch.WriteTiff(L"D.tif", 3));
  EventSink sink;
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  ChooseEntryBelow(0);
  PumpMessages(50);
  EXPECT_TRUE(sink.events.empty());
  ChooseEntryBelow(1);
  EXPECT_TRUE(hand.Await([&] { return !sink.events.empty(); }));
  EXPECT_EQ(sink.events, std::vector<std::string>{"PageChanged(2)"});
  EXPECT_TRUE(HasTraced("cmbPageNo_Click"));
  ChooseEntryBelow(0);
  PumpMessages(50);
  EXPECT_EQ(sink.events.size(), 1U);
}

}  // namespace
}  // namespace kw::test
