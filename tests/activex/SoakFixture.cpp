#include "tests/activex/SoakFixture.h"

#include <commctrl.h>
#include <ole2.h>
#include <psapi.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "tests/activex/EditorWindows.h"
#include "tests/support/win32/SystemObjects.h"

namespace kw::test {
namespace {

// A heap that is checked keeps what is freed for a while, so its size tells nothing.
long long CountResident() {
  if (std::getenv("KW_CHECK_HEAP") != nullptr) return 0;
  PROCESS_MEMORY_COUNTERS counters = {};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return static_cast<long long>(counters.WorkingSetSize);
}

}  // namespace

Holdings Holdings::Count() {
  return {.gdi = SystemObjects::CountGdi(),
          .user = SystemObjects::CountUser(),
          .handles = SystemObjects::CountHandles(),
          .threads = SystemObjects::CountThreads(),
          .ownBytes = OwnMemory::Bytes(),
          .ownBlocks = OwnMemory::Blocks(),
          .resident = CountResident()};
}

Holdings Holdings::operator-(const Holdings& before) const {
  return {.gdi = gdi - before.gdi,
          .user = user - before.user,
          .handles = handles - before.handles,
          .threads = threads - before.threads,
          .ownBytes = ownBytes - before.ownBytes,
          .ownBlocks = ownBlocks - before.ownBlocks,
          .resident = resident - before.resident};
}

bool Holdings::IsNoMemory() const { return ownBytes == 0 && ownBlocks == 0 && resident <= MostResident; }

bool Holdings::IsNone() const { return gdi == 0 && user == 0 && handles == 0 && threads == 0 && IsNoMemory(); }

std::ostream& operator<<(std::ostream& out, const Holdings& held) {
  return out << held.gdi << " GDI objects, " << held.user << " user objects, " << held.handles << " handles, "
             << held.threads << " threads, " << held.ownBlocks << " own blocks of " << held.ownBytes << " bytes, "
             << held.resident / 1024 << " KiB resident";
}

void SoakTest::SetUp() {
  ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
  InputTest::SetUp();
  page = scratch.File(L"page.bmp");
  document = scratch.WriteTiff(L"pages.tif", 3);
  signature = scratch.WriteBitmap(L"signature.bmp", 60, 30, &ColourOfPage);
  control->put_SignatureFilePath(Text(signature));
  // The history of the trace is as long as it gets.
  for (int i = 0; i < 400; ++i) control->put_MaxUndoLevels(9);
}

void SoakTest::TearDown() {
  InputTest::TearDown();
  OleUninitialize();
}

int SoakTest::TenthOf(int whole) {
  const char* const text = std::getenv("KW_SOAK_PERCENT");
  const int percent = text == nullptr ? 1 : std::atoi(text);
  return std::max(1, whole * percent / 100 / Tenths);
}

// The default tools, which a document's opening orders, have been chosen.
void SoakTest::Settle() const {
  constexpr DWORD LongerThanTheDefaultToolsWait = 1200;
  PumpMessages(LongerThanTheDefaultToolsWait);
  ForgetTrace();
}

Holdings SoakTest::Told(const char* what, int steps, const Holdings& growth) {
  std::cout << "  " << steps << " steps of " << what << " keep " << growth << std::endl;
  return growth;
}

void SoakTest::ExpectNoMemory(const Holdings& growth) {
  EXPECT_EQ(growth.ownBytes, 0);
  EXPECT_EQ(growth.ownBlocks, 0);
  EXPECT_LE(growth.resident, Holdings::MostResident);
}

void SoakTest::Drag(POINT start, POINT end) const {
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(start.x, start.y));
  constexpr int Moves = 3;
  for (int move = 1; move <= Moves; ++move) {
    const LPARAM at =
        MAKELPARAM(start.x + (end.x - start.x) * move / Moves, start.y + (end.y - start.y) * move / Moves);
    SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, at);
  }
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(end.x, end.y));
}

void SoakTest::Press(const std::wstring& toolTip) const {
  const ToolBarButton button = ButtonOf(toolTip);
  ASSERT_TRUE(button.IsFound());
  POINT at = button.Middle();
  ScreenToClient(button.bar, &at);
  PostMessageW(button.bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
  PostMessageW(button.bar, WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
  PumpMessages();
}

void SoakTest::TurnPage(int by) const {
  const std::vector<HWND> spinners = ChildWindows(editor, UPDOWN_CLASSW);
  ASSERT_FALSE(spinners.empty());
  NMUPDOWN step = {};
  step.hdr = {.hwndFrom = spinners.front(),
              .idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(spinners.front())),
              .code = static_cast<UINT>(UDN_DELTAPOS)};
  step.iPos = 1;
  step.iDelta = by;
  SendMessageW(GetParent(spinners.front()), WM_NOTIFY, step.hdr.idFrom, reinterpret_cast<LPARAM>(&step));
}

}  // namespace kw::test
