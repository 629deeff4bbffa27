#include "commands/Dispatcher.h"

#include <algorithm>
#include <array>

namespace kw {

Dispatcher::Dispatcher(const EditorContext& context, CommandBracket& commandBracket, Document& openDocument,
                       ToolKit& tools)
    : EditorContext(context), bracket(commandBracket), document(openDocument), toolKit(tools) {
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
  const auto commands = Commands();
  const auto found = std::find_if(commands.begin(), commands.end(), [&](const Command& c) { return c.key == key; });
  if (found == commands.end())
    run([&] { desktop.ShowMessageBox("ToolBar '" + key, "' not implemented yet ..."); });
  else if (found->run != nullptr)
    (this->*found->run)(*found, run);
  run([&] { toolKit.SetCursorFromPressedTool(); });
}

const Dispatcher::Command* Dispatcher::CommandOfVerb(std::int32_t verb) {
  if (verb == 0) return nullptr;
  const auto commands = Commands();
  const auto found = std::find_if(commands.begin(), commands.end(), [&](const Command& c) { return c.verb == verb; });
  return found == commands.end() ? nullptr : &*found;
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
