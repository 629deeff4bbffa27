#pragma once

#include <cstdint>
#include <deque>

#include "canvas/tools/ToolKit.h"
#include "components/platform/Desktop.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Procedure.h"

namespace kw {

// The mouse on the canvas: a press is handed to the layer under it or begins a drag, and a drag becomes a
// floating layer. These handlers run at mouse rate and trace nothing.
class DrawingTools : private EditorContext {
public:
  DrawingTools(const EditorContext& context, ToolKit& tools);

  // Positions in canvas units.
  void picCanvas_MouseDown(std::int16_t button, std::int16_t shift, float x, float y);
  void picCanvas_MouseMove(std::int16_t button, std::int16_t shift, float x, float y);
  void picCanvas_MouseUp(std::int16_t button, std::int16_t shift, float x, float y);

private:
  struct Move {
    std::int16_t button;
    std::int16_t shift;
    float x;
    float y;
  };

  // Null if no tool is chosen.
  const Tool* CurrentTool(Procedure& run) const;
  // Handles the messages that wait, unless that is under way: moves may come faster than they are handled, and would
  // nest.
  void DoEvents(Procedure& run);
  // Handles the moves that came so far, in their order.
  void CatchUp(Procedure& run);
  void MoveTo(Procedure& run, const Move& move);
  void FinishStroke(Procedure& run);
  // The topmost visible floating layer at a point; 0 if there is none.
  std::int16_t LayerAt(float x, float y) const;
  void BeginDrag(float x, float y);
  // The pointer tool marks the layer under the mouse; with another one nothing is marked.
  void ShowHover(bool isPointer, float x, float y);
  void DrawRubberBand(float x, float y);
  void EndDrag(Procedure& run, const Tool* tool);

  ToolKit& kit;
  std::deque<Move> moves;  // that are not handled yet
  bool isInEvents = false;
  bool isStrokeEnding = false;  // its button is up, its layer not made yet
};

}  // namespace kw
