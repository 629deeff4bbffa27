#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "canvas/tools/ToolKit.h"
#include "components/base/Event.h"
#include "components/engine/KWPicEd.h"
#include "components/platform/Desktop.h"
#include "document/CommandBracket.h"
#include "document/Document.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Procedure.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// Runs the command that a tool bar button's key names. Buttons, shortcuts and start-up all come here.
class Dispatcher : private EditorContext {
public:
  // One row of the command table.
  struct Command {
    std::string_view key;
    // Runs the command as statements of the procedure. Null: the button group has done the work already.
    void (Dispatcher::*run)(const Command& row, Procedure& run);
    // The engine operations that run between the two halves of the bracket; unused ones are empty.
    std::array<std::string_view, 2> operations{};
    // For the host, which may run it by a number and offer it in a menu by that text; 0 and no text for the others.
    std::int32_t verb = 0;
    std::string_view menuText{};
  };

  // Everything passed in must outlive the dispatcher.
  Dispatcher(const EditorContext& context, CommandBracket& commandBracket, Document& openDocument, ToolKit& tools);

  // The commands in the order in which a key is compared with them.
  static std::span<const Command> Commands();
  // The command that a host runs by that number; null for none.
  static const Command* CommandOfVerb(std::int32_t verb);

  // Runs the command of that key, compared as it stands, then sets the canvas's cursor from the pressed tool.
  void ToolbarButtonClick(const std::string& key);
  // The commands of the devices, which lie above this room.
  Event<> PrinterSetup;
  Event<> SelectScanner;
  Event<> Acquire;

  // For other handlers, while the font dialog is up.
  bool IsFontDialogUp() const { return isFontDialogUp; }

  void tbrBasicTools_ButtonClick(const std::string& key);
  void tbrEditingTools_ButtonClick(const std::string& key);
  void tbrFillPattern_ButtonClick(const std::string& key);
  void tbrFonts_ButtonClick(const std::string& key);
  void tbrMoreTools_ButtonClick(const std::string& key);
  void tbrOpenFile_ButtonClick(const std::string& key);

private:
  void Forward(std::string_view procedure, const std::string& key);

  void Save(const Command& row, Procedure& run);
  void Print(const Command& row, Procedure& run);
  void RaisePrinterSetup(const Command& row, Procedure& run);
  void RaiseSelectScanner(const Command& row, Procedure& run);
  void RaiseAcquire(const Command& row, Procedure& run);
  // A box with the row's key in small letters.
  void ShowSmallKey(const Command& row, Procedure& run);
  void ShowKey(const Command& row, Procedure& run);
  void Paste(const Command& row, Procedure& run);
  void ZoomIn(const Command& row, Procedure& run);
  void ZoomOut(const Command& row, Procedure& run);
  void ShowHideTools(const Command& row, Procedure& run);
  void ShowHideBackImage(const Command& row, Procedure& run);
  void PrevPage(const Command& row, Procedure& run);
  void NextPage(const Command& row, Procedure& run);
  void RunOperations(const Command& row, Procedure& run);
  void ChangeDepth(const Command& row, Procedure& run);
  void Signature(const Command& row, Procedure& run);
  void Stamp(const Command& row, Procedure& run);
  void FontSettings(const Command& row, Procedure& run);
  void Open(const Command& row, Procedure& run);

  void StepPage(Procedure& run, int step);
  void AskForFile(OpenDialog& dialog);

  CommandBracket& bracket;
  Document& document;
  ToolKit& toolKit;
  bool isFontDialogUp = false;
};

}  // namespace kw
