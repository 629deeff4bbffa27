// No window of the control, or of a dialog of its own, is without a name.

#include <windows.h>

#include <string>
#include <vector>

#include "stamps/frmApprovedXTimes.h"
#include "tests/support/win32/AccessibleClient.h"
#include "tests/windows/WholeEditor.h"
#include "windows/dialogs/ModalWindow.h"
#include "windows/views/ControlView.h"

namespace kw::test {
namespace {

using Texts = std::vector<std::wstring>;

class AccessibleEditor : public WholeEditor {
protected:
  void OpenPage() {
    const std::string path = folder.File("page.bmp");
    SavePicture(Bitmap(300, 200, 24), path);
    control->OpenFile(path);
    TestForm::Pump();
  }
  TransparentPicture& AddLayer() {
    TransparentPicture& layer = *control->LayerRoom().NewLayer();
    layer.Move(20, 30, 60, 40);
    layer.SetVisible(true);
    return layer;
  }

  const ComOnThread com;
};

TEST_F(AccessibleEditor, HasNoWindowWithoutAName) {
  EXPECT_EQ(NamelessBelow(window->Handle()), Texts{});
  OpenPage();
  EXPECT_EQ(NamelessBelow(window->Handle()), Texts{});
  for (Control* one : Form().Controls()) one->SetVisible(true);
  Form().tbrEditingTools.SetButtonPressed("NoTools", true);
  TransparentPicture& layer = AddLayer();
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetTextEntry(true);
  control->LayerRoom().PassPress(2);
  layer.SetTyping(true);
  TestForm::Pump();
  EXPECT_EQ(NamelessBelow(window->Handle()), Texts{});
}

TEST_F(AccessibleEditor, TellsItsPage) {
  EXPECT_EQ(NameOf(AccessibleOf(window->Handle())), L"Image annotation editor");
  OpenPage();
  EXPECT_EQ(NameOf(AccessibleOf(window->Handle())), L"Image annotation editor, page 1 of 1");
  wchar_t text[64] = {};
  GetWindowTextW(window->Handle(), text, 64);
  EXPECT_EQ(std::wstring(text), L"Image annotation editor, page 1 of 1");
}

TEST_F(AccessibleEditor, PicksItsLayersForAClientAndByKeys) {
  OpenPage();
  Form().tbrEditingTools.SetButtonPressed("NoTools", true);
  TransparentPicture& layer = AddLayer();
  const HWND shown = WindowOf(Form().picCanvas);
  const Accessible canvas = AccessibleOf(shown);
  EXPECT_EQ(NameOf(canvas), L"Canvas");
  LONG id = 0;
  for (const LONG part : PartsOf(canvas)) {
    if (NameOf(canvas, part) == L"Picture layer 2") id = part;
  }
  ASSERT_NE(id, 0);
  EXPECT_EQ(canvas->accDoDefaultAction(ChildId(id)), S_OK);
  EXPECT_EQ(layer.SelectionFrame(), 1);
  EXPECT_TRUE(HasState(canvas, STATE_SYSTEM_SELECTED, id));
  control->LayerRoom().PassPress(0);
  SetFocus(shown);
  const auto strike = [&](WPARAM key) {
    MSG message = {shown, WM_KEYDOWN, key, 0, 0, {}};
    return window->TranslateAccelerator(message);
  };
  EXPECT_FALSE(strike(VK_RIGHT)) << "the host's";
  EXPECT_TRUE(strike(VK_F6));
  EXPECT_EQ(layer.SelectionFrame(), 1);
  EXPECT_TRUE(strike(VK_RIGHT));
  EXPECT_EQ(layer.Left(), 20);
  layer.SetFigure({.kind = FigureKind::Text});
  layer.SetTextEntry(true);
  layer.SetTyping(true);
  const HWND field = GetFocus();
  EXPECT_NE(field, shown);
  MSG message = {field, WM_KEYDOWN, VK_RIGHT, 0, 0, {}};
  EXPECT_TRUE(window->TranslateAccelerator(message));
  EXPECT_EQ(layer.Left(), 20) << "the key is the field's";
  message.wParam = VK_F6;
  EXPECT_FALSE(window->TranslateAccelerator(message));
}

TEST(AccessibleDialog, HasNoWindowWithoutAName) {
  const ComOnThread com;
  TestForm form;
  QuietDesktop desktop;
  RecordedEvents events;
  Log log{"log"};
  Trap trap{desktop, events, form.root, form.frame, form.canvas, log};
  frmApprovedXTimes stamp(desktop, trap);
  const windows::ModalWindow dialog(stamp.form, form.host);
  const HWND shown = FindWindowW(windows::OwnWindowClass::Name, L"Stamp");
  ASSERT_NE(shown, nullptr);
  EXPECT_EQ(NamelessBelow(shown), Texts{});
  EXPECT_EQ(NameOf(AccessibleOf(WindowOf(stamp.form))), L"Stamp");
  EXPECT_EQ(NameOf(AccessibleOf(WindowOf(stamp.cmbNoOfTimes))), L"Approved for a number of times");
  EXPECT_EQ(NameOf(AccessibleOf(WindowOf(stamp.DTPicker1))), L"OK until a date");
}

}  // namespace
}  // namespace kw::test
