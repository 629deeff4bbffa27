#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "tests/activex/Ocx.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::bench {

// A control of 900 x 640 pixels in a window on the screen, with a folder of its own. Message boxes are answered before
// they are shown, and the control's own dialogs with Enter as soon as they are up.
class BenchedControl {
public:
  // The milliseconds of each step.
  struct Creation {
    double create = 0;
    double take = 0;
    double activate = 0;
    double paint = 0;
    double Sum() const { return create + take + activate + paint; }
  };

  BenchedControl();
  BenchedControl(const BenchedControl&) = delete;
  BenchedControl& operator=(const BenchedControl&) = delete;
  ~BenchedControl();

  const Creation& Made() const { return made; }
  _KwEditorLayers& Object() const { return *control.Get(); }
  const test::ScratchFolder& Folder() const { return folder; }
  HWND Window() const { return container.ControlWindow(); }
  bool IsEnabled() const;
  void Open(const std::wstring& path) const;
  // Known once AwaitTools() was called.
  HWND Canvas() const { return canvas; }
  // The tools of the second after the opening of a page. Its buttons can be clicked from then on.
  void AwaitTools() const;
  // Runs what the button of that tool tip stands for; false if there is none that can be clicked.
  bool Click(const std::string& toolTip) const;
  void DoVerb(LONG verb) const;
  // Presses a tool's button with the mouse; false if it does not stay pressed.
  bool Choose(const std::string& toolTip) const;
  // A stroke of so many points with the mouse held, as messages to the canvas: to the right, and a tenth as much down
  // or up.
  void Stroke(POINT start, int points, bool isDown, bool isPainted) const;
  void Press(int x, int y) const;
  // Handles what waits and shows all that has changed, the canvas without its pause between two paintings.
  void Paint() const;
  // Shows the whole canvas again.
  void PaintCanvas() const;
  // Gives the control another size, as its container does.
  void Resize(int width, int height) const;

  // The message boxes answered so far in this process.
  static int Boxes();

private:
  test::ScratchFolder folder;
  test::ComPtr<_KwEditorLayers> control;
  mutable test::StrictContainer container;
  mutable HWND canvas = nullptr;
  mutable std::map<std::string, test::ToolBarButton> buttons;
  Creation made;
};

}  // namespace kw::bench
