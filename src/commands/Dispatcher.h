#pragma once

#include <span>
#include <string>
#include <string_view>

#include "components/Desktop.h"
#include "document/EditorProperties.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// Runs the command that a tool bar button's key names. Buttons, shortcuts and start-up all come here.
class Dispatcher {
public:
  // One row of the command table.
  struct Command {
    std::string_view key;
    void (Dispatcher::*run)();  // null: the button group has done the work already
  };

  Dispatcher(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, EditorProperties& editorProperties,
             Zoom& zoomFactor);

  // The commands in the order in which a key is compared with them.
  static std::span<const Command> Commands();

  // Runs the command of that key, compared as it stands, then sets the canvas's cursor from the pressed tool.
  void ToolbarButtonClick(const std::string& key);

  void tbrBasicTools_ButtonClick(const std::string& key);
  void tbrEditingTools_ButtonClick(const std::string& key);
  void tbrFillPattern_ButtonClick(const std::string& key);
  void tbrFonts_ButtonClick(const std::string& key);
  void tbrMoreTools_ButtonClick(const std::string& key);
  void tbrOpenFile_ButtonClick(const std::string& key);

private:
  void Forward(std::string_view procedure, const std::string& key);
  void SetCursorFromPressedTool();

  void Save() { properties.SavePage(); }
  void Clear() { desktop.ShowMessageBox("clear"); }
  void Cut() { desktop.ShowMessageBox("cut"); }
  void Copy() { desktop.ShowMessageBox("copy"); }
  void Paste() { desktop.ShowMessageBox("mnuPasteSelectedArea_Click"); }
  void Undo() { desktop.ShowMessageBox("undo"); }
  void Redo() { desktop.ShowMessageBox("redo"); }
  void ZoomIn() { zoom.ZoomIn(); }
  void ZoomOut() { zoom.ZoomOut(); }
  void ShowHideTools() { properties.LetIsToolboxVisible(!properties.GetIsToolboxVisible()); }
  void ShowHideBackImage() { properties.LetIsToShowBackImage(!properties.GetIsToShowBackImage()); }
  void PrevPage() { StepPage(-1); }
  void NextPage() { StepPage(+1); }
  void Capture() { desktop.ShowMessageBox("Capture"); }
  void NoTools() { desktop.ShowMessageBox("NoTools"); }
  void Signature();
  void Stamp() { form.tbrEditingTools.SetButtonPressed("Stamp", true); }

  void StepPage(int step);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  EditorProperties& properties;
  Zoom& zoom;
};

}  // namespace kw
