#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "components/base/Bitmap.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/CommandCases.h"
#include "tests/support/ExpectedBoxes.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {

// A control in a container, on the screen, with the scene of the tests of the commands (see CommandScene.h) set by the
// host and by real clicks; but "Undo" and "Redo" stay disabled, since nobody but the control could enable them.
class CommandTest : public ControlTest {
protected:
  using Names = std::vector<std::string>;
  // As CommandCase::changes names it.
  using State = std::map<std::string, std::string>;

  void SetUp() override;
  void TearDown() override;

  // A file of the test's folder.
  std::string File(const std::string& name) const;
  void SavePicture(const Bitmap& picture, const std::string& name) const;
  Bitmap LoadPicture(const std::string& name) const;
  // The name of the one scratch bitmap in the test's folder.
  std::string ScratchBitmap() const;

  const ToolBarButton& Button(const std::string& toolTip) const;
  // Tools and page as they are at the start.
  void SetScene();
  State Look() const;

  void ForgetTrace() const;
  // Without what the system sends whenever it likes: paints, moves of the mouse and the ticks of the clipboard watch.
  Names Trace() const;

  using Way = void (ToolBarButton::*)() const;
  // Runs the button's command and answers what comes up with OK, after `beforeAnswer`; the boxes as "title: text". Each
  // has to be a modal box of the host's window.
  Names Run(const std::string& toolTip, const std::function<void(HWND box)>& beforeAnswer = {},
            Way way = &ToolBarButton::Click);

  // The boxes and the dialog that are the button's.
  std::vector<ExpectedBox> BoxesOf(const std::string& toolTip) const;
  // Others that they bring up in this test.
  std::vector<ExpectedBox> furtherBoxes;

  // For the default tools, which are chosen a second after a document was opened.
  bool waitsForTools = true;
  StrictContainer container;
  std::map<std::string, ToolBarButton> buttons;

private:
  std::string ComboText(bool isZoom) const;
  HWND Canvas() const;
};

std::string TitleOf(HWND window);
// A box as CommandTest::Run gives it.
std::string ShownAs(const CommandBox& box);

}  // namespace kw::test
