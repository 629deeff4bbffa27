#pragma once

#include <cstdint>
#include <span>

#include "components/base/Bitmap.h"
#include "drawing/Shape.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"

namespace kw {

// A pen stroke under way: a trail of markers, the squares point1, that becomes a floating layer.
class PenStroke {
public:
  PenStroke(EditorForm& editorForm, Layers& layerArray) : form(editorForm), layers(layerArray) {}

  bool IsUnderWay() const { return form.point1(0).Visible(); }
  // Lays the first marker, as large as the line, with its middle at the point.
  void Begin(float x, float y, Colour colour);
  // Lays one more at the point made whole, unless the last one lies there. Past the number of markers that an array
  // holds, what was drawn until then becomes a layer and the stroke goes on from its end.
  void Continue(float x, float y);
  // Loads a layer with a picture of the stroke, as far as it lies on the canvas.
  void MakeLayer();
  // Takes the markers away.
  void Drop();

private:
  EditorForm& form;
  Layers& layers;
};

// The picture of a stroke through these points: 32 bits deep, the colour everywhere, the stroke in its alpha.
Bitmap PictureOfStroke(std::span<const Point> points, double width, Colour colour, std::int32_t pictureWidth,
                       std::int32_t pictureHeight);

}  // namespace kw
