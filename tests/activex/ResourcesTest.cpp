// The control gives back all that it takes of the system: pages, layers of every kind, menus and whole lives of the
// control leave nothing behind.

#include <windows.h>

#include <commdlg.h>

#include <string>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/SoakFixture.h"

namespace kw::test {
namespace {

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

class Resources : public SoakTest {
protected:
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

  void DrawImage() const {
    Press(L"Image");
    Drag({200, 200}, {240, 240});
    control->OpenFile(Text(page));
  }

  // Of DrawEverything and OpenPages.
  static std::vector<ExpectedBox> BoxesOfEverything() {
    return {Perhaps(ListOfPendingWork), Perhaps("NoTools"), Perhaps("Stamp: "), Perhaps("Zoom Error: ")};
  }
};

// Locks and threads of the language's library take a handle if two threads meet there, and keep it.
DWORD CALLBACK WaitFor(void* event) { return WaitForSingleObject(event, INFINITE); }

TEST_F(Resources, AreCountedHere) {
  const Holdings before = Holdings::Count();
  HPEN pens[7] = {};
  for (HPEN& pen : pens) pen = CreatePen(PS_SOLID, 3, RGB(1, 2, 3));
  HMENU menus[9] = {};
  for (HMENU& menu : menus) menu = CreateMenu();
  HANDLE events[5] = {};
  for (HANDLE& event : events) event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const HANDLE thread = CreateThread(nullptr, 0, WaitFor, events[0], 0, nullptr);
  ASSERT_NE(thread, nullptr);
  const Holdings after = Holdings::Count();
  EXPECT_EQ(after.gdi - before.gdi, 7);
  EXPECT_EQ(after.user - before.user, 9);
  EXPECT_EQ(after.handles - before.handles, 5 + 1);
  EXPECT_EQ(after.threads - before.threads, 1);
  SetEvent(events[0]);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  CloseHandle(thread);
  for (const HANDLE event : events) CloseHandle(event);
  for (const HPEN pen : pens) DeleteObject(pen);
  for (const HMENU menu : menus) DestroyMenu(menu);
  const Holdings given = Holdings::Count();
  EXPECT_EQ(given.gdi, before.gdi);
  EXPECT_EQ(given.user, before.user);
  EXPECT_EQ(given.handles, before.handles);
  EXPECT_EQ(given.threads, before.threads);
}

TEST_F(Resources, OfTheControlsOwnMemoryAreCountedHere) {
  const Holdings before = Holdings::Count();
  ComPtr<_KwEditorLayers> other = Ocx::Create();
  ASSERT_NE(other, nullptr);
  const Holdings after = Holdings::Count();
  EXPECT_GT(after.ownBlocks, before.ownBlocks + 10);
  EXPECT_GT(after.ownBytes, before.ownBytes + 10000);
  other.Reset();
  PumpMessages(20);
  EXPECT_LT(Holdings::Count().ownBytes, after.ownBytes);
}

TEST_F(Resources, OfAFormerPageAreGivenBackWhenTheNextOneIsPainted) {
  constexpr int Edge = 1500;
  const std::wstring large = scratch.WriteBitmap(L"large.bmp", Edge, Edge, [](int, int) { return RGB(1, 2, 3); });
  const BoxAnswerer user({Times(2, ListOfPendingWork)});
  const Holdings before = Holdings::Count();
  control->OpenFile(Text(large));
  PumpMessages(100);
  // The large page has 3 * Edge * Edge bytes, and the small one before it is gone.
  EXPECT_GT((Holdings::Count() - before).ownBytes, 2 * Edge * Edge);
  control->OpenFile(Text(document));
  PumpMessages(100);
  EXPECT_LT((Holdings::Count() - before).ownBytes, Edge * Edge);
}

TEST_F(Resources, LayersPagesAndMenusGiveThemBack) {
  const ModalEnder ender(page);
  ExpectNone("everything that is drawn", 500, BoxesOfEverything(), [&] {
    DrawEverything();
    OpenPages();
  });
}

// The system's dialog itself may keep something.
TEST_F(Resources, AnImageFromItsDialogTakesNoMoreThanTheDialog) {
  const ModalEnder ender(page);
  // The titles and texts of the dialog come one by one, and each text of the dialog has a letter to choose it by.
  const std::vector<ExpectedBox> boxes = {Perhaps("&"), Perhaps(ListOfPendingWork)};
  const Holdings dialogs = GrowthOf("the system's dialog", 500, boxes, [&] {
    wchar_t name[MAX_PATH] = {};
    OPENFILENAMEW fields = {};
    fields.lStructSize = sizeof fields;
    fields.hwndOwner = container.Window();
    fields.lpstrFile = static_cast<wchar_t*>(name);
    fields.nMaxFile = MAX_PATH;
    fields.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR;
    EXPECT_NE(GetOpenFileNameW(&fields), FALSE);
  });
  // The lists of what is painted have reached their size; one more may grow once.
  for (int i = 0; i < 3; ++i) {
    const BoxAnswerer user(boxes);
    DrawImage();
    PumpMessages(50);
  }
  const Holdings growth = LastGrowthOf(
      "an image", 500, boxes, [&] { DrawImage(); }, [](const Holdings& series) { return series.IsNoMemory(); });
  EXPECT_LE(growth.gdi, dialogs.gdi);
  EXPECT_LE(growth.user, dialogs.user);
  EXPECT_LE(growth.handles, dialogs.handles);
  EXPECT_LE(growth.threads, dialogs.threads);
  ExpectNoMemory(growth);
}

}  // namespace
}  // namespace kw::test
