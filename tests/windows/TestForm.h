#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "components/controls/CheckBox.h"
#include "components/controls/ControlArray.h"
#include "components/controls/ImageCombo.h"
#include "components/controls/Label.h"
#include "components/controls/LightWeightMarker.h"
#include "components/controls/Menu.h"
#include "components/controls/PictureBox.h"
#include "components/controls/RaisedArea.h"
#include "components/controls/RangeControl.h"
#include "components/controls/ToolBar.h"
#include "components/controls/TransparentPicture.h"
#include "components/controls/UserControl.h"
#include "windows/editor/EditorWindow.h"

namespace kw::test {

// The scales of a screen that Windows offers beside 100 %: 125, 150, 175 and 200 %.
inline constexpr std::int32_t Dpis[] = {120, 144, 168, 192};
inline constexpr COLORREF Green = RGB(10, 200, 30);

// A small form that holds every kind of control, in a window of its own: tool bars in a frame that measures in twips,
// the other controls on a panel, a canvas with a layer.
class TestForm {
public:
  // In a window at that scale.
  explicit TestForm(Scale scale = Scale());
  TestForm(const TestForm&) = delete;
  TestForm& operator=(const TestForm&) = delete;
  ~TestForm();

  UserControl root{"root"};
  RaisedArea strip{"strip"};
  ToolBar bar{"bar"};
  Frame comboFrame{"comboFrame"};
  ImageCombo combo{"combo"};
  RaisedArea panel{"panel"};
  RaisedPicture close{"close"};
  ToolBar tools{"tools"};
  Label label{"label"};
  Label sample{"sample"};
  Slider slider{"slider"};
  CheckBox tick{"tick"};
  CheckBox button{"button"};
  PageSpinner spinner{"spinner"};
  RaisedPicture palette{"palette"};
  PictureBox frame{"frame"};
  PictureBox canvas{"canvas"};
  TransparentPicture page{"page"};
  LightWeightMarker border{"border"};
  ControlArray<TransparentPicture> layers{"layers", 1};
  ControlArray<RaisedArea> panels{"panels", 1};
  ScrollBar vertical{"vertical", true};
  ScrollBar horizontal{"horizontal", false};
  Menu menu{"menu"};
  Menu entry{"entry"};

  HWND host = nullptr;
  std::unique_ptr<windows::EditorWindow> window;
  // A top-level window to hold an editor.
  static HWND HostWindow(int width = 600, int height = 400);

  // Handles every message that waits.
  static void Pump();
  // Handles what waits already, no more.
  static void PumpOnce();
  // Pumps until `isDone`; false when that takes longer than five seconds.
  template <class Condition>
  static bool PumpUntil(Condition isDone) {
    for (int i = 0; i < 500; ++i) {
      Pump();
      if (isDone()) return true;
      Sleep(10);
    }
    return false;
  }
};

// The window that shows the model; null for one that has none.
HWND WindowOf(const Control& model);
// The field of a combo that takes the typing.
HWND FieldOf(const ImageCombo& combo);
// The window's place in its parent's client area.
RECT PlaceOf(HWND window);
// Of its font, as the system counts it: below zero for the height of the letters.
LONG FontHeightOf(HWND window);
// The colour that the screen shows at a point of the window.
COLORREF PixelOf(HWND window, int x, int y);
void Paint(HWND window);
// Whether the ground that a control without a window lies on shows some text in its place.
bool ShowsText(const Control& control, HWND background);
// A press and a release of the left button at a point of the window.
void ClickAt(HWND window, int x, int y);
// A picture of one colour.
Bitmap Plain(std::int32_t width, std::int32_t height, Rgb colour);

}  // namespace kw::test
