#pragma once

#include <memory>
#include <optional>

#include "components/controls/MouseInput.h"
#include "windows/views/ControlView.h"
#include "windows/views/Look.h"
#include "windows/views/MouseSender.h"
#include "windows/views/TextField.h"

namespace kw::windows {

class PictureBoxView;

// The view of a layer or a marker: it has no window, the canvas draws it.
class CanvasItemView final : public ControlView {
public:
  template <class Model>
  CanvasItemView(ViewTree& shared, Model& shown, ControlView* container)
      : ControlView(shared, shown, container), mouse(&shown) {}

  // The canvas draws it.
  static void Draw(const Look& /*look*/, const RECT& /*bounds*/, const Control& /*item*/) {}

  // Handles a mouse event at a point of the canvas, in model pixels.
  void Send(const MouseEvent& event, POINT at);
  // Forgets the press: its release will not come.
  void LosePress() { pressedAt.reset(); }
  void Leave() override;
  void Rescale() override;

private:
  HWND Create(HWND /*parent*/) override { return nullptr; }
  void Show(Aspect aspect) override;
  PictureBoxView* Canvas() const;
  void ShowTyping();

  MouseInput* mouse;
  MouseSender sender;
  std::optional<POINT> pressedAt;
  std::unique_ptr<TextField> field;  // while the user types
};

}  // namespace kw::windows
