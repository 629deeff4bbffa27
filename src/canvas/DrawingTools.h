#pragma once

#include <cstdint>
#include <deque>

#include "canvas/LayerTools.h"
#include "canvas/PenStroke.h"
#include "components/platform/Desktop.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Procedure.h"

namespace kw {

// What the mouse does on the canvas: a press is handed to the layer under it or begins a drag, and a drag becomes a
// floating layer. These handlers run at mouse rate and trace nothing.
class DrawingTools : private EditorContext {
public:
  DrawingTools(const EditorContext& context, LayerTools& layerMaker);

  // Positions in canvas units.
  void picCanvas_MouseDown(std::int16_t button, std::int16_t shift, float x, float y);
  void picCanvas_MouseMove(std::int16_t button, std::int16_t shift, float x, float y);
  void picCanvas_MouseUp(std::int16_t button, std::int16_t shift, float x, float y);

  // The stamp tool was used at this point of the canvas.
  Event<float, float> StampRequested;

private:
  struct Move {
    std::int16_t button;
    std::int16_t shift;
    float x;
    float y;
  };

  bool IsPressed(const char* tool) const { return form.tbrEditingTools.ButtonOf(tool).pressed; }
  // The pen, and the rubber, which draws in the background colour.
  bool IsStrokeTool() const { return IsPressed("Pen") || IsPressed("Rubber"); }
  // What waits is handled, unless that is under way: moves may come faster than they are handled, and would nest.
  void DoEvents(Procedure& run);
  // Handles the moves that came so far, in their order.
  void CatchUp(Procedure& run);
  void MoveTo(Procedure& run, const Move& move);
  void FinishStroke(Procedure& run);
  // The topmost visible floating layer at a point; 0 where there is none.
  std::int16_t LayerAt(float x, float y) const;
  void BeginDrag(float x, float y);
  void BeginStroke(float x, float y);
  void ContinueStroke(float x, float y);
  void ShowHover(float x, float y);
  void DrawRubberBand(float x, float y);
  void EndDrag(Procedure& run);

  LayerTools& layerTools;
  PenStroke stroke;
  std::deque<Move> moves;  // that are not handled yet
  bool isInEvents = false;
  bool isStrokeEnding = false;  // its button is up, its layer not made yet
};

}  // namespace kw
