#include "tests/windows/TestForm.h"

#include "windows/views/ControlView.h"

namespace kw::test {
namespace {

void Place(Control& control, Control& container, float left, float top, float width, float height) {
  const float unit = container.ScaleUnit() == Unit::Twips ? TwipsPerPixel : 1.0F;
  control.SetContainer(&container);
  control.Move(left * unit, top * unit, width * unit, height * unit);
}

}  // namespace

TestForm::TestForm(Scale scale) {
  root.UserResize(600, 400);
  strip.SetScaleUnit(Unit::Twips);
  panel.SetScaleUnit(Unit::Twips);
  comboFrame.SetScaleUnit(Unit::Twips);
  Place(strip, root, 1, 1, 400, 30);
  Place(bar, strip, 4, 3, 200, 24);
  Place(comboFrame, strip, 210, 3, 100, 24);
  Place(combo, comboFrame, 1, 1, 90, 22);
  Place(frame, root, 1, 34, 400, 340);
  Place(canvas, frame, 0, 0, 302, 202);
  Place(page, canvas, 0, 0, 300, 200);
  Place(border, canvas, 0, 200, 300, 2);
  Place(layers(0), canvas, 0, 0, 20, 20);
  layers(0).SetVisible(false);
  Place(vertical, root, 401, 34, 17, 340);
  Place(horizontal, root, 1, 374, 400, 17);
  Place(panel, root, 430, 34, 160, 300);
  Place(close, panel, 142, 3, 14, 14);
  Place(tools, panel, 4, 20, 150, 48);
  Place(label, panel, 8, 74, 140, 14);
  Place(sample, panel, 8, 92, 30, 20);
  Place(slider, panel, 4, 116, 150, 26);
  Place(tick, panel, 8, 146, 120, 18);
  Place(button, panel, 8, 168, 80, 24);
  Place(spinner, panel, 96, 168, 17, 24);
  Place(palette, panel, 8, 198, 144, 90);
  Place(panels(0), root, 430, 340, 40, 40);
  Place(menu, root, 0, 0, 0, 0);
  menu.SetVisible(false);
  Place(entry, menu, 0, 0, 0, 0);

  bar.AddButton({.key = "Save", .toolTip = "Save File", .image = "Save"});
  bar.AddButton({.style = ButtonStyle::Separator});
  bar.AddButton({.key = "Undo", .toolTip = "Undo", .image = "Undo", .enabled = false});
  bar.AddButton({.key = "Cut", .toolTip = "Cut", .image = "Cut", .visible = false});
  bar.AddButton({.key = "Show", .toolTip = "Show", .image = "ShowHideTools", .style = ButtonStyle::Check});
  bar.AddButton({.key = "More", .toolTip = "More", .caption = "More"});
  for (const char* key : {"NoTools", "Pen", "Text", "Line", "Rectangle", "Circle", "Rubber", "Stamp"}) {
    tools.AddButton({.key = key, .toolTip = key, .image = key, .style = ButtonStyle::Group});
  }
  for (const char* text : {"50 %", "100 %", "200 %"}) combo.Add(text);
  combo.Select(2);
  label.SetCaption("Thickness 2");
  label.SetToolTip("Line Thickness");
  sample.SetBorder(true);
  sample.SetBackColor(MakeColour(200, 0, 0));
  slider.SetMin(1);
  slider.SetValue(2);
  tick.SetCaption("Lighten");
  button.SetCaption("Cancel");
  button.SetIsButton(true);
  spinner.SetMax(5);
  close.SetPicture("HideToolBox");
  palette.SetPicture("Chooser.Ico");
  vertical.SetMax(300);
  vertical.SetLargeChange(340);
  horizontal.SetMax(0);
  horizontal.SetEnabled(false);
  frame.SetBackColor(MakeColour(128, 128, 128));
  page.SetPicture(Plain(300, 200, {10, 200, 30}));
  border.SetColor(MakeColour(64, 64, 64));
  entry.SetCaption("&Copy");

  const SIZE size = {scale.ToDevice(600), scale.ToDevice(400)};
  host = HostWindow(size.cx, size.cy);
  window = std::make_unique<windows::EditorWindow>(root, host, RECT{0, 0, size.cx, size.cy}, scale);
  window->Show(true);
  Pump();
}

TestForm::~TestForm() {
  window.reset();
  DestroyWindow(host);
}

HWND TestForm::HostWindow(int width, int height) {
  // A button that appears under the pointer becomes hot whenever the display server tells of it.
  SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
  const HWND made = CreateWindowExW(0, L"Static", L"Views", WS_POPUP | WS_CLIPCHILDREN, 0, 0, width, height, nullptr,
                                    nullptr, GetModuleHandleW(nullptr), nullptr);
  // Shown without being activated: an active window is handed to a window manager, and Wine waits two seconds for one.
  ShowWindow(made, SW_SHOWNA);
  return made;
}

void TestForm::Pump() {
  PumpOnce();
  Sleep(20);  // so long at most does what changes wait to be painted
  PumpOnce();
}

void TestForm::PumpOnce() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

HWND WindowOf(const Control& model) {
  const auto* view = dynamic_cast<const windows::ControlView*>(model.AttachedView());
  return view == nullptr ? nullptr : view->Handle();
}

HWND FieldOf(const ImageCombo& combo) {
  COMBOBOXINFO parts = {};
  parts.cbSize = sizeof parts;
  return GetComboBoxInfo(WindowOf(combo), &parts) == FALSE ? nullptr : parts.hwndItem;
}

RECT PlaceOf(HWND window) {
  RECT place = {};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

LONG FontHeightOf(HWND window) {
  LOGFONTW font = {};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
  return font.lfHeight;
}

void Paint(HWND window) { RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN); }

COLORREF PixelOf(HWND window, int x, int y) {
  const HDC context = GetDC(window);
  const COLORREF colour = GetPixel(context, x, y);
  ReleaseDC(window, context);
  return colour;
}

bool ShowsText(const Control& control, HWND background) {
  Paint(background);
  const bool isInTwips = control.Container() != nullptr && control.Container()->ScaleUnit() == Unit::Twips;
  const auto inPixels = [isInTwips](float place) { return static_cast<int>(isInTwips ? ToPixels(place) : place); };
  const int right = inPixels(control.Left() + control.Width());
  const int bottom = inPixels(control.Top() + control.Height());
  constexpr int fewestOfAWord = 30;
  int ink = 0;
  const HDC context = GetDC(background);
  for (int y = inPixels(control.Top()); y < bottom; ++y) {
    for (int x = inPixels(control.Left()); x < right; ++x) {
      ink += GetPixel(context, x, y) == GetSysColor(COLOR_BTNTEXT) ? 1 : 0;
    }
  }
  ReleaseDC(background, context);
  return ink >= fewestOfAWord;
}

void ClickAt(HWND window, int x, int y) {
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

Bitmap Plain(std::int32_t width, std::int32_t height, Rgb colour) {
  Bitmap picture(width, height, 24);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t x = 0; x + 2 < row.size(); x += 3) {
      row[x] = colour.blue;
      row[x + 1] = colour.green;
      row[x + 2] = colour.red;
    }
  }
  return picture;
}

}  // namespace kw::test
