#include "commands/Dispatcher.h"

#include <algorithm>
#include <array>

#include "components/Arithmetic.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

// The cursor of a pressed tool.
struct ToolCursor {
  const char* key;
  MousePointer pointer;
  const char* icon;
};

constexpr std::array<ToolCursor, 12> ToolCursors{{
    {"NoTools", MousePointer::Default, ""},
    {"Circle", MousePointer::Cross, ""},
    {"Image", MousePointer::Cross, ""},
    {"Line", MousePointer::Cross, ""},
    {"Rectangle", MousePointer::Cross, ""},
    {"Signature", MousePointer::Cross, ""},
    {"Chooser", MousePointer::Custom, "Chooser.Ico"},
    {"Fill", MousePointer::Custom, "Fill.Ico"},
    {"Pen", MousePointer::Custom, "Pen.Ico"},
    {"Rubber", MousePointer::Custom, "Rubber.Ico"},
    {"Stamp", MousePointer::Custom, "Stamp.Ico"},
    {"Text", MousePointer::Custom, "Text.Ico"},
}};

}  // namespace

std::span<const Dispatcher::Command> Dispatcher::Commands() {
  static constexpr std::array<Command, 28> commands{{
      {"Save", &Dispatcher::Save},
      {"Clear", &Dispatcher::Clear},
      {"Cut", &Dispatcher::Cut},
      {"Copy", &Dispatcher::Copy},
      {"Paste", &Dispatcher::Paste},
      {"Undo", &Dispatcher::Undo},
      {"Redo", &Dispatcher::Redo},
      {"ZoomIn", &Dispatcher::ZoomIn},
      {"ZoomOut", &Dispatcher::ZoomOut},
      {"ShowHideTools", &Dispatcher::ShowHideTools},
      {"ShowHideBackImage", &Dispatcher::ShowHideBackImage},
      {"PrevPage", &Dispatcher::PrevPage},
      {"NextPage", &Dispatcher::NextPage},
      {"Capture", &Dispatcher::Capture},
      {"NoTools", &Dispatcher::NoTools},
      {"Chooser", nullptr},
      {"Fill", nullptr},
      {"Pen", nullptr},
      {"Text", nullptr},
      {"Line", nullptr},
      {"Rectangle", nullptr},
      {"Circle", nullptr},
      {"Rubber", nullptr},
      {"Image", nullptr},
      {"Signature", &Dispatcher::Signature},
      {"Stamp", &Dispatcher::Stamp},
      {"NoFillInside", nullptr},
      {"FillInside", nullptr},
  }};
  return commands;
}

Dispatcher::Dispatcher(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, EditorProperties& editorProperties,
                       Zoom& zoomFactor)
    : desktop(platform), form(editorForm), trap(errorTrap), properties(editorProperties), zoom(zoomFactor) {
  form.tbrBasicTools.ConnectItems([this](ToolBar& bar) {
    bar.ButtonClick.Connect([this](const std::string& key) { tbrBasicTools_ButtonClick(key); });
  });
  form.tbrEditingTools.ButtonClick.Connect([this](const std::string& key) { tbrEditingTools_ButtonClick(key); });
  form.tbrFillPattern.ButtonClick.Connect([this](const std::string& key) { tbrFillPattern_ButtonClick(key); });
  form.tbrFonts.ButtonClick.Connect([this](const std::string& key) { tbrFonts_ButtonClick(key); });
  form.tbrMoreTools.ButtonClick.Connect([this](const std::string& key) { tbrMoreTools_ButtonClick(key); });
  form.tbrOpenFile.ButtonClick.Connect([this](const std::string& key) { tbrOpenFile_ButtonClick(key); });
}

void Dispatcher::ToolbarButtonClick(const std::string& key) {
  Procedure run(trap, "ToolbarButtonClick");
  run([&] {
    const auto commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(), [&](const Command& c) { return c.key == key; });
    if (found == commands.end())
      desktop.ShowMessageBox("ToolBar '" + key, "' not implemented yet ...");
    else if (found->run != nullptr)
      (this->*found->run)();
  });
  run([&] { SetCursorFromPressedTool(); });
}

void Dispatcher::SetCursorFromPressedTool() {
  for (const ToolCursor& tool : ToolCursors) {
    if (!form.tbrEditingTools.ButtonOf(tool.key).pressed) continue;
    if (tool.pointer == MousePointer::Custom) {
      form.picCanvas.SetPointerIcon(form.imgLstMousePointers.Picture(tool.icon));
    }
    form.picCanvas.SetPointer(tool.pointer);
    return;
  }
}

void Dispatcher::Signature() {
  form.tbrFillPattern.SetButtonPressed("NoFillInside", true);
  tbrFillPattern_ButtonClick("NoFillInside");
}

void Dispatcher::StepPage(int step) {
  form.PageIndex.SetValue(ToInteger16(ToInteger16(form.PageIndex.Value()) + step));
}

void Dispatcher::Forward(std::string_view procedure, const std::string& key) {
  Procedure run(trap, procedure);
  run([&] { ToolbarButtonClick(key); });
}

void Dispatcher::tbrBasicTools_ButtonClick(const std::string& key) { Forward("tbrBasicTools_ButtonClick", key); }
void Dispatcher::tbrEditingTools_ButtonClick(const std::string& key) { Forward("tbrEditingTools_ButtonClick", key); }
void Dispatcher::tbrFillPattern_ButtonClick(const std::string& key) { Forward("tbrFillPattern_ButtonClick", key); }
void Dispatcher::tbrFonts_ButtonClick(const std::string& key) { Forward("tbrFonts_ButtonClick", key); }
void Dispatcher::tbrMoreTools_ButtonClick(const std::string& key) { Forward("tbrMoreTools_ButtonClick", key); }
void Dispatcher::tbrOpenFile_ButtonClick(const std::string& key) { Forward("tbrOpenFile_ButtonClick", key); }

}  // namespace kw
