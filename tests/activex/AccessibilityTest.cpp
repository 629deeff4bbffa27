// The built control to screen readers, in a container: of this process and of another one.

#include <windows.h>

#include "tests/activex/InputFixture.h"
#include "tests/support/win32/AccessibleClient.h"
#include "tests/support/win32/Process.h"

namespace kw::test {
namespace {

class Accessibility : public InputTest {
protected:
  // The part of the canvas with that name; 0 if there is none.
  LONG PartOf(const std::wstring& name) const {
    const Accessible object = AccessibleOf(canvas);
    for (const LONG part : PartsOf(object)) {
      if (NameOf(object, part) == name) return part;
    }
    return 0;
  }
  RECT PlaceOfPart(const std::wstring& name) const {
    RECT place = PlaceOf(AccessibleOf(canvas), PartOf(name));
    MapWindowPoints(nullptr, canvas, reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
};

TEST_F(Accessibility, NamesTheControlAndEachOfItsWindows) {
  EXPECT_EQ(NameOf(AccessibleOf(editor)), L"Image annotation editor, page 1 of 1");
  EXPECT_EQ(RoleOf(AccessibleOf(editor)), ROLE_SYSTEM_PANE);
  EXPECT_EQ(NamelessBelow(editor), std::vector<std::wstring>{});
  EXPECT_NE(PartOf(L"Page 1 of 1"), 0);
}

TEST_F(Accessibility, ALayerIsPickedMovedAndSizedByKeys) {
  Choose(L"Rectangle");
  DrawFrom({100, 100}, {180, 160});
  Choose(L"Selection");
  hand.ClickAt(OnCanvas(300, 250));
  ASSERT_TRUE(hand.Await([&] { return GetFocus() == canvas; }));
  const RECT drawn = PlaceOfPart(L"Rectangle layer 2");
  hand.Strike(VK_F6);
  ASSERT_TRUE(
      hand.Await([&] { return HasState(AccessibleOf(canvas), STATE_SYSTEM_SELECTED, PartOf(L"Rectangle layer 2")); }));
  // With the frame around what was drawn.
  EXPECT_TRUE(
      Is(PlaceOfPart(L"Rectangle layer 2"), {drawn.left - 1, drawn.top - 1, drawn.right + 1, drawn.bottom + 1}));
  EXPECT_TRUE(HasTraced("TransLayers_Activate"));
  EXPECT_TRUE(HasState(AccessibleOf(canvas), STATE_SYSTEM_FOCUSED, PartOf(L"Rectangle layer 2")));
  hand.Strike(VK_RIGHT);
  hand.Strike(VK_DOWN);
  hand.Strike(VK_RIGHT, VK_SHIFT);
  const RECT expected = {drawn.left, drawn.top, drawn.right + 3, drawn.bottom + 2};
  EXPECT_TRUE(hand.Await([&] { return Is(PlaceOfPart(L"Rectangle layer 2"), expected); }));
  EXPECT_NE(PartOf(L"Bottom right handle"), 0);
}

TEST_F(Accessibility, AClientKeepsTheLibraryLoadedAndItsObjectOutlivesTheControl) {
  Accessible root = AccessibleOf(editor);
  Accessible page = AccessibleOf(canvas);
  const LONG part = PartOf(L"Page 1 of 1");
  container.LetGo();
  control.Reset();
  container.DestroyWindowNow();
  PumpMessages(20);
  EXPECT_FALSE(Ocx::CanUnload());
  BSTR name = nullptr;
  EXPECT_EQ(root->get_accName(ChildId(CHILDID_SELF), &name), CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(page->get_accName(ChildId(part), &name), CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(name, nullptr);
  root.Reset();
  page.Reset();
  EXPECT_TRUE(Ocx::CanUnload());
}

TEST_F(Accessibility, AnotherProgramReadsThePageAndMayOutliveTheControl) {
  const SharedEvent held(L"AccessibleHeld");
  const SharedEvent gone(L"AccessibleGone");
  const Process reader(L"ScreenReader.exe", std::to_wstring(reinterpret_cast<std::uintptr_t>(editor)) +
                                                L" \"Page 1 of 1\" " + held.Name() + L" " + gone.Name());
  EXPECT_TRUE(PumpUntil([&] { return WaitForSingleObject(held.Handle(), 0) == WAIT_OBJECT_0; }));
  EXPECT_EQ(NameOf(AccessibleOf(editor)), L"Image annotation editor, page 1 of 1");
  container.LetGo();
  control.Reset();
  container.DestroyWindowNow();
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload()) << "a client in another process keeps nothing loaded";
  gone.Set();
  EXPECT_EQ(reader.ExitCode(), 7U);
}

}  // namespace
}  // namespace kw::test
