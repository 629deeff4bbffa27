#include "commands/toolbox/ToolBarStrip.h"

#include "trap/Procedure.h"

namespace kw {
namespace {

constexpr float SeparatorGap = 4;  // twips
constexpr float ZoomBoxGap = 2;    // twips
constexpr float ContainerGap = 1;  // pixels

float RightOf(const Control& control) { return control.Left() + control.Width(); }
float BottomOf(const Control& control) { return control.Top() + control.Height(); }

}  // namespace

ToolBarStrip::ToolBarStrip(const EditorContext& context) : EditorContext(context) {}

void ToolBarStrip::RedrawToolBars() {
  Procedure run(trap, "RedrawToolBars");
  RaisedArea& first = form.kwraBasicToolsContainer(0);
  RaisedArea& second = form.kwraBasicToolsContainer(1);
  ToolBar& basic = form.tbrBasicTools(0);
  ToolBar& pages = form.tbrBasicTools(1);
  Frame& zoomBox = form.frZoomFactorContainer;
  run([&] {
    const float start = RightOf(form.kwraToolBarFixedSeperator) + SeparatorGap;
    if (form.tbrOpenFile.Visible()) {
      form.tbrOpenFile.SetLeft(start);
      basic.SetLeft(RightOf(form.tbrOpenFile) + SeparatorGap);
    } else {
      basic.SetLeft(start);
    }
  });
  run([&] { pages.SetLeft(RightOf(form.kwraToolBarSeperator) + SeparatorGap); });
  run([&] { zoomBox.Move(RightOf(basic) + ZoomBoxGap, (ToTwips(first.Height()) - zoomBox.Height()) / 2); });
  const bool isInTwoRows = second.Top() >= first.Height();
  run([&] { first.Move(ContainerGap, ContainerGap, ToPixels(RightOf(zoomBox)) + 2, first.Height()); });
  run([&] {
    const float width = ToPixels(RightOf(pages)) + ContainerGap;
    if (isInTwoRows)
      second.Move(ContainerGap, BottomOf(first) + ContainerGap, width, second.Height());
    else
      second.Move(RightOf(first) + ContainerGap, first.Top(), width, first.Height());
  });
  run([&] { form.picFrame.SetTop(BottomOf(second) + ContainerGap); });
}

}  // namespace kw
