#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "components/base/Event.h"
#include "components/platform/Desktop.h"
#include "form/EditorForm.h"
#include "layers/LayerDrag.h"
#include "layers/Stacking.h"
#include "trap/Procedure.h"
#include "trap/Trap.h"

namespace kw {

// A drag on the canvas, in canvas units. The canvas handlers write it, the timer tmrMoveLayer reads it.
struct DragState {
  bool m_IsMouseDown = false;
  double m_StartX = 0;
  double m_StartY = 0;
  double m_CurrentX = 0;
  double m_CurrentY = 0;
  // Where the pointer was when the frame fr was placed last.
  double followedX = 0;
  double followedY = 0;
};

// The layer array TransLayers: 0 the template, 1 the page, 2 and up the floating layers, and their stacking order.
class Layers {
public:
  static constexpr std::int16_t PageLayer = 1;

  Layers(Desktop& platform, EditorForm& editorForm, Trap& errorTrap);

  // An empty page layer means that no page is open.
  bool HasPage() const { return form.TransLayers(PageLayer).HasPicture(); }
  // The layer picked last, the one that commands act on. Raises ControlArrayElementDoesNotExist if it is not loaded.
  TransparentPicture& CurrentLayer() const { return form.TransLayers(m_CurrentLayer); }
  std::int16_t CurrentLayerIndex() const { return m_CurrentLayer; }
  void SetCurrentLayer(std::int16_t index) { m_CurrentLayer = index; }
  DragState& Drag() { return drag; }
  LayerDrag& PickedDrag() { return pickedDrag; }
  Stacking& ZOrder() { return stacking; }

  // Loads the next layer as a hidden copy of the template, on top of all, with the present line size. Null if that
  // failed, which is reported by then; past the array's limit it is InvalidControlArrayIndex. While the caller works on
  // it, an error may be reported and the host may open another document: then the layer is on no canvas any more.
  std::shared_ptr<TransparentPicture> NewLayer();
  // Unloads the floating layers and the pen's markers. The page becomes the current layer when the present one goes.
  void UnloadLayerItems();

  // Moves the current layer past the next one that it overlaps; true when there was one.
  bool BringForward();
  bool SendBackward();
  // Brings a layer forward until it is above all that it overlaps. The current layer stays what it is.
  void RaiseAboveOthers(std::int16_t index);
  // Hands a press to a layer, or to none with index 0: it becomes the active one, and the one that was is released.
  void PassPress(std::int16_t index);
  // A user who presses on nothing picks a layer: with the pointer tool it takes a press, else nothing happens.
  void PickByUser(std::int16_t index);
  // The active layer if it is picked; 0 if there is none.
  std::int16_t PickedLayer() const;
  // Hands it a press of the left button at a point of the canvas: with the pointer tool a drag of the layer begins.
  void PassPress(std::int16_t index, float x, float y);
  // The release of that button: the layer lands. A second press on a layer of text that moves nothing begins typing.
  void EndPickedDrag();
  // Shows the canvas's pointer over every layer but that one; with index 0 over every layer.
  void ShowCanvasPointer(std::int16_t exceptOver = 0);
  // Back to rest, whatever the mouse was doing; nothing of it remains on the canvas.
  void AbandonDrag();

  // Enables what needs a page, or disables it, and shows the page's size.
  void TransLayers_Change();
  void TransLayers_Activate(std::int16_t index);
  void TransLayers_Deactivate(std::int16_t index);
  void tmrMoveLayer_Timer();
  void Label1_Click();

  // What the canvas does with a mouse event of a layer or of the background: button, shift and the position on the
  // canvas.
  using CanvasHandler = Event<std::int16_t, std::int16_t, float, float>;
  CanvasHandler CanvasMouseDown;
  CanvasHandler CanvasMouseMove;
  CanvasHandler CanvasMouseUp;
  // Raised before each layer that the layer label makes; the handler deals with the selected area.
  Event<> BeforeLabelLayer;

private:
  // A layer grows with the lines that are typed into it.
  void GrowToText(TransparentPicture& layer);
  void ConnectMouse(TransparentPicture& layer);
  void Forward(const char* procedure, const CanvasHandler& handler, const Control& layer, std::int16_t button,
               std::int16_t shift, float x, float y);
  void AddLabelLayer(Procedure& run);
  // A whole number from 0 up to, but not including, `limit`.
  std::int32_t RandomBelow(double limit);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  Stacking stacking;
  std::minstd_rand generator;
  DragState drag;
  LayerDrag pickedDrag;
  bool isSecondPress = false;
  std::int16_t m_CurrentLayer = PageLayer;
  std::int16_t activeLayer = 0;  // 0: none
};

}  // namespace kw
