#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "components/controls/Control.h"
#include "trap/Procedure.h"

namespace kw {

class ToolKit;

// How a tool takes the mouse on the canvas.
enum class Gesture : std::uint8_t {
  Press,   // acts when the button goes down, without a drag
  Point,   // the same at a point of the page, where a drag would begin
  Stroke,  // acts when the button goes down, and the drag draws on
  Frame,   // acts when the button comes up, on the rectangle that the frame fr was dragged to
};

// Where the mouse was used, in canvas units, and with which keys.
struct ToolUse {
  std::int16_t shift;
  float x;
  float y;
};

// A tool of the tool bar tbrEditingTools.
struct Tool {
  std::string_view key;  // of its button and of the button's picture
  std::string_view toolTip;
  Gesture gesture;
  // Of the canvas while the tool is chosen; Custom: the cursor "<key>.Ico".
  MousePointer pointer;
  int buttonPlace;  // on the tool bar, from 1
  int cursorPlace;  // in the order in which a pressed button is looked for to set the cursor, from 1
  // As statements of the procedure.
  void (*act)(ToolKit& kit, Procedure& run, const ToolUse& use);
};

// Every tool, in the order in which the mouse looks for the pressed one.
std::span<const Tool* const> Tools();
// The tools in one of their other orders.
std::vector<const Tool*> ToolsBy(int Tool::*place);

// The tools. Each stands in the file of its family.
#define KW_TOOLS(TOOL) \
  TOOL(Pen)            \
  TOOL(Rubber)         \
  TOOL(NoTools)        \
  TOOL(Text)           \
  TOOL(Circle)         \
  TOOL(Line)           \
  TOOL(Rectangle)      \
  TOOL(Image)          \
  TOOL(Signature)      \
  TOOL(Chooser)        \
  TOOL(Fill)           \
  TOOL(Stamp)

namespace tools {
#define KW_DECLARE_TOOL(name) extern const Tool name;
KW_TOOLS(KW_DECLARE_TOOL)
#undef KW_DECLARE_TOOL
}  // namespace tools

}  // namespace kw
