// Each request for memory fails once: what was begun is taken back, and nothing of it is left.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/controls/DialogForm.h"
#include "tests/windows/FailingMemory.h"
#include "tests/windows/TestForm.h"
#include "windows/dialogs/ModalWindow.h"
#include "windows/scanning/ScannedPages.h"
#include "windows/views/ControlView.h"

namespace kw::test {
namespace {

// Runs `attempt` with each request failing, the later ones not one by one, until it needs no more of them. True from
// `attempt` is success, `check` looks at what a failure left.
template <class Attempt, class Check>
void FailEachRequest(Attempt attempt, Check check) {
  int failures = 0;
  for (long which = 1;; which += 1 + which / 25) {
    ASSERT_LT(which, 10'000'000);
    bool hasFailed = true;
    bool isWhole = false;
    {
      const FailingMemory memory(which);
      try {
        attempt();
        isWhole = true;
      } catch (const std::exception&) {
        ++failures;
      }
      hasFailed = memory.HasFailed();
    }
    if (!isWhole) check();
    if (!hasFailed) break;
  }
  EXPECT_GT(failures, 0);
}

bool HasViews(const Control& model) {
  for (const Control* child : model.Children()) {
    if (HasViews(*child)) return true;
  }
  return model.AttachedView() != nullptr;
}

TEST(ShortOfMemory, AnOpeningThatFailsLeavesNoWindowAndNoView) {
  TestForm form;
  form.window.reset();
  FailEachRequest(
      [&] {
        form.window = std::make_unique<windows::EditorWindow>(form.root, form.host, RECT{0, 0, 600, 400});
        form.window.reset();
      },
      [&] {
        EXPECT_EQ(form.window, nullptr);
        EXPECT_FALSE(HasViews(form.root));
        EXPECT_EQ(GetWindow(form.host, GW_CHILD), nullptr);
        form.bar.SetButtonEnabled("Undo", true);
        form.bar.SetButtonEnabled("Undo", false);
      });
  form.window = std::make_unique<windows::EditorWindow>(form.root, form.host, RECT{0, 0, 600, 400});
  EXPECT_TRUE(HasViews(form.root));
}

TEST(ShortOfMemory, ADialogThatCannotBeShownLeavesNoWindow) {
  const HWND host = TestForm::HostWindow();
  DialogForm form("dialog");
  form.SetCaption("Short of memory");
  form.Move(0, 0, 3000, 2000);
  Label label("label");
  label.SetContainer(&form);
  FailEachRequest([&] { const windows::ModalWindow dialog(form, host); },
                  [&] {
                    EXPECT_EQ(FindWindowW(windows::OwnWindowClass::Name, L"Short of memory"), nullptr);
                    EXPECT_FALSE(HasViews(form));
                    EXPECT_NE(IsWindowEnabled(host), FALSE);
                  });
  DestroyWindow(host);
}

TEST(ShortOfMemory, ASheetThatCannotBeKeptIsTheDriversAgain) {
  const HGLOBAL memory = GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + 16);
  ASSERT_NE(memory, nullptr);
  *static_cast<BITMAPINFOHEADER*>(GlobalLock(memory)) = {sizeof(BITMAPINFOHEADER), 4, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  GlobalUnlock(memory);
  windows::ScannedPages pages;
  for (const long which : {1L, 2L}) {
    const FailingMemory failing(which);
    EXPECT_THROW(pages.Add(memory), std::bad_alloc);
    EXPECT_TRUE(failing.HasFailed());
  }
  EXPECT_TRUE(pages.IsEmpty());
  EXPECT_EQ(GlobalFlags(memory) & GMEM_LOCKCOUNT, 0U);
  EXPECT_TRUE(pages.Add(memory));
  EXPECT_EQ(GlobalFree(memory), nullptr);
}

TEST(ShortOfMemory, SheetsThatCannotBeJoinedWithAllOthersAreLeftOut) {
  struct Dib {
    BITMAPINFOHEADER head;
    std::uint8_t pixels[12];
  };
  const HGLOBAL memory = GlobalAlloc(GHND, sizeof(Dib));
  ASSERT_NE(memory, nullptr);
  windows::ScannedPages pages;
  for (std::uint8_t page = 1; page <= 3; ++page) {
    Dib dib = {{sizeof(BITMAPINFOHEADER), 4, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0}, {}};
    std::fill(std::begin(dib.pixels), std::end(dib.pixels), page);
    std::memcpy(GlobalLock(memory), &dib, sizeof dib);
    GlobalUnlock(memory);
    EXPECT_TRUE(pages.Add(memory));
  }
  EXPECT_EQ(GlobalFree(memory), nullptr);
  windows::PackedDib joined;
  {
    const FailingMemory failing(1);
    joined = pages.TakeJoined();
    EXPECT_TRUE(failing.HasFailed());
  }
  BITMAPINFOHEADER head = {};
  ASSERT_EQ(joined.size(), sizeof head + 24);
  std::memcpy(&head, joined.data(), sizeof head);
  EXPECT_EQ(head.biHeight, 2);
  EXPECT_EQ(joined[sizeof head], 2) << "the lower row";
  EXPECT_EQ(joined[sizeof head + 12], 1) << "the upper row";
  EXPECT_TRUE(pages.IsEmpty());
}

}  // namespace
}  // namespace kw::test
