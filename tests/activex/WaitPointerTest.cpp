// The pointer of the built control while it works for long: each call of SetCursor is noted.

#include <windows.h>

#include <algorithm>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {
namespace {

struct PointerSet {
  bool waits;
  ULONGLONG at;
};
std::vector<PointerSet> pointersSet;

HCURSOR WINAPI NotePointer(HCURSOR pointer) {
  pointersSet.push_back({pointer == LoadCursorW(nullptr, IDC_WAIT), GetTickCount64()});
  return SetCursor(pointer);
}

// Without a window, so that no pointer of a model shows.
class LongWorkTest : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    pointersSet.clear();
  }
  // Opens a document, whose box is answered after a while; returns when the user had answered it.
  ULONGLONG Open(const std::wstring& path, DWORD thinking) {
    const ImportPatch patch(Ocx::Library(), "SetCursor", &NotePointer);
    ULONGLONG answered = 0;
    const BoxAnswerer user({AnyBox()}, [&](HWND /*box*/) {
      Sleep(thinking);
      answered = GetTickCount64();
    });
    EXPECT_EQ(control->OpenFile(Text(path)), S_OK);
    return answered;
  }
};

TEST_F(LongWorkTest, AShortCallShowsNoWaitPointer) {
  const std::wstring path = scratch.WriteTiff(L"short.tif", 1);
  const ULONGLONG begin = GetTickCount64();
  const ULONGLONG answered = Open(path, 300);
  const bool isShort = GetTickCount64() - answered < 100 && answered - begin < 400;
  if (!isShort) GTEST_SKIP() << "the machine is too busy for a short call";
  EXPECT_TRUE(pointersSet.empty()) << "the user's time is not work";
}

TEST_F(LongWorkTest, ALongCallShowsItAfterTheDelayAndTakesItBack) {
  const std::wstring path = scratch.WriteTiff(L"long.tif", 1000);
  const ULONGLONG begin = GetTickCount64();
  const ULONGLONG answered = Open(path, 0);
  const ULONGLONG end = GetTickCount64();
  if (end - begin < 300) GTEST_SKIP() << "the machine is too fast for this document";
  ASSERT_FALSE(pointersSet.empty());
  EXPECT_TRUE(pointersSet.front().waits);
  EXPECT_GE(pointersSet.front().at - begin, 100U);
  EXPECT_FALSE(pointersSet.back().waits);
  EXPECT_NE(answered, 0U);
}

}  // namespace
}  // namespace kw::test
