#pragma once

#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kw::test {

// A message box that a command shows; without a title it has the application's name.
struct CommandBox {
  std::string prompt;
  std::string title{};
};

// The outcome of one command on the scene (see CommandScene.h), for every way to run it.
struct CommandCase {
  std::string key;
  // The bar that carries the key and the tool tip of its button there; empty if no bar shows one.
  std::string bar{};
  std::string toolTip{};
  // The trace behind the bar's handler and the dispatcher.
  std::vector<std::string> trace{};
  std::vector<CommandBox> boxes{};
  // The engine's operations between the two halves of the bracket.
  std::vector<std::string> operations{};
  // The dialog that asks the user: "Open", "Font", "Printer", that of the system's scanners or the engine's for that
  // operation.
  std::string dialog{};
  // The changes of the scene's state. Everything else stays.
  std::map<std::string, std::string> changes{};
  // The key of another button of the bar to be pressed first, if the scene has this one pressed already.
  std::string insteadOf{};
  // The number by which a host runs it and its text in a menu of the host; 0 and no text for the others.
  int verb = 0;
  std::string menuText{};
};

inline void PrintTo(const CommandCase& row, std::ostream* out) { *out << '"' << row.key << '"'; }

namespace command_cases {

using Names = std::vector<std::string>;

inline const std::string Strip = "tbrBasicTools";
inline const std::string Tools = "tbrEditingTools";
inline const std::string Pattern = "tbrFillPattern";
inline const std::string More = "tbrMoreTools";
inline const std::string NoBar;

inline const std::string PendingWork =
    "Yet to implement : ReCreateUndoFileIndex\r\n"
    "tmrWatchClipBoard_Timer\r\n"
    "imgUndoBuffer(i).Picture = Nothing\r\n"
    "mnuSelectAll_Click\r\n"
    "mnuMergeDown_Click\r\n"
    "PrintImageOnSinglePage PicImgBuffer\r\n"
    "SavePage\r\n"
    "PicImgBuffer.DrawWidth = sldLineHeight.Value";

// Shows a box and does nothing else.
inline CommandCase Notice(const char* key, const std::string& bar, const char* toolTip, const char* prompt) {
  return {.key = key, .bar = bar, .toolTip = toolTip, .boxes = {{prompt}}};
}

// Makes itself the current tool, which its button has done before it runs.
inline CommandCase Tool(const char* key, const char* toolTip) {
  return {.key = key, .bar = Tools, .toolTip = toolTip, .changes = {{"tool", key}}};
}

// The same of a button that the scene has pressed already.
inline CommandCase PressedInTheScene(const std::string& bar, const char* key, const char* toolTip,
                                     const char* insteadOf, const char* group) {
  return {.key = key, .bar = bar, .toolTip = toolTip, .changes = {{group, key}}, .insteadOf = insteadOf};
}

// Runs on the engine's picture, inside the bracket.
inline CommandCase Engine(const char* key, const std::string& bar, const char* toolTip, const Names& operations) {
  return {.key = key,
          .bar = bar,
          .toolTip = toolTip,
          .trace = {"DoPreCommandProcess", "DoPostCommandProcess", "TransLayers_Change", "UpdateAndZoom"},
          .boxes = {{"DoPreCommandProcess"}},
          .operations = operations};
}
inline CommandCase Engine(const char* key, const std::string& bar) { return Engine(key, bar, key, {key}); }

// The same, asking for its parameters.
inline CommandCase Asking(const char* key, const std::string& bar) {
  CommandCase row = Engine(key, bar);
  row.dialog = key;
  return row;
}

// The same with a page of another size: the layer's height, its width, its picture, then the canvas.
inline CommandCase Resizing(const char* key, const char* size) {
  CommandCase row = Asking(key, NoBar);
  row.trace = {"DoPreCommandProcess", "DoPostCommandProcess", "TransLayers_Change", "TransLayers_Change",
               "TransLayers_Change",  "UpdateAndZoom",        "picCanvas_Resize",   "SetScrollBalValues"};
  row.changes = {{"size", size}};
  return row;
}

// Turns from page 2 of 3 to another one. No question comes, since nothing counts what was saved.
inline CommandCase PageTurn(const char* key, const char* toolTip, const char* page) {
  return {.key = key,
          .bar = Strip,
          .toolTip = toolTip,
          .trace = {"PageIndex_Change", "Get IsSaveButtonEnabled", "Get IsFileChanged", "UnloadLayerItems",
                    "DoPostCommandProcess", "TransLayers_Change", "UpdateAndZoom"},
          .changes = {{"page", page}, {key, "off"}, {"Undo", "off"}, {"Redo", "off"}}};
}

inline CommandCase Verb(int number, const char* menuText, CommandCase row) {
  row.verb = number;
  row.menuText = menuText;
  return row;
}

inline std::vector<CommandCase> All() {
  return {
      {.key = "Save", .bar = Strip, .toolTip = "Save File", .trace = {"SavePage"}},
      {.key = "Print", .bar = Strip, .toolTip = "Print"},
      {.key = "PrinterSetup", .bar = Strip, .toolTip = "Printer Setup", .dialog = "Printer"},
      Notice("Clear", Strip, "Clear", "clear"),
      Notice("Cut", NoBar, "", "cut"),
      Notice("Copy", Strip, "Copy", "copy"),
      Notice("Paste", Strip, "Paste", "mnuPasteSelectedArea_Click"),
      Notice("Undo", Strip, "Undo", "undo"),
      Notice("Redo", Strip, "Redo", "redo"),
      {.key = "ZoomIn",
       .bar = Strip,
       .toolTip = "Zoom In",
       .trace = {"ZoomIn", "Let ZoomFactor", "UpdateAndZoom"},
       .changes = {{"zoom", "150 %"}}},
      {.key = "ZoomOut",
       .bar = Strip,
       .toolTip = "Zoom Out",
       .trace = {"ZoomOut", "Let ZoomFactor", "UpdateAndZoom"},
       .changes = {{"zoom", "90 %"}}},
      {.key = "ShowHideTools",
       .bar = Strip,
       .toolTip = "Show/Hide Tools",
       .trace = {"Get IsToolboxVisible", "Let IsToolboxVisible", "Get IsEditable"},
       .changes = {{"tool box", "hidden"}}},
      // The second line of the trace is required as it is.
      {.key = "ShowHideBackImage",
       .bar = Strip,
       .toolTip = "Show/Hide Background Image",
       .trace = {"Get IsToShowBackImage", "Let IsToolboxVisible", "UpdateAndZoom"},
       .changes = {{"background", "shown"}}},
      PageTurn("PrevPage", "Previous Page", "1"),
      PageTurn("NextPage", "Next Page", "3"),
      Verb(1, "&Scanner Setup...",
           {.key = "SelectScanner",
            .bar = Strip,
            .toolTip = "Scanner Setup",
            .trace = {"SelectScanner"},
            .dialog = "Select Source"}),
      Verb(2, "&Acquire Image from Scanner...",
           {.key = "Acquire", .bar = Strip, .toolTip = "Acquire Image from Scanner", .trace = {"Acquire"}}),
      Verb(3, "&Capture", Notice("Capture", NoBar, "", "Capture")),
      Verb(4, "&Rotate...", Resizing("Rotate", "Size: 16 x 24")),
      Verb(5, "Resi&ze...", Resizing("Resize", "Size: 12 x 8")),
      Verb(6, "&Horizontal Flip", Engine("HorizontalFlip", NoBar)),
      Verb(7, "&Vertical Flip", Engine("VerticalFlip", NoBar)),
      Verb(8, "&Flip Both Ways", Engine("Flip", NoBar, "", {"HorizontalFlip", "VerticalFlip"})),
      Verb(9, "&Erode", Engine("Erode", NoBar)),
      {.key = "NoTools",
       .bar = Tools,
       .toolTip = "Selection",
       .boxes = {{"NoTools"}},
       .changes = {{"tool", "NoTools"}}},
      Tool("Chooser", "Color Picker"),
      Tool("Fill", "Fill Color"),
      Tool("Pen", "Pen"),
      Tool("Text", "Text"),
      Tool("Line", "Line"),
      PressedInTheScene(Tools, "Rectangle", "Rectangle", "Line", "tool"),
      Tool("Circle", "Circle"),
      Tool("Rubber", "Rubber"),
      Tool("Image", "Image"),
      {.key = "Signature",
       .bar = Tools,
       .toolTip = "Signature",
       .trace = {"tbrFillPattern_ButtonClick", "ToolbarButtonClick"},
       .changes = {{"tool", "Signature"}, {"pattern", "NoFillInside"}}},
      Tool("Stamp", "Stamp"),
      {.key = "NoFillInside", .bar = Pattern, .toolTip = "No Fill Inside", .changes = {{"pattern", "NoFillInside"}}},
      PressedInTheScene(Pattern, "FillInside", "Fill Inside", "NoFillInside", "pattern"),
      {.key = "FontSettings", .bar = "tbrFonts", .toolTip = "Font Settings", .dialog = "Font"},
      Engine("Blur", More),
      Asking("Colorize", More),
      Engine("Contrast", More),
      Engine("Darken", More),
      Engine("DecreaseBpp", More, "Decrease Bpp", {"DecreaseBpp"}),
      Engine("Dilate", More),
      Engine("Dither", More),
      Engine("Edge", More),
      Engine("Emboss", More),
      Engine("GrayScale", More, "Grayscale", {"GrayScale"}),
      Engine("IncreaseBpp", More, "Increase Bpp", {"IncreaseBpp"}),
      Engine("Invert", More),
      Engine("Lighten", More),
      Asking("Option", More),
      Engine("Soften", More),
      Engine("Sharpen", More),
      Asking("Threshold", More),
      {.key = "Open",
       .bar = "tbrOpenFile",
       .toolTip = "Open File",
       .trace = {"OpenFile", "UnloadLayerItems", "Let IsFileChanged", "TransLayers_Change", "PageIndex_Change",
                 "UnloadLayerItems", "DoPostCommandProcess", "TransLayers_Change", "UpdateAndZoom",
                 "DoPostCommandProcess", "TransLayers_Change", "UpdateAndZoom"},
       .boxes = {{PendingWork}},
       .dialog = "Open",
       .changes = {{"page", "1"},
                   {"Save", "off"},
                   {"PrevPage", "off"},
                   {"NextPage", "off"},
                   {"Undo", "off"},
                   {"Redo", "off"}}},
  };
}

}  // namespace command_cases

// Every command in the order in which a key is compared with them.
inline std::vector<CommandCase> CommandCases() { return command_cases::All(); }

// Keys that name no command: unknown, in another case, with a blank, empty.
inline std::vector<CommandCase> OtherKeys() {
  std::vector<CommandCase> rows;
  for (const char* key : {"Merge", "save", "OPEN", "noTools", "Save ", " ", ""}) {
    rows.push_back({.key = key,
                    .bar = {},
                    .toolTip = {},
                    .boxes = {{"ToolBar '" + std::string(key), "' not implemented yet ..."}}});
  }
  return rows;
}

// The pointer over the canvas while a tool is pressed: its number and, for 99, the icon.
inline std::string PointerOf(const std::string& tool) {
  if (tool == "NoTools") return "0";
  for (const char* crossing : {"Circle", "Image", "Line", "Rectangle", "Signature"}) {
    if (tool == crossing) return "2";
  }
  return "99 " + tool + ".Ico";
}

// Where two states differ, as "what: is, not expected".
inline std::vector<std::string> Differences(const std::map<std::string, std::string>& state,
                                            const std::map<std::string, std::string>& expected) {
  std::vector<std::string> differences;
  for (const auto& [what, value] : expected) {
    const auto found = state.find(what);
    const std::string is = found == state.end() ? "nothing" : found->second;
    if (is == value) continue;
    std::string difference = what;
    for (const std::string& part : {std::string(": "), is, std::string(", not "), value}) difference += part;
    differences.push_back(difference);
  }
  return differences;
}

// The state after a command.
inline std::map<std::string, std::string> After(const CommandCase& row, std::map<std::string, std::string> before) {
  for (const auto& [what, value] : row.changes) before[what] = value;
  before["pointer"] = PointerOf(before["tool"]);
  return before;
}

}  // namespace kw::test
