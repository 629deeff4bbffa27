#pragma once

#include <memory>

#include "canvas/tools/PenStroke.h"
#include "canvas/tools/Tool.h"
#include "commands/toolbox/ColoursAndLines.h"
#include "components/base/Event.h"
#include "document/EditorContext.h"
#include "drawing/PixelRect.h"

namespace kw {

// The things that the tools work with, and their common steps. Most tools end in a floating layer.
class ToolKit : public EditorContext {
public:
  // Adds the tools' buttons and cursors to the form.
  ToolKit(const EditorContext& context, ColoursAndLines& coloursAndLines);

  // The tool whose button is pressed; null if none is.
  const Tool* CurrentTool() const;
  void SetCursorFromPressedTool();

  // The properties that the layers of all tools share, in this order.
  void SetCommonProperties(Procedure& run, TransparentPicture& layer);
  // A layer on the rectangle that the frame fr was dragged to; null if no layer can be loaded.
  std::shared_ptr<TransparentPicture> MakeFigure(Procedure& run, FigureKind kind);
  // Lays a picture in its proportions into a rectangle of the canvas; null for no picture or no layer.
  std::shared_ptr<TransparentPicture> PlacePicture(Procedure& run, const Bitmap& picture, const PixelRect& within);
  PixelRect CanvasPixels() const;

  ColoursAndLines& colours;
  PenStroke stroke;
  // The stamp tool was used at this point of the canvas.
  Event<float, float> StampRequested;
};

}  // namespace kw
