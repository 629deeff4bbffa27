// The property page and its frame: the order of calls, rude frames, keys, layout.

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/activex/PageFrame.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/Bystander.h"
#include "tests/support/win32/Soon.h"
#include "tests/support/win32/WatchedWindow.h"
#include "windows/properties/PropertyPageIds.h"

namespace kw::test {
namespace {

class PropertyFrameTest : public PageTest {
protected:
  // A key as the frame's message loop hands it to the page.
  static HRESULT Press(PageFrame& frame, UINT message, WPARAM key, HWND window = GetFocus()) {
    MSG pressed = {};
    pressed.hwnd = window;
    pressed.message = message;
    pressed.wParam = key;
    pressed.lParam = 1;
    return frame.page->TranslateAccelerator(&pressed);
  }

  const RECT place = {0, 0, 300, 300};
};

TEST_F(PropertyFrameTest, ThePageHasItsInterfacesAndIsNoAggregate) {
  PageFrame frame;
  ASSERT_NE(frame.page.Get(), nullptr);
  ComPtr<IPropertyPage> page;
  EXPECT_EQ(frame.page.As(&page), S_OK);
  ComPtr<IDispatch> other;
  EXPECT_EQ(frame.page.As(&other), E_NOINTERFACE);
  EXPECT_EQ(frame.page->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  void* object = nullptr;
  EXPECT_EQ(Ocx::Factory(CLSID_KwEditorPage)->CreateInstance(control.Get(), IID_IUnknown, &object),
            CLASS_E_NOAGGREGATION);
}

// The frame's window hears that that of the page is destroyed.
TEST_F(PropertyFrameTest, AFrameMayActivateThePageWhileItIsDeactivated) {
  PageFrame frame;
  frame.Open({control.Get()});
  const HWND first = frame.PageWindow();
  HRESULT result = E_NOTIMPL;
  {
    const WatchedWindow window(frame.window, [&](UINT message, WPARAM wParam) {
      const bool isGoing = message == WM_PARENTNOTIFY && LOWORD(wParam) == WM_DESTROY;
      if (isGoing && result == E_NOTIMPL) result = frame.page->Activate(frame.window, &place, FALSE);
    });
    EXPECT_EQ(frame.page->Deactivate(), S_OK);
  }
  EXPECT_EQ(result, S_OK);
  EXPECT_EQ(IsWindow(first), FALSE);
  EXPECT_NE(frame.PageWindow(), nullptr);
  EXPECT_EQ(frame.page->Show(SW_SHOW), S_OK);
  frame.Close();
}

TEST_F(PropertyFrameTest, AFrameMayCallInAnyOrder) {
  PageFrame frame;
  IUnknown* object = control.Get();
  EXPECT_EQ(frame.page->Show(SW_SHOW), E_UNEXPECTED);
  EXPECT_EQ(frame.page->Move(&place), E_UNEXPECTED);
  EXPECT_EQ(frame.page->Deactivate(), E_UNEXPECTED);
  EXPECT_EQ(frame.page->Apply(), E_UNEXPECTED);
  EXPECT_EQ(frame.page->IsPageDirty(), S_FALSE);
  EXPECT_EQ(frame.page->Activate(frame.window, &place, FALSE), E_UNEXPECTED) << "there is no control";
  MSG message = {};
  EXPECT_EQ(frame.page->TranslateAccelerator(&message), E_UNEXPECTED);
  EXPECT_EQ(frame.page->SetObjects(1, nullptr), E_POINTER);
  IUnknown* foreign = Ocx::Factory().Get();
  EXPECT_EQ(frame.page->SetObjects(1, &foreign), E_NOINTERFACE);
  IUnknown* none = nullptr;
  EXPECT_EQ(frame.page->SetObjects(1, &none), E_POINTER);
  EXPECT_EQ(frame.page->SetObjects(1, &object), S_OK);
  EXPECT_EQ(frame.page->Activate(nullptr, nullptr, FALSE), E_POINTER);
  EXPECT_EQ(frame.page->Activate(frame.window, &place, FALSE), S_OK);
  EXPECT_EQ(frame.page->Activate(frame.window, &place, FALSE), E_UNEXPECTED);
  EXPECT_FALSE(IsWindowVisible(frame.PageWindow()));
  EXPECT_EQ(frame.page->Show(SW_MAXIMIZE), E_INVALIDARG);
  EXPECT_EQ(frame.page->Show(SW_SHOWNORMAL), S_OK);
  EXPECT_TRUE(IsWindowVisible(frame.PageWindow()));
  EXPECT_EQ(frame.page->Show(SW_HIDE), S_OK);
  EXPECT_FALSE(IsWindowVisible(frame.PageWindow()));
  const RECT moved = {20, 30, 220, 130};
  EXPECT_EQ(frame.page->Move(&moved), S_OK);
  RECT now = {};
  GetWindowRect(frame.PageWindow(), &now);
  MapWindowPoints(nullptr, frame.window, reinterpret_cast<POINT*>(&now), 2);
  EXPECT_TRUE(EqualRect(&now, &moved));
  EXPECT_EQ(frame.page->GetPageInfo(nullptr), E_POINTER);
  EXPECT_EQ(frame.page->Move(nullptr), E_POINTER);
  EXPECT_EQ(frame.page->TranslateAccelerator(nullptr), E_POINTER);
  EXPECT_EQ(frame.page->Help(L"C:\\"), E_NOTIMPL);
}

TEST_F(PropertyFrameTest, WhatWasEnteredSurvivesItsWindow) {
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Type(PAGE_UNDO_LEVELS, L"19");
  EXPECT_EQ(frame.page->Deactivate(), S_OK);
  EXPECT_EQ(frame.page->IsPageDirty(), S_OK);
  EXPECT_EQ(frame.page->Activate(frame.window, &place, FALSE), S_OK);
  EXPECT_EQ(frame.TextOf(PAGE_UNDO_LEVELS), L"19");
  EXPECT_EQ(frame.page->Deactivate(), S_OK);
  EXPECT_EQ(frame.page->Apply(), S_OK) << "without a window, too";
  short levels = 0;
  EXPECT_EQ(control->get_MaxUndoLevels(&levels), S_OK);
  EXPECT_EQ(levels, 19);
  IUnknown* object = control.Get();
  EXPECT_EQ(frame.page->SetObjects(1, &object), S_OK) << "another choice begins anew";
  EXPECT_EQ(frame.page->IsPageDirty(), S_FALSE);
}

TEST_F(PropertyFrameTest, AFrameMayDestroyItsWindowFirst) {
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Type(PAGE_UNDO_LEVELS, L"19");
  DestroyWindow(frame.window);
  frame.window = nullptr;
  EXPECT_EQ(frame.page->Show(SW_SHOW), E_UNEXPECTED);
  EXPECT_EQ(frame.page->Apply(), S_OK);
  EXPECT_EQ(frame.page->Deactivate(), E_UNEXPECTED);
}

TEST_F(PropertyFrameTest, AFrameMayLetGoOfAnActivePage) {
  PageFrame frame;
  frame.Open({control.Get()});
  const HWND page = frame.PageWindow();
  frame.page->SetPageSite(nullptr);
  frame.page.Reset();
  EXPECT_FALSE(IsWindow(page));
}

TEST_F(PropertyFrameTest, AFrameMayLetGoInTheMiddleOfACall) {
  PageFrame frame;
  frame.Open({control.Get()});
  const HWND page = frame.PageWindow();
  frame.onStatusChange = [&] {
    if (frame.page == nullptr) return;
    frame.page->Deactivate();
    EXPECT_FALSE(IsWindow(page));
    frame.page->SetPageSite(nullptr);
    frame.page.Reset();
  };
  frame.Click(PAGE_OPEN_BUTTON);
  EXPECT_FALSE(IsWindow(page));
  PumpMessages(20);
}

TEST_F(PropertyFrameTest, AFrameMayCloseWhileAFileIsLookedFor) {
  PageFrame frame;
  frame.Open({control.Get()});
  const Soon close([&] {
    EXPECT_EQ(frame.page->Deactivate(), S_OK);
    frame.page->SetPageSite(nullptr);
    frame.page.Reset();
  });
  const Bystander user(DialogClass, L"", [&](HWND dialog) {
    EXPECT_TRUE(Bystander::WaitFor([&] { return frame.PageWindow() == nullptr; }));
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  frame.Click(PAGE_FOLDER_BROWSE);
  PumpMessages(20);
}

TEST_F(PropertyFrameTest, AFrameMayCloseWhileAComplaintIsUp) {
  PageFrame frame;
  frame.Open({control.Get()});
  frame.Type(PAGE_UNDO_LEVELS, L"");
  const Soon close([&] {
    EXPECT_EQ(frame.page->Deactivate(), S_OK);
    frame.page->SetPageSite(nullptr);
    frame.page->SetObjects(0, nullptr);
  });
  const Bystander user(DialogClass, L"Frame", [&](HWND box) {
    EXPECT_TRUE(Bystander::WaitFor([&] { return frame.PageWindow() == nullptr; }));
    PostMessageW(box, WM_COMMAND, IDOK, 0);
  });
  EXPECT_EQ(frame.page->Apply(), E_INVALIDARG);
}

TEST_F(PropertyFrameTest, ABuildersPropertyGetsTheKeyboard) {
  PageFrame frame;
  IUnknown* object = control.Get();
  EXPECT_EQ(frame.page->SetObjects(1, &object), S_OK);
  EXPECT_EQ(frame.page->EditProperty(99), E_INVALIDARG);
  EXPECT_EQ(frame.page->EditProperty(EditorSignatureFilePathId), S_OK);
  EXPECT_EQ(frame.page->Activate(frame.window, &place, FALSE), S_OK);
  EXPECT_EQ(frame.page->Show(SW_SHOW), S_OK);
  EXPECT_EQ(GetFocus(), frame.Item(PAGE_SIGNATURE));
  EXPECT_EQ(frame.page->EditProperty(EditorAppDirId), S_OK);
  EXPECT_EQ(GetFocus(), frame.Item(PAGE_FOLDER));
  EXPECT_EQ(frame.page->Deactivate(), S_OK);
}

TEST_F(PropertyFrameTest, TabGoesThroughThePageAndThenToTheFrame) {
  PageFrame frame;
  frame.Open({control.Get()});
  SetFocus(frame.Item(PAGE_ENABLED));
  const std::vector<int> order = {PAGE_ENABLED,           PAGE_EDITABLE,    PAGE_COLOURS,         PAGE_MULTIPAGE,
                                  PAGE_TOOLBOX,           PAGE_OPEN_BUTTON, PAGE_SAVE_BUTTON,     PAGE_LIGHTENED,
                                  PAGE_UNDO_LEVELS,       PAGE_FOLDER,      PAGE_FOLDER_BROWSE,   PAGE_BACKGROUND,
                                  PAGE_BACKGROUND_BROWSE, PAGE_SIGNATURE,   PAGE_SIGNATURE_BROWSE};
  for (const int control : order) {
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), control);
    EXPECT_EQ(frame.offeredKeys, 0);
    if (control == order.back()) break;
    EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_TAB), S_OK);
  }
  frame.takesKeys = S_OK;
  EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_TAB), S_OK);
  EXPECT_EQ(frame.offeredKeys, 1);
  EXPECT_EQ(GetFocus(), frame.Item(PAGE_SIGNATURE_BROWSE)) << "the frame sees to it";
  frame.takesKeys = E_NOTIMPL;
  EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_TAB), S_OK);
  EXPECT_EQ(frame.offeredKeys, 2);
  EXPECT_EQ(GetFocus(), frame.Item(PAGE_ENABLED)) << "a frame without keys lets them go around";
  frame.Close();
}

TEST_F(PropertyFrameTest, EnterAndEscapeAreTheFramesButEnterPressesAButton) {
  PageFrame frame;
  frame.Open({control.Get()});
  SetFocus(frame.Item(PAGE_UNDO_LEVELS));
  EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_RETURN), S_FALSE);
  EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_ESCAPE), S_FALSE);
  EXPECT_EQ(Press(frame, WM_MOUSEMOVE, 0), S_FALSE);
  SetFocus(frame.Item(PAGE_FOLDER_BROWSE));
  EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_ESCAPE), S_FALSE);
  {
    const Bystander user(DialogClass, L"", [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
    EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_RETURN), S_OK);
    EXPECT_TRUE(user.HasActed());
  }
  frame.Close();
}

TEST_F(PropertyFrameTest, MnemonicsWorkFromTheFrameToo) {
  PageFrame frame;
  frame.Open({control.Get()});
  const HWND button = CreateWindowExW(0, L"Button", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 500, 400, 60, 20,
                                      frame.window, nullptr, nullptr, nullptr);
  SetFocus(button);
  EXPECT_EQ(Press(frame, WM_SYSCHAR, L'l'), S_OK);
  EXPECT_EQ(GetFocus(), frame.Item(PAGE_UNDO_LEVELS));
  EXPECT_EQ(Press(frame, WM_SYSCHAR, L'f'), S_OK);
  EXPECT_EQ(GetFocus(), frame.Item(PAGE_FOLDER));
  EXPECT_EQ(frame.TickOf(PAGE_OPEN_BUTTON), UINT{BST_UNCHECKED});
  EXPECT_EQ(Press(frame, WM_SYSCHAR, L'o'), S_OK);
  EXPECT_EQ(frame.TickOf(PAGE_OPEN_BUTTON), UINT{BST_CHECKED});
  SetFocus(button);
  EXPECT_EQ(Press(frame, WM_KEYDOWN, VK_TAB), S_FALSE) << "the frame's own";
  frame.Close();
}

struct Part {
  HWND window;
  int id;
  std::wstring className;
  std::wstring text;
  RECT place;
};

BOOL CALLBACK CollectPart(HWND window, LPARAM list) {
  Part part = {window, GetDlgCtrlID(window), L"", L"", {}};
  wchar_t text[200] = {};
  GetClassNameW(window, text, 200);
  part.className = text;
  GetWindowTextW(window, text, 200);
  part.text = text;
  GetWindowRect(window, &part.place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&part.place), 2);
  reinterpret_cast<std::vector<Part>*>(list)->push_back(part);
  return TRUE;
}

TEST_F(PropertyFrameTest, EverythingHasRoomAndAMnemonicOfItsOwn) {
  PageFrame frame;
  frame.Open({control.Get()});
  std::vector<Part> parts;
  EnumChildWindows(frame.PageWindow(), &CollectPart, reinterpret_cast<LPARAM>(&parts));
  ASSERT_GT(parts.size(), 20U);
  RECT client = {};
  GetClientRect(frame.PageWindow(), &client);
  const HDC device = GetDC(frame.window);
  SelectObject(device, reinterpret_cast<HFONT>(SendMessageW(frame.Item(PAGE_ENABLED), WM_GETFONT, 0, 0)));
  std::wstring mnemonics = L"AH";
  for (const Part& part : parts) {
    const std::string name(part.text.begin(), part.text.end());
    RECT both = {};
    UnionRect(&both, &client, &part.place);
    EXPECT_TRUE(EqualRect(&both, &client)) << name << " lies outside";
    for (const Part& other : parts) {
      const bool isGroup = part.id == -1 && part.className == L"Button";
      const bool isSpin = part.id == PAGE_UNDO_SPIN || other.id == PAGE_UNDO_SPIN;
      if (&other >= &part || isGroup || (other.id == -1 && other.className == L"Button") || isSpin) continue;
      RECT common = {};
      EXPECT_FALSE(IntersectRect(&common, &part.place, &other.place)) << name << " lies on " << other.id;
    }
    if (part.className == L"Edit") continue;
    RECT needed = {};
    DrawTextW(device, part.text.c_str(), -1, &needed, DT_CALCRECT | DT_SINGLELINE);
    const int mark =
        part.className == L"Button" && (GetWindowLongW(part.window, GWL_STYLE) & BS_TYPEMASK) == BS_3STATE ? 17 : 0;
    EXPECT_LE(needed.right + mark, part.place.right - part.place.left) << name << " is cut off";
    EXPECT_LE(needed.bottom, part.place.bottom - part.place.top + 1) << name << " is cut off";
    const auto at = part.text.find(L'&');
    if (at == std::wstring::npos) continue;
    const auto letter = static_cast<wchar_t>(towupper(static_cast<wint_t>(part.text[at + 1])));
    EXPECT_EQ(mnemonics.find(letter), std::wstring::npos) << name << " shares its mnemonic";
    mnemonics += letter;
  }
  ReleaseDC(frame.window, device);
  frame.Close();
}

}  // namespace
}  // namespace kw::test
