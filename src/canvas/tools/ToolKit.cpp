#include "canvas/tools/ToolKit.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "components/base/Arithmetic.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

std::string CursorOf(const Tool& tool) { return std::string(tool.key) + ".Ico"; }

}  // namespace

std::span<const Tool* const> Tools() {
#define KW_LIST_TOOL(name) &tools::name,
  static const Tool* const all[] = {KW_TOOLS(KW_LIST_TOOL)};
#undef KW_LIST_TOOL
  return all;
}

std::vector<const Tool*> ToolsBy(int Tool::*place) {
  std::vector<const Tool*> sorted(Tools().begin(), Tools().end());
  std::ranges::sort(sorted, {}, [place](const Tool* tool) { return tool->*place; });
  return sorted;
}

ToolKit::ToolKit(const EditorContext& context, ColoursAndLines& coloursAndLines)
    : EditorContext(context), colours(coloursAndLines), stroke(context.form, context.layers) {
  for (const Tool* tool : ToolsBy(&Tool::buttonPlace)) {
    const std::string key(tool->key);
    form.tbrEditingTools.AddButton(
        {.key = key, .toolTip = std::string(tool->toolTip), .image = key, .style = ButtonStyle::Group});
    if (tool->pointer == MousePointer::Custom) form.imgLstMousePointers.Add(CursorOf(*tool));
  }
}

const Tool* ToolKit::CurrentTool() const {
  const auto found = std::ranges::find_if(
      Tools(), [&](const Tool* tool) { return form.tbrEditingTools.ButtonOf(std::string(tool->key)).pressed; });
  return found == Tools().end() ? nullptr : *found;
}

void ToolKit::SetCursorFromPressedTool() {
  static const std::vector<const Tool*> inOrder = ToolsBy(&Tool::cursorPlace);
  for (const Tool* tool : inOrder) {
    if (!form.tbrEditingTools.ButtonOf(std::string(tool->key)).pressed) continue;
    if (tool->pointer == MousePointer::Custom) {
      form.picCanvas.SetPointerIcon(form.imgLstMousePointers.Picture(CursorOf(*tool)));
    }
    form.picCanvas.SetPointer(tool->pointer);
    layers.ShowCanvasPointer();
    return;
  }
}

void ToolKit::SetCommonProperties(Procedure& run, TransparentPicture& layer) {
  run([&] { layer.SetLineColor(form.SampleForeGroundColor.BackColor()); });
  run([&] { layer.SetLineWidth(ToInteger16(form.sldLineHeight.Value())); });
  const Colour back = form.SampleBackGroundColor.BackColor();
  run([&] { layer.SetBackColor(back); });
  run([&] { layer.SetForeColor(form.SampleForeGroundColor.BackColor()); });
  run([&] {
    const bool isHollow = form.tbrFillPattern.ButtonOf("NoFillInside").pressed;
    layer.SetTransparentColor(isHollow ? back : RoundToEven<Colour>(static_cast<double>(back) / 2 + 10));
  });
  run([&] { layer.SetStyle(0); });
}

std::shared_ptr<TransparentPicture> ToolKit::MakeFigure(Procedure& run, FigureKind kind) {
  auto made = layers.NewLayer();
  if (made == nullptr) return nullptr;
  TransparentPicture& layer = *made;
  const TransparentPicture& fr = form.fr;
  run([&] { layer.SetIsToShowResize(false); });
  run([&] { layer.Move(fr.Left(), fr.Top(), fr.Width(), fr.Height()); });
  run([&] { layer.SetVisible(true); });
  SetCommonProperties(run, layer);
  const DragState& drag = layers.Drag();
  run([&] {
    layer.SetFigure(
        {.kind = kind, .isRising = (drag.m_CurrentX - drag.m_StartX) * (drag.m_CurrentY - drag.m_StartY) < 0});
  });
  run([&] { layer.SetTextEntry(kind == FigureKind::Text); });
  return made;
}

PixelRect ToolKit::CanvasPixels() const {
  const PixelRect place = PixelsOf(form.picCanvas);
  return {0, 0, place.Width(), place.Height()};
}

std::shared_ptr<TransparentPicture> ToolKit::PlacePicture(Procedure& run, const Bitmap& picture,
                                                          const PixelRect& within) {
  if (picture.IsEmpty() || within.IsEmpty()) return nullptr;
  auto layer = layers.NewLayer();
  if (layer == nullptr) return nullptr;
  run([&] {
    const float across = static_cast<float>(within.Width()) / static_cast<float>(picture.Width());
    const float down = static_cast<float>(within.Height()) / static_cast<float>(picture.Height());
    const float scale = std::min(across, down);
    const float width = std::max(1.0F, std::round(static_cast<float>(picture.Width()) * scale));
    const float height = std::max(1.0F, std::round(static_cast<float>(picture.Height()) * scale));
    layer->Move(static_cast<float>(within.left) + std::floor((static_cast<float>(within.Width()) - width) / 2),
                static_cast<float>(within.top) + std::floor((static_cast<float>(within.Height()) - height) / 2), width,
                height);
  });
  SetCommonProperties(run, *layer);
  run([&] { layer->SetPicture(picture); });
  run([&] { layer->SetVisible(true); });
  return layer;
}

}  // namespace kw
