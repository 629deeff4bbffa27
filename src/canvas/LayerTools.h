#pragma once

#include <cstdint>

#include "commands/toolbox/ColoursAndLines.h"
#include "components/platform/Desktop.h"
#include "document/DocumentProcedure.h"
#include "document/EditorContext.h"
#include "drawing/PixelRect.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Procedure.h"

namespace kw {

// What the tools of the tool bar lay on the page: each ends in a floating layer.
class LayerTools : private EditorContext {
public:
  LayerTools(const EditorContext& context, ColoursAndLines& coloursAndLines);

  // Makes the pressed tool's layer on the rectangle that the frame fr was dragged to; nothing for a tool that takes no
  // rectangle.
  void MakeFromFrame(Procedure& run);
  // Runs the pressed tool if it is one that works at a point of the page: the colour picker, the fill. False, with
  // nothing done, for another one.
  bool RunAtPoint(Procedure& run, std::int16_t shift, float x, float y);

private:
  struct RectangleTool;
  static const RectangleTool RectangleTools[];

  bool IsPressed(const char* tool) const { return form.tbrEditingTools.ButtonOf(tool).pressed; }
  // What the layers of all tools have in common, in this order.
  void SetCommonProperties(Procedure& run, TransparentPicture& layer);

  PixelRect CanvasPixels() const;
  void MakeSelection(Procedure& run);
  void MakeText(Procedure& run);
  void MakeEllipse(Procedure& run) { MakeFigure(run, FigureKind::Ellipse); }
  void MakeLine(Procedure& run) { MakeFigure(run, FigureKind::Line); }
  void MakeRectangle(Procedure& run) { MakeFigure(run, FigureKind::Rectangle); }
  // Null when no layer can be loaded.
  TransparentPicture* MakeFigure(Procedure& run, FigureKind kind);
  void PlaceImage(Procedure& run);
  void PlaceSignature(Procedure& run);
  // Lays a picture in its proportions into a rectangle of the canvas; null for no picture or no layer.
  TransparentPicture* PlacePicture(Procedure& run, const Bitmap& picture, const PixelRect& within);

  void PickColour(std::int16_t shift, float x, float y);
  void FillRegion(Procedure& run, float x, float y);

  ColoursAndLines& colours;
};

}  // namespace kw
