#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

#include "canvas/DrawingTools.h"
#include "commands/Dispatcher.h"
#include "commands/Keyboard.h"
#include "commands/toolbox/ColourPicker.h"
#include "commands/toolbox/ColoursAndLines.h"
#include "commands/toolbox/ToolBarStrip.h"
#include "commands/toolbox/ToolBox.h"
#include "components/engine/KWPicEd.h"
#include "components/platform/Desktop.h"
#include "control/PropertyBag.h"
#include "devices/ClipboardWatch.h"
#include "devices/printing/Printing.h"
#include "devices/scanning/Scanning.h"
#include "document/CommandBracket.h"
#include "document/Document.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "members/EditorEvents.h"
#include "stamps/StampTool.h"
#include "trap/Trap.h"
#include "view/Borders.h"
#include "view/Scrolling.h"
#include "view/Zoom.h"

namespace kw {

// The image annotation editor: one visual control without a window of its own. A container drives it by the procedures
// below and, through views on the tree under Root(), shows it and hands it what the user does.
//
// Every procedure traces its name and traps its errors (see Procedure); the only exception that leaves one is that of
// a failed report. All calls come on one thread.
class KwEditorLayers final : public EditorState {
public:
  // Both arguments must outlive the control. UserControl_Initialize or BeginDesign has to follow before anything else.
  KwEditorLayers(Desktop& platform, EditorEvents& container);

  // Life: initialised once, then the persisted properties are read unless the control is a new one, any number
  // of notifications follow through Root(), terminated once.
  void UserControl_Initialize();
  void UserControl_ReadProperties(PropertyBag& bag);
  // False if a value is missing for lack of memory, which is reported except in design mode.
  bool UserControl_WriteProperties(PropertyBag& bag);
  void UserControl_Terminate();
  // Whether a property is one of those that are kept.
  static bool IsPersisted(PropertyId property);

  // Design mode: the container designs the form on which the control lies, and nobody works with it. It traces and
  // reports nothing, its timers rest, and the clipboard is left alone. The values of properties are kept, shown as far
  // as that needs no file, and persisted. A control that has not been initialised looks as if it had been.
  void BeginDesign();
  // UserControl_Initialize must follow if it has not run yet, then LetDesigned.
  void EndDesign();
  bool IsDesigned() const { return trap.IsAtRest(); }
  // Assigns a property in design mode.
  using PropertyValue = std::variant<types::Boolean, types::Integer, types::Text>;
  void Design(PropertyId property, const PropertyValue& value);
  // The value that a persisted property was given in design mode, else the one that it has.
  PropertyValue Designed(PropertyId property, const PropertyValue& present) const;
  // Assigns what design mode kept by the property procedures: the persisted properties in the order of loading, then
  // the others.
  void LetDesigned();

  // Paths are UTF-8 and may be long.
  void OpenFile(const std::string& fPath);

  // Whether a host may run a command by its number now, as Dispatcher::Command has it: with a page that can be edited,
  // and while the control is doing nothing else.
  bool TakesVerbs() const;

  // Kept for the host; the control does not use it.
  std::string SaveFilePath;

  UserControl& Root() { return form.editor; }

  // The rooms, for tests and diagnosis.
  EditorForm& Form() { return form; }
  Document& OpenedDocument() { return document; }
  Zoom& ZoomRoom() { return zoom; }
  Layers& LayerRoom() { return layers; }
  Dispatcher& CommandRoom() { return dispatcher; }
  Trap& ErrorTrap() { return trap; }
  // The engine that holds the current page.
  KWPicEd& Engine() { return KWPic; }

  // Properties; those that the editor itself uses, too, are in EditorState.
  bool GetEnabled();
  void LetEnabled(bool value);
  bool GetIsToLightenBackImage();
  void LetIsToLightenBackImage(bool value);
  void LetSignatureFilePath(const std::string& path);
  void LetBGImage(const std::string& path);
  bool GetIsOpenButtonVisible();
  void LetIsOpenButtonVisible(bool value);
  bool GetIsToSaveAsMultiPageFile();
  void LetIsToSaveAsMultiPageFile(bool value);
  bool GetIsToAllowChooseColor();
  void LetIsToAllowChooseColor(bool value);
  // At least 5; what is not greater is stored as 5.
  std::int16_t GetMaxUndoLevels();
  void LetMaxUndoLevels(std::int16_t value);
  // Of the thread, not of the one control; ends with a backslash if the trace is to lie inside the folder.
  std::string GetAppDir();
  void LetAppDir(const std::string& value);

private:
  bool m_IsToLightenBackImage = false;
  bool m_IsToSaveAsMultiPageFile = false;
  std::int16_t m_MaxUndoLevels = 5;
  static std::int16_t UndoLevelsOf(std::int16_t value);
  bool isInitialised = false;
  std::map<PropertyId, PropertyValue> designed;

  void UserControl_Paint();
  void UserControl_Resize();
  void UserControl_KeyDown(std::int16_t keyCode, std::int16_t shift);
  void UserControl_KeyPress(std::int16_t keyAscii);
  void UserControl_KeyUp(std::int16_t keyCode, std::int16_t shift);
  void tmrDefaultToolsSelection_Timer();
  void pictbrBasicToolsContainer_DblClick(std::int16_t button);
  void mnuPasteSelectedArea_Click();
  void Label2_Click();
  void lineRightBorderForSelectedArea_MouseUp();

  void KeepDesigned(PropertyId property, const PropertyValue& value);
  void ShowDesign();
  void ReadDesign(PropertyBag& bag);
  void LetEach(const std::map<PropertyId, PropertyValue>& values);
  void SetStartUpValues();
  void ConnectEvents();
  void RunStartUpSteps(Procedure& run);
  void RemoveScratchFiles(Procedure& run);
  void ReCreateUndoFileIndex() {}  // the hook behind which a history can be built

  Desktop& desktop;
  EditorForm form;
  Trap trap;
  KWPicEd KWPic;
  KWPicEd KWPicTempBuffer;
  Layers layers;
  Zoom zoom;
  Scrolling scrolling;
  Borders borders;
  Openings openings;
  EditorContext context;
  CommandBracket bracket;
  Document document;
  ToolBarStrip strip;
  ToolBox toolBox;
  ColoursAndLines coloursAndLines;
  ColourPicker colourPicker;
  ToolKit toolKit;
  Dispatcher dispatcher;
  Keyboard keyboard;
  DrawingTools drawingTools;
  ClipboardWatch clipboardWatch;
  StampTool stampTool;
  Printing printing;
  Scanning scanning;
};

}  // namespace kw
