// A hand that does anything to the windows of the real control in a real container: presses, drags, keys, buttons and
// resizes at random, with every box, dialog and menu that comes up closed again. KW_MONKEY_EVENTS and KW_MONKEY_SEED
// ask for a longer run or another one; what each event is follows from the seed and its number alone.

#include <windows.h>

#include <cstdlib>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

int NumberFrom(const char* variable, int otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::atoi(text);
}

COLORREF ColourOfStripes(int /*x*/, int y) { return y % 20 < 10 ? RGB(240, 240, 240) : RGB(176, 176, 176); }

HWND editorWindow = nullptr;
std::mt19937 hand;

int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(hand); }

// Closes what is modal on this thread: a menu, or one of its dialogs, by its OK or otherwise.
void CALLBACK CloseWhatIsModal(HWND /*window*/, UINT /*message*/, UINT_PTR /*id*/, DWORD /*time*/) {
  EndMenu();
  // A pressed scroll bar or slider waits for its release in a loop of its own.
  if (HWND const captured = GetCapture()) PostMessageW(captured, WM_LBUTTONUP, 0, 0);
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM) WINAPI -> BOOL {
        const bool isDialog = IsWindowVisible(window) != FALSE && GetWindow(window, GW_OWNER) != nullptr &&
                              (GetWindowLongW(window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
        if (isDialog) {
          static int closed = 0;
          AnswerBox(window, ++closed % 3 == 0);
          PostMessageW(window, WM_COMMAND, IDNO, 0);
          PostMessageW(window, WM_CLOSE, 0, 0);
        }
        return TRUE;
      },
      0);
}

class OcxMonkey : public ControlTest {
protected:
  static void DoAnything() {
    const std::vector<HWND> windows = VisibleWindows(editorWindow);
    if (windows.empty()) return;
    const HWND canvas = CanvasOf(editorWindow);
    HWND target = windows[static_cast<std::size_t>(Below(static_cast<int>(windows.size())))];
    if (canvas != nullptr && Below(4) != 0) target = canvas;
    if (IsWindowEnabled(target) == FALSE) return;
    RECT client = {};
    GetClientRect(target, &client);
    const LPARAM at = MAKELPARAM(Below(client.right + 6) - 3, Below(client.bottom + 6) - 3);
    switch (Below(13)) {
      case 0:
      case 1:
        PostMessageW(target, WM_LBUTTONDOWN, MK_LBUTTON, at);
        break;
      case 12:
        PostMessageW(target, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
        break;
      case 2:
        PostMessageW(target, WM_RBUTTONDOWN, MK_RBUTTON, at);
        PostMessageW(target, WM_RBUTTONUP, 0, at);
        break;
      case 3:
      case 4:
        PostMessageW(target, WM_LBUTTONUP, 0, at);
        break;
      case 5: {
        const WPARAM characters[] = {27, 2, 6, 13, 'a', 'B', ' ', 3, 22, 26};
        PostMessageW(target, WM_CHAR, characters[Below(static_cast<int>(std::size(characters)))], 1);
        break;
      }
      case 6: {
        const WPARAM keys[] = {VK_DELETE, VK_ESCAPE, VK_LEFT, VK_DOWN, VK_TAB, VK_RETURN, VK_PRIOR};
        const WPARAM key = keys[Below(static_cast<int>(std::size(keys)))];
        PostMessageW(target, WM_KEYDOWN, key, 1);
        PostMessageW(target, WM_KEYUP, key, 1);
        break;
      }
      case 7:
        if (Below(10) == 0) SetFocus(target);
        break;
      default:
        PostMessageW(target, WM_MOUSEMOVE, Below(2) == 0 ? MK_LBUTTON : 0, at);
        break;
    }
  }
};

TEST_F(OcxMonkey, NothingItDoesBreaksTheControl) {
  const int events = NumberFrom("KW_MONKEY_EVENTS", 800);
  const int seed = NumberFrom("KW_MONKEY_SEED", 20261121);
  std::cout << "seed " << seed << ", " << events << " events" << std::endl;
  const std::wstring documents[] = {scratch.WriteBitmap(L"page.bmp", 500, 400, &ColourOfStripes),
                                    scratch.WriteTiff(L"pages.tif", 3), scratch.File(L"missing.tif")};
  StrictContainer container;
  container.place = {0, 0, 900, 640};
  container.clip = {0, 0, 1200, 900};
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
  editorWindow = container.ControlWindow();
  ASSERT_NE(editorWindow, nullptr);
  const UINT_PTR closer = SetTimer(nullptr, 0, 30, &CloseWhatIsModal);
  control->OpenFile(Text(documents[0]));
  for (int event = 1; event <= events; ++event) {
    // When a dialog is closed is up to the clock, and so how many numbers an event takes.
    std::seed_seq numbers{seed, event};
    hand.seed(numbers);
    DoAnything();
    if (event % 50 == 0) PumpMessages();
    if (event % 200 == 0) {
      control->OpenFile(Text(documents[Below(3)]));
      const auto inPlace = container.As<IOleInPlaceObject>();
      const RECT place = {0, 0, 200 + Below(900), 150 + Below(700)};
      inPlace->SetObjectRects(&place, &container.clip);
    }
    // A failed open or a reported error leaves the control switched off until its host switches it on again.
    if (event % 100 == 0) {
      control->put_Enabled(VARIANT_TRUE);
      control->put_IsEditable(VARIANT_TRUE);
    }
    ASSERT_NE(IsWindow(editorWindow), FALSE) << "at event " << event;
  }
  PumpMessages(200);
  VARIANT_BOOL isEditable = VARIANT_FALSE;
  EXPECT_HRESULT_SUCCEEDED(control->get_IsEditable(&isEditable));
  control->OpenFile(Text(documents[0]));
  PumpMessages(100);
  KillTimer(nullptr, closer);
  container.LetGo();
}

}  // namespace
}  // namespace kw::test
