#include "control/KwEditorLayers.h"

#include "trap/Procedure.h"

namespace kw {

KwEditorLayers::KwEditorLayers(Desktop& platform, EditorEvents& container)
    : desktop(platform),
      events(container),
      form(platform),
      trap(platform, form.editor, form.picFrame, form.picCanvas, form.KwLogCtl1),
      layers(platform, form, trap),
      zoom(platform, form, trap, layers),
      scrolling(form, trap),
      borders(platform, form, trap, zoom),
      bracket(platform, form, trap, layers, zoom, KWPic),
      document({platform, form, trap, layers, bracket, *this, KWPic}),
      strip(form, trap),
      coloursAndLines(form, trap, layers),
      dispatcher({platform, form, trap, *this, layers, zoom, bracket, document, KWPic}),
      keyboard(form, trap, dispatcher, layers, zoom),
      clipboardWatch(platform, form, trap, *this) {
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

  trap.ErrorOccured.Connect(
      [this](std::int16_t& number, std::string& message) { events.ErrorOccured(number, message); });
  document.NewPageCreated.Connect(
      [this](std::string& path, std::int16_t& page, std::int16_t& count) { events.NewPageCreated(path, page, count); });
  document.PageChanged.Connect([this](std::int16_t& page) { events.PageChanged(page); });
}

void KwEditorLayers::OpenFile(const std::string& fPath) { document.OpenFile(fPath); }

void KwEditorLayers::SavePage() { const Procedure run(trap, "SavePage"); }

void KwEditorLayers::PropertyChanged(Procedure& run, const char* name) {
  run([&] { events.PropertyChanged(name); });
}

void KwEditorLayers::SetButton(Procedure& run, const char* key, bool isEnabled) const {
  run([&] { BarOf(form.tbrBasicTools, key).SetButtonEnabled(key, isEnabled); });
}

}  // namespace kw
