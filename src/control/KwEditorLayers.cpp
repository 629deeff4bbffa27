#include "control/KwEditorLayers.h"

#include "trap/Procedure.h"

namespace kw {

KwEditorLayers::KwEditorLayers(Desktop& platform, EditorEvents& container)
    : EditorState(container, form, trap, zoom),
      desktop(platform),
      form(platform),
      trap(platform, container, form.editor, form.picFrame, form.picCanvas, form.KwLogCtl1),
      KWPic(platform),
      KWPicTempBuffer(platform),
      layers(platform, form, trap),
      zoom(platform, form, trap, layers),
      scrolling(form, trap),
      borders(platform, form, trap, zoom),
      context{platform, container, form, trap, layers, zoom, *this, openings, KWPic, KWPicTempBuffer},
      bracket(context),
      document(context, bracket),
      strip(context),
      toolBox(context),
      coloursAndLines(context),
      colourPicker(context, coloursAndLines),
      toolKit(context, coloursAndLines),
      dispatcher(context, bracket, document, toolKit),
      keyboard(context, dispatcher),
      drawingTools(context, toolKit),
      clipboardWatch(context),
      stampTool(context),
      printing(context, document),
      scanning(context, clipboardWatch, dispatcher) {
  ConnectEvents();
}

void KwEditorLayers::ConnectEvents() {
  UserControl& editor = form.editor;
  editor.Paint.Connect([this] { UserControl_Paint(); });
  editor.Resize.Connect([this] { UserControl_Resize(); });
  editor.KeyDown.Connect([this](std::int16_t code, std::int16_t shift) { UserControl_KeyDown(code, shift); });
  editor.KeyPress.Connect([this](std::int16_t character) { UserControl_KeyPress(character); });
  editor.KeyUp.Connect([this](std::int16_t code, std::int16_t shift) { UserControl_KeyUp(code, shift); });
  form.tmrDefaultToolsSelection.Tick.Connect([this] { tmrDefaultToolsSelection_Timer(); });

  form.kwraBasicToolsContainer.ConnectItems([this](RaisedArea& container) {
    container.MouseDown.Connect([this](std::int16_t button, std::int16_t, float, float) {
      Procedure run(trap, "kwraBasicToolsContainer_MouseDown");
      run([&] { pictbrBasicToolsContainer_DblClick(button); });
    });
    container.MouseMove.Connect([this](std::int16_t, std::int16_t, float, float) {
      const Procedure run(trap, "kwraBasicToolsContainer_MouseMove");
    });
    container.MouseUp.Connect([this](std::int16_t, std::int16_t, float, float) {
      const Procedure run(trap, "pictbrBasicToolsContainer_MouseUp");
    });
  });
  form.mnuCopySelectedArea.Click.Connect([this] { dispatcher.ToolbarButtonClick("Copy"); });
  form.mnuCutSelectedArea.Click.Connect([this] { dispatcher.ToolbarButtonClick("Cut"); });
  form.mnuPasteSelectedArea.Click.Connect([this] { mnuPasteSelectedArea_Click(); });
  dispatcher.PrinterSetup.Connect([this] { printing.PrintPages(); });
  dispatcher.SelectScanner.Connect([this] { scanning.SelectScanner(); });
  dispatcher.Acquire.Connect([this] { scanning.Acquire(); });
  layers.BeforeLabelLayer.Connect([this] { lineRightBorderForSelectedArea_MouseUp(); });
  form.Label2.Click.Connect([this] { Label2_Click(); });

  toolKit.StampRequested.Connect([this](float x, float y) { stampTool.PlaceStamp(x, y); });
}

// The strip changes between one row and two.
void KwEditorLayers::pictbrBasicToolsContainer_DblClick(std::int16_t button) {
  Procedure run(trap, "pictbrBasicToolsContainer_DblClick");
  if (button != Mouse::LeftButton) return;
  run([&] {
    const RaisedArea& first = form.kwraBasicToolsContainer(0);
    RaisedArea& second = form.kwraBasicToolsContainer(1);
    second.SetTop(second.Top() >= first.Height() ? first.Top() : first.Height() + 1);
  });
  run([&] { strip.RedrawToolBars(); });
  run([&] { UserControl_Resize(); });
  run([&] { scrolling.SetScrollBarPositions(); });
}

void KwEditorLayers::mnuPasteSelectedArea_Click() {
  Procedure run(trap, "mnuPasteSelectedArea_Click");
  run([&] { dispatcher.ToolbarButtonClick("Paste"); });
}

void KwEditorLayers::Label2_Click() {
  Procedure run(trap, "Label2_Click");
  TransparentPicture& back = form.TransBackImage;
  run([&] { back.SetWidth(back.Width() / 4); });
  run([&] { back.SetPicture(back.SourcePicture()); });
  run([&] { zoom.UpdateAndZoom(); });
}

void KwEditorLayers::OpenFile(const std::string& fPath) { document.OpenFile(fPath); }

bool KwEditorLayers::TakesVerbs() const {
  return layers.HasPage() && form.editor.Enabled() && m_IsEditable && !trap.IsInProcedure();
}

}  // namespace kw
