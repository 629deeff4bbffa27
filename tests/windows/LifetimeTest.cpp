// Windows, views and models may go at any moment.

#include <gtest/gtest.h>

#include "tests/support/win32/SystemObjects.h"
#include "tests/windows/TestForm.h"

namespace kw::test {
namespace {

void ClickFirstButton(const TestForm& form) { ClickAt(WindowOf(form.bar), 8, 8); }

TEST(Lifetime, TheWindowMayBeClosedInsideAnEvent) {
  TestForm form;
  int clicks = 0;
  form.bar.ButtonClick.Connect([&](const std::string&) {
    ++clicks;
    form.window->Close();
  });
  const HWND closed = form.window->Handle();
  ClickFirstButton(form);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(IsWindow(closed));
  EXPECT_EQ(form.window->Handle(), nullptr);
  EXPECT_EQ(form.bar.AttachedView(), nullptr);
  form.bar.SetButtonEnabled("Undo", true);  // the models live on
}

TEST(Lifetime, TheEditorWindowMayBeDestroyedInsideAnyEvent) {
  const auto destroy = [](TestForm& form) { return [&form] { form.window.reset(); }; };
  {
    TestForm form;
    form.canvas.MouseDown.Connect([&](auto...) { destroy(form)(); });
    form.page.SetVisible(false);
    ClickAt(WindowOf(form.canvas), 30, 30);
    EXPECT_EQ(form.window, nullptr);
  }
  {
    TestForm form;
    form.page.MouseUp.Connect([&](auto...) { destroy(form)(); });
    ClickAt(WindowOf(form.canvas), 30, 30);
    EXPECT_EQ(form.window, nullptr);
  }
  {
    TestForm form;
    form.root.Paint.Connect(destroy(form));
    Paint(form.window->Handle());
    EXPECT_EQ(form.window, nullptr);
  }
  {
    TestForm form;
    form.tick.Click.Connect(destroy(form));
    ClickAt(WindowOf(form.tick), 6, 8);
    EXPECT_EQ(form.window, nullptr);
  }
  {
    TestForm form;
    form.slider.Change.Connect(destroy(form));
    SendMessageW(WindowOf(form.slider), WM_KEYDOWN, VK_RIGHT, 0);
    EXPECT_EQ(form.window, nullptr);
  }
  {
    TestForm form;
    form.canvas.GotFocus.Connect(destroy(form));
    SetFocus(WindowOf(form.canvas));
    EXPECT_EQ(form.window, nullptr);
  }
  {
    TestForm form;
    form.canvas.KeyDown.Connect([&](auto...) { destroy(form)(); });
    form.canvas.KeyUse.Connect([](auto, auto, bool& isInUse) { isInUse = true; });
    const HWND canvas = WindowOf(form.canvas);
    SetFocus(canvas);
    MSG key = {canvas, WM_KEYDOWN, VK_DELETE, 0, 0, {}};
    EXPECT_TRUE(form.window->TranslateAccelerator(key));
    EXPECT_EQ(form.window, nullptr);
  }
}

TEST(Lifetime, AnErrorInAHandlerDoesNotCrossTheSystem) {
  TestForm form;
  form.bar.ButtonClick.Connect([](const std::string&) { Raise(ErrorNumber::Overflow); });
  ClickFirstButton(form);
  EXPECT_TRUE(IsWindow(form.window->Handle()));
}

TEST(Lifetime, ALayerMayUnloadItselfWhileItHoldsTheMouse) {
  TestForm form;
  TransparentPicture& layer = form.layers.Load(1);
  layer.Move(50, 60, 20, 20);
  layer.SetVisible(true);
  layer.MouseDown.Connect([&](auto...) { form.layers.Unload(1); });
  const HWND canvas = WindowOf(form.canvas);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(55, 65));
  EXPECT_FALSE(form.layers.IsLoaded(1));
  SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(56, 66));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(56, 66));
}

TEST(Lifetime, AControlMayUnloadItselfInItsOwnEvent) {
  TestForm form;
  RaisedArea& loaded = form.panels.Load(1);
  loaded.SetVisible(true);
  loaded.MouseDown.Connect([&](auto...) { form.panels.Unload(1); });
  const HWND window = WindowOf(loaded);
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
  EXPECT_FALSE(form.panels.IsLoaded(1));
  EXPECT_FALSE(IsWindow(window));
}

TEST(Lifetime, AHostMayDestroyItsWindowWithTheEditorInIt) {
  TestForm form;
  const HWND editor = form.window->Handle();
  DestroyWindow(form.host);
  EXPECT_FALSE(IsWindow(editor));
  EXPECT_EQ(form.window->Handle(), nullptr);
  EXPECT_EQ(form.slider.AttachedView(), nullptr);
  form.window->Resize({0, 0, 10, 10});
  form.window->Show(true);
  form.window->Close();
}

TEST(Lifetime, TheModelsMayGetAnotherWindowAfterwards) {
  TestForm form;
  form.window->Close();
  form.slider.SetValue(9);
  form.window = std::make_unique<windows::EditorWindow>(form.root, form.host, RECT{0, 0, 600, 400});
  EXPECT_NE(WindowOf(form.slider), nullptr);
  EXPECT_TRUE(IsWindow(WindowOf(form.panel)));
}

TEST(Lifetime, TwentyOpeningsLeaveNoGdiOrUserObjectsBehind) {
  TestForm form;
  const auto reopen = [&] {
    form.window->Close();
    form.window = std::make_unique<windows::EditorWindow>(form.root, form.host, RECT{0, 0, 600, 400});
    form.window->Show(true);
    Paint(form.window->Handle());
  };
  for (int i = 0; i < 3; ++i) reopen();
  const int gdi = SystemObjects::CountGdi();
  const int user = SystemObjects::CountUser();
  for (int i = 0; i < 20; ++i) reopen();
  EXPECT_LE(SystemObjects::CountGdi(), gdi + 10);
  EXPECT_LE(SystemObjects::CountUser(), user + 10);
}

}  // namespace
}  // namespace kw::test
