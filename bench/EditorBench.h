#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/Pages.h"
#include "drawing/Compositor.h"
#include "scene/CanvasItems.h"
#include "tests/support/EditorFixture.h"

namespace kw {

// 1024 x 768 pixels in which a canvas is painted as a window does it.
class BenchView {
public:
  // Paints the parts in which the items, back to front, differ from those of the last call, and
  // returns those in `items`.
  void Show(std::vector<DisplayItem>& items, Colour background) {
    compositor.SetBackground(background);
    for (const PixelRect& part : compositor.Exchange(items)) Paint(part);
  }
  void PaintAll() { Paint(View); }
  // Gives the pictures of the items back and leaves the pixels as they are.
  void Forget() { compositor.Show({}); }

private:
  static constexpr PixelRect View = {0, 0, 1024, 768};

  void Paint(const PixelRect& part) {
    const PixelRect seen = Common(part, View);
    if (!seen.IsEmpty()) compositor.Paint({pixels.data(), static_cast<std::size_t>(View.Width()), View}, seen, nullptr);
  }

  Compositor compositor{MakeColour(255, 255, 255)};
  std::vector<std::uint32_t> pixels =
      std::vector<std::uint32_t>(static_cast<std::size_t>(View.Width()) * static_cast<std::size_t>(View.Height()));
};

// The control on the desktop of the tests, without the machinery of a test, and a view of its canvas.
class BenchEditor : public test::EditorTest {
public:
  BenchEditor() { desktop.Allow(""); }
  void TestBody() override {}

  KwEditorLayers& Control() { return *control; }
  void Make() {
    control.reset();
    control = std::make_unique<KwEditorLayers>(desktop, events);
    control->UserControl_Initialize();
  }
  EditorForm& Controls() { return Form(); }
  Layers& Room() { return control->LayerRoom(); }
  PictureBox& Canvas() { return Form().picCanvas; }
  test::ScriptedDesktop& Desk() { return desktop; }
  void Choose(const char* tool) { Form().tbrEditingTools.SetButtonPressed(tool, true); }
  // Layers of 60 x 40 that overlap their neighbours.
  void Fill(int count) {
    for (int i = 0; i < count; ++i) {
      TransparentPicture& layer = *Room().NewLayer();
      layer.Move(static_cast<float>(i * 37 % 1500), static_cast<float>(i * 53 % 1100), 60, 40);
      layer.SetVisible(true);
    }
  }

  std::string At(const std::string& name) const { return folder.File(name); }
  // Writes a file in the format of the name; waits for no disk.
  std::string Save(const std::string& name, const Bitmap& page) const {
    PictureDocument maker;
    maker.Replace(page);
    maker.SaveScratch(At(name), {});
    return At(name);
  }

  // Paints what has changed since the last call.
  void Paint() {
    CollectItems(Canvas(), Scale(), items);
    view.Show(items, Canvas().BackColor());
  }
  void PaintAll() { view.PaintAll(); }

private:
  BenchView view;
  std::vector<DisplayItem> items;
};

}  // namespace kw
