// The control's procedures for creation, painting, resizing, destruction and keys.

#include <algorithm>

#include "control/KwEditorLayers.h"
#include "document/ScratchBitmap.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

const std::string StarRule(77, '*');

// Distance of the tool box from the viewport's right and bottom edges, in pixels.
constexpr float ToolBoxMargin = 10;

void ResetPlacement(TransparentPicture& layer) {
  layer.ZOrder();
  layer.Move(0);
}

void SwitchOffDisplayOptions(TransparentPicture& layer) {
  layer.SetIsToShowBorderMarks(false);
  layer.SetIsToShowResize(false);
}

}  // namespace

void KwEditorLayers::UserControl_Initialize() {
  isInitialised = true;
  Procedure run(trap);
  run([&] { trap.TraceFunction(StarRule); });
  run([&] { trap.TraceFunction(trap.GetTimeStamp()); });
  run([&] { trap.TraceFunction(StarRule); });
  run([&] { trap.TraceFunction("UserControl_Initialize"); });
  RunStartUpSteps(run);
  run.IgnoreErrors();
  RemoveScratchFiles(run);
}

void KwEditorLayers::RunStartUpSteps(Procedure& run) {
  TransparentPicture& page = form.TransLayers(Layers::PageLayer);
  run([&] { ResetPlacement(form.TransBackImage); });
  run([&] { ResetPlacement(page); });
  run([&] { page.SetVisible(true); });
  run([&] { SwitchOffDisplayOptions(form.TransBackImage); });
  run([&] { SwitchOffDisplayOptions(page); });
  run([&] { form.fr.SetIsToShowBorderMarks(true); });
  run([&] { form.tbrOpenFile.SetVisible(false); });
  run([&] { layers.ZOrder().Reset(); });
  run([&] { zoom.FillZoomList(); });
  run([&] { form.sldLineHeight.SetValue(2); });
  run([&] { form.kwrpColors.SetPicture(form.imgLstMousePointers.Picture("Chooser.Ico")); });
  run([&] { form.tmrWatchClipBoard.SetEnabled(true); });
  run([&] { coloursAndLines.LetEditorBackColor(form.SampleBackGroundColor.BackColor()); });
  run([&] { coloursAndLines.LetEditorForeColor(form.SampleForeGroundColor.BackColor()); });
  run([&] { form.tbrBasicTools(0).SetEnabled(false); });
  run([&] { form.tbrBasicTools(1).SetEnabled(false); });
  run([&] { form.picTempBuffer.SetPicture({}); });
  run([&] { zoom.LetZoomFactor(1.0); });
  run([&] { scrolling.SetScrollBarPositions(); });
  run([&] { ReCreateUndoFileIndex(); });
  run([&] { form.kwraTools.SetEnabled(false); });
  run([&] { LetIsToolboxVisible(true); });
  run([&] { LetIsSaveButtonEnabled(GetIsSaveButtonEnabled()); });
  run([&] { LetIsEditable(GetIsEditable()); });
  run([&] { form.tmrDefaultToolsSelection.SetEnabled(true); });
  run([&] { strip.RedrawToolBars(); });
  run([&] { clipboardWatch.tmrWatchClipBoard_Timer(); });
  run([&] { LetSignatureFilePath(""); });
  run([&] { LetBGImage(""); });
}

void KwEditorLayers::RemoveScratchFiles(Procedure& run) {
  run([&] { ScratchBitmap(desktop).Remove(); });
  run([&] { ScratchBitmap(desktop).RemoveLeftovers(); });
}

void KwEditorLayers::tmrDefaultToolsSelection_Timer() {
  Procedure run(trap, "tmrDefaultToolsSelection_Timer");
  run([&] { form.tmrDefaultToolsSelection.SetEnabled(false); });
  run([&] { form.tbrEditingTools.SetButtonPressed("Text", true); });
  run([&] { dispatcher.tbrEditingTools_ButtonClick("Text"); });
  run([&] { form.tbrFillPattern.SetButtonPressed("NoFillInside", true); });
  run([&] { dispatcher.tbrFillPattern_ButtonClick("NoFillInside"); });
}

void KwEditorLayers::UserControl_Paint() {
  Procedure run(trap, "UserControl_Paint");
  run([&] { clipboardWatch.tmrWatchClipBoard_Timer(); });
}

void KwEditorLayers::lineRightBorderForSelectedArea_MouseUp() {
  Procedure run(trap, "lineRightBorderForSelectedArea_MouseUp");
  run([&] { clipboardWatch.tmrWatchClipBoard_Timer(); });
}

void KwEditorLayers::UserControl_Resize() {
  Procedure run(trap, "UserControl_Resize");
  PictureBox& frame = form.picFrame;
  run([&] {
    const float width = ToPixels(form.editor.Width()) - frame.Left() - form.vScroll.Width();
    const float height = ToPixels(form.editor.Height()) - frame.Top() - form.hScroll.Height();
    // A control too small for its viewport keeps the size that it has in that direction.
    frame.Move(frame.Left(), frame.Top(), width > 0 ? width : frame.Width(), height > 0 ? height : frame.Height());
  });
  run([&] { form.hScroll.Move(frame.Left(), frame.Top() + frame.Height(), frame.Width(), form.hScroll.Height()); });
  run([&] { form.vScroll.Move(frame.Left() + frame.Width(), frame.Top(), form.vScroll.Width(), frame.Height()); });
  run([&] {
    form.kwraTools.Move(frame.Left() + frame.Width() - form.kwraTools.Width() - ToolBoxMargin,
                        frame.Top() + frame.Height() - form.kwraTools.Height() - ToolBoxMargin);
  });
}

void KwEditorLayers::UserControl_KeyDown(std::int16_t keyCode, std::int16_t shift) {
  Procedure run(trap, "UserControl_KeyDown");
  run([&] { keyboard.picCanvas_KeyDown(keyCode, shift); });
}

void KwEditorLayers::UserControl_KeyPress(std::int16_t keyAscii) {
  Procedure run(trap, "UserControl_KeyPress");
  run([&] { keyboard.picCanvas_KeyPress(keyAscii); });
}

void KwEditorLayers::UserControl_KeyUp(std::int16_t keyCode, std::int16_t shift) {
  Procedure run(trap, "UserControl_KeyUp");
  run([&] { keyboard.picCanvas_KeyUp(keyCode, shift); });
}

void KwEditorLayers::UserControl_Terminate() {
  Procedure run(trap, "UserControl_Terminate");
  run([&] { form.tmrWatchClipBoard.SetEnabled(false); });
  run.IgnoreErrors();
  // The children are numbered from 0 but walked from 1, so the first is left out and the last number has no child.
  const std::vector<Control*> children = form.Controls();
  for (std::size_t i = 1; i <= children.size(); ++i) {
    run([&] { children.at(i)->SetEnabled(false); });
    run([&] { children.at(i)->TrySetInterval(0); });
    run([&] { children.at(i)->TryClearPicture(); });
  }
  RemoveScratchFiles(run);
}

}  // namespace kw
