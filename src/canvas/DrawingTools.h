#pragma once

#include <cstdint>
#include <string>

#include "components/Desktop.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Procedure.h"

namespace kw {

// What the mouse does on the canvas: a press is handed to the layer under it or begins a drag, and a drag becomes a
// floating layer. These handlers run at mouse rate and trace nothing.
class DrawingTools {
public:
  DrawingTools(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Layers& layerArray);

  // Positions in canvas units.
  void picCanvas_MouseDown(std::int16_t button, std::int16_t shift, float x, float y);
  void picCanvas_MouseMove(std::int16_t button, std::int16_t shift, float x, float y);
  void picCanvas_MouseUp(std::int16_t button, std::int16_t shift, float x, float y);

  // The stamp tool was used at this point of the canvas.
  Event<float, float> StampRequested;

private:
  bool IsPressed(const char* tool) const { return form.tbrEditingTools.ButtonOf(tool).pressed; }
  // The topmost visible floating layer at a point; 0 where there is none.
  std::int16_t LayerAt(float x, float y) const;
  void GiveToLayer(std::int16_t layer);
  void BeginDrag(float x, float y);
  void LayFirstMarker();
  void LayMarker(float x, float y);
  void ShowHover(float x, float y);
  void DrawRubberBand(float x, float y);
  void EndDrag(Procedure& run);
  void MakeLayer(Procedure& run);
  void EndStroke(Procedure& run);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  Layers& layers;
};

}  // namespace kw
