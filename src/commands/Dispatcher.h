#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "components/Desktop.h"
#include "components/Event.h"
#include "components/PictureEngine.h"
#include "document/CommandBracket.h"
#include "document/Document.h"
#include "document/EditorProperties.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// Runs the command that a tool bar button's key names. Buttons, shortcuts and start-up all come here.
class Dispatcher {
public:
  // One row of the command table.
  struct Command {
    std::string_view key;
    void (Dispatcher::*run)(const Command& row);  // null: the button group has done the work already
    // The engine operations that run between the two halves of the bracket; unused ones are empty.
    std::array<std::string_view, 2> operations{};
  };

  struct Rooms {
    Desktop& desktop;
    EditorForm& form;
    Trap& trap;
    EditorProperties& properties;
    Layers& layers;
    Zoom& zoom;
    CommandBracket& bracket;
    Document& document;
    PictureEngine& KWPic;
  };

  // What is referred to must outlive the dispatcher.
  explicit Dispatcher(const Rooms& rooms);

  // The commands in the order in which a key is compared with them.
  static std::span<const Command> Commands();

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
  void SetCursorFromPressedTool();

  void Save(const Command& row);
  void Print(const Command& row);
  void RaisePrinterSetup(const Command& row);
  void RaiseSelectScanner(const Command& row);
  void RaiseAcquire(const Command& row);
  // A box with the row's key in small letters.
  void ShowSmallKey(const Command& row);
  void ShowKey(const Command& row);
  void Paste(const Command& row);
  void ZoomIn(const Command& row);
  void ZoomOut(const Command& row);
  void ShowHideTools(const Command& row);
  void ShowHideBackImage(const Command& row);
  void PrevPage(const Command& row);
  void NextPage(const Command& row);
  void RunOperations(const Command& row);
  void ChangeDepth(const Command& row);
  void Signature(const Command& row);
  void Stamp(const Command& row);
  void FontSettings(const Command& row);
  void Open(const Command& row);

  void StepPage(int step);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  EditorProperties& properties;
  Layers& layers;
  Zoom& zoom;
  CommandBracket& bracket;
  Document& document;
  PictureEngine& KWPic;
  bool isFontDialogUp = false;
};

}  // namespace kw
