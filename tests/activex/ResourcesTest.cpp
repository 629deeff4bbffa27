// The control gives back all that it takes of the system: pages, layers of every kind, menus and whole lives of the
// control leave nothing behind.

#include <windows.h>

#include <commdlg.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <iostream>
#include <semaphore>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/SystemObjects.h"

namespace kw::test {
namespace {

constexpr int Rounds = 10;
constexpr int MostSeries = 4;
constexpr long long HeapNoise = 100;

struct Holdings {
  int gdi = SystemObjects::CountGdi();
  int user = SystemObjects::CountUser();
  int handles = SystemObjects::CountHandles();
  int threads = SystemObjects::CountThreads();
  long long heap = static_cast<long long>(SystemObjects::CountHeap());
};

constexpr Holdings Nothing = {.gdi = 0, .user = 0, .handles = 0, .threads = 0, .heap = 0};

// Ends the menus and the stamp dialogs that come up on the thread while it lives, and has the system's dialog for a
// file open the one that is named.
class ModalEnder {
public:
  explicit ModalEnder(std::wstring toOpen) : timer(SetTimer(nullptr, 0, 15, &End)) { file = std::move(toOpen); }
  ModalEnder(const ModalEnder&) = delete;
  ModalEnder& operator=(const ModalEnder&) = delete;
  ~ModalEnder() { KillTimer(nullptr, timer); }

private:
  static inline std::wstring file;

  static void CALLBACK End(HWND /*window*/, UINT /*message*/, UINT_PTR /*id*/, DWORD /*time*/) {
    EndMenu();
    EnumThreadWindows(GetCurrentThreadId(), &EndDialogOf, 0);
  }
  static BOOL CALLBACK EndDialogOf(HWND window, LPARAM /*data*/) {
    wchar_t name[32] = {};
    GetClassNameW(window, static_cast<wchar_t*>(name), 32);
    const std::wstring className = static_cast<const wchar_t*>(name);
    if (IsWindowVisible(window) == FALSE) return TRUE;
    if (className == L"KwEditorView") PostMessageW(window, WM_KEYDOWN, VK_RETURN, 1);
    const HWND field = className == DialogClass ? Bystander::FieldOf(window) : nullptr;
    if (field == nullptr) return TRUE;  // a message box has none
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()));
    PostMessageW(window, WM_COMMAND, IDOK, 0);
    return TRUE;
  }

  UINT_PTR timer;
};

class Resources : public InputTest {
protected:
  void Drag(POINT start, POINT end) const {
    PostMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, Packed(start));
    for (int step = 1; step <= 8; ++step) {
      const POINT at = {start.x + (end.x - start.x) * step / 8, start.y + (end.y - start.y) * step / 8};
      PostMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, Packed(at));
    }
    PostMessageW(canvas, WM_LBUTTONUP, 0, Packed(end));
    PumpMessages(30);
  }
  void Press(const std::wstring& toolTip) const {
    const ToolBarButton button = ButtonOf(toolTip);
    ASSERT_TRUE(button.IsFound());
    POINT at = button.Middle();
    ScreenToClient(button.bar, &at);
    PostMessageW(button.bar, WM_LBUTTONDOWN, MK_LBUTTON, Packed(at));
    PostMessageW(button.bar, WM_LBUTTONUP, 0, Packed(at));
    PumpMessages();
  }
  void Type(const wchar_t* text) const {
    const HWND field = FindWindowExW(canvas, nullptr, L"Edit", nullptr);
    ASSERT_NE(field, nullptr);
    for (const wchar_t* at = text; *at != 0; ++at) PostMessageW(field, WM_CHAR, *at, 1);
    PumpMessages();
  }

  // A layer of each kind but images on the page, one of them picked, moved and with its menu open for a moment.
  void DrawEverything() const {
    LONG x = 5;
    for (const wchar_t* const tool :
         {L"Line", L"Rectangle", L"Circle", L"Pen", L"Rubber", L"Signature", L"Selection"}) {
      Press(tool);
      Drag({x, 5}, {x + 30, 45});
      x += 40;
    }
    Press(L"Text");
    Drag({5, 100}, {120, 140});
    Type(L"a text");
    Press(L"Color Picker");
    Drag({RedPatch.left + 5, RedPatch.top + 5}, {RedPatch.left + 6, RedPatch.top + 6});
    Press(L"Fill Color");
    Drag({BluePatch.left + 5, BluePatch.top + 5}, {BluePatch.left + 6, BluePatch.top + 6});
    Press(L"Stamp");
    Drag({5, 200}, {6, 201});
    Press(L"Selection");
    Drag({50, 20}, {70, 60});
    PostMessageW(canvas, WM_RBUTTONDOWN, MK_RBUTTON, Packed({70, 60}));
    PostMessageW(canvas, WM_RBUTTONUP, 0, Packed({70, 60}));
    PumpMessages(40);
    for (const WPARAM character : {6, 2, 27}) PostMessageW(canvas, WM_CHAR, character, 1);
    PumpMessages();
  }
  void OpenPages() const {
    control->OpenFile(Text(document));
    PumpMessages();
    Press(L"Next Page");
    Press(L"Zoom In");
    control->OpenFile(Text(page));
    PumpMessages();
  }

  // The objects that so many rounds take and do not give back, after some rounds that fill caches. A leak shows in
  // every series of rounds, what is filled once in some of them: a series that keeps more than the system does is
  // followed by another, and the least of each figure counts.
  template <class Round>
  Holdings GrowthOf(const char* what, const Holdings& ofTheSystem, Round&& round) {
    const auto run = [&](int count) {
      for (int i = 0; i < count; ++i) {
        const BoxAnswerer user;
        round();
        container.calls.clear();
      }
      PumpMessages(200);
    };
    const ModalEnder ender(page);
    run(3);
    Holdings least = {.gdi = INT_MAX, .user = INT_MAX, .handles = INT_MAX, .threads = INT_MAX, .heap = LLONG_MAX};
    for (int series = 0; series < MostSeries && !IsNone(least, ofTheSystem); ++series) {
      const Holdings before;
      run(Rounds);
      const Holdings after;
      least.gdi = std::min(least.gdi, after.gdi - before.gdi);
      least.user = std::min(least.user, after.user - before.user);
      least.handles = std::min(least.handles, after.handles - before.handles);
      least.threads = std::min(least.threads, after.threads - before.threads);
      least.heap = std::min(least.heap, after.heap - before.heap);
      std::cout << "  " << Rounds << " rounds of " << what << " keep " << after.gdi - before.gdi << " GDI objects, "
                << after.user - before.user << " user objects, " << after.handles - before.handles << " handles, "
                << after.threads - before.threads << " threads and " << after.heap - before.heap << " bytes"
                << std::endl;
    }
    return least;
  }
  static bool IsNone(const Holdings& growth, const Holdings& ofTheSystem) {
    return growth.gdi <= ofTheSystem.gdi && growth.user <= ofTheSystem.user && growth.handles <= ofTheSystem.handles &&
           growth.threads <= ofTheSystem.threads && growth.heap < ofTheSystem.heap + HeapNoise;
  }
  template <class Round>
  void ExpectNone(const char* what, Round&& round, const Holdings& ofTheSystem = Nothing) {
    const Holdings growth = GrowthOf(what, ofTheSystem, round);
    EXPECT_LE(growth.gdi, ofTheSystem.gdi);
    EXPECT_LE(growth.user, ofTheSystem.user);
    EXPECT_LE(growth.handles, ofTheSystem.handles);
    EXPECT_LE(growth.threads, ofTheSystem.threads);
    EXPECT_LT(growth.heap, ofTheSystem.heap + HeapNoise);
  }
  void DrawImage() const {
    Press(L"Image");
    Drag({200, 200}, {240, 240});
    control->OpenFile(Text(page));
  }

  void SetUp() override {
    InputTest::SetUp();
    page = scratch.File(L"page.bmp");
    document = scratch.WriteTiff(L"pages.tif", 3);
    signature = scratch.WriteBitmap(L"signature.bmp", 60, 30, &ColourOfPage);
    control->put_SignatureFilePath(Text(signature));
  }

  std::wstring page;
  std::wstring document;
  std::wstring signature;
};

TEST_F(Resources, AreCountedHere) {
  // The system keeps what the first thread of a program takes.
  std::thread([] {}).join();
  std::binary_semaphore isOver(0);
  EXPECT_FALSE(isOver.try_acquire_for(std::chrono::milliseconds(1)));
  const Holdings before;
  HPEN pens[7] = {};
  for (HPEN& pen : pens) pen = CreatePen(PS_SOLID, 3, RGB(1, 2, 3));
  HMENU menus[9] = {};
  for (HMENU& menu : menus) menu = CreateMenu();
  HANDLE events[5] = {};
  for (HANDLE& event : events) event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  std::thread thread([&] { isOver.acquire(); });
  const std::vector<char> memory(1000000);
  const Holdings after;
  EXPECT_EQ(after.gdi - before.gdi, 7);
  EXPECT_EQ(after.user - before.user, 9);
  EXPECT_GE(after.handles - before.handles, 5 + 1);
  EXPECT_EQ(after.threads - before.threads, 1);
  // The thread takes something, too.
  EXPECT_NEAR(static_cast<double>(after.heap - before.heap), 1e6, 1e4);
  isOver.release();
  thread.join();
  for (const HANDLE event : events) CloseHandle(event);
  for (const HPEN pen : pens) DeleteObject(pen);
  for (const HMENU menu : menus) DestroyMenu(menu);
  const Holdings given;
  EXPECT_EQ(given.gdi, before.gdi);
  EXPECT_EQ(given.user, before.user);
  EXPECT_EQ(given.handles, before.handles);
  EXPECT_EQ(given.threads, before.threads);
}

TEST_F(Resources, LayersPagesAndMenusGiveThemBack) {
  ExpectNone("layers, pages and menus", [&] {
    DrawEverything();
    OpenPages();
  });
}

// The system's dialog itself may keep something.
TEST_F(Resources, AnImageFromItsDialogTakesNoMoreThanTheDialog) {
  const Holdings dialogs = GrowthOf("the system's dialog", Nothing, [&] {
    wchar_t name[MAX_PATH] = {};
    OPENFILENAMEW fields = {};
    fields.lStructSize = sizeof fields;
    fields.hwndOwner = container.Window();
    fields.lpstrFile = static_cast<wchar_t*>(name);
    fields.nMaxFile = MAX_PATH;
    fields.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR;
    EXPECT_NE(GetOpenFileNameW(&fields), FALSE);
  });
  ExpectNone(
      "images", [&] { DrawImage(); }, dialogs);
}

TEST_F(Resources, LivesOfTheControlGiveThemBack) {
  ExpectNone("lives", [&] {
    container.LetGo();
    control.Reset();
    PumpMessages(20);
    control = Ocx::Create();
    container.Take(control.Get());
    ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
    control->put_IsToolboxVisible(VARIANT_TRUE);
    control->put_IsToAllowChooseColor(VARIANT_TRUE);
    control->put_SignatureFilePath(Text(signature));
    editor = container.ControlWindow();
    control->OpenFile(Text(page));
    canvas = CanvasOf(editor);
    ASSERT_NE(canvas, nullptr);
    DrawEverything();
  });
}

}  // namespace
}  // namespace kw::test
