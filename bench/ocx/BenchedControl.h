#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>

#include "components/base/Bitmap.h"
#include "tests/activex/Ocx.h"
#include "tests/activex/OwnMemory.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::bench {

// A control of 900 x 640 pixels in a window on the screen. Message boxes are answered before they are shown, and the
// control's own dialogs with Enter as soon as they are up.
class BenchedControl {
public:
  BenchedControl();
  BenchedControl(const BenchedControl&) = delete;
  BenchedControl& operator=(const BenchedControl&) = delete;
  ~BenchedControl();

  _KwEditorLayers& Object() const { return *control.Get(); }
  HWND Window() const { return container.ControlWindow(); }
  void Open(const std::wstring& path) const;
  // The canvas of the open page, and the tools of the second after its opening.
  HWND Canvas() const;
  void AwaitTools() const;
  // Clicks the button of that tool tip; false if there is none that can be clicked.
  bool Click(const std::string& toolTip) const;
  // A stroke of so many points with the mouse held, as messages to the canvas.
  void Stroke(int x, int y, int points, bool isPainted) const;
  // Handles what waits and shows all that has changed.
  void Paint() const;

private:
  test::ComPtr<_KwEditorLayers> control;
  mutable test::StrictContainer container;
  mutable std::map<std::string, test::ToolBarButton> buttons;
};

// Writes a page in the format of the name's extension.
void Write(const Bitmap& page, const std::wstring& path);

// The shortest, the middle and the longest of `count` runs, as a line of the table. `prepare` is not measured.
void Measure(const std::string& name, int count, const std::function<void()>& work,
             const std::function<void()>& prepare = {});
void Tell(const std::string& name, double milliseconds);
double Now();  // in milliseconds

}  // namespace kw::bench
