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

// A layer or a marker: it shows as a part of the canvas that holds it.
class CanvasItemView final : public ControlView {
public:
  template <class Model>
  CanvasItemView(ViewTree& shared, Model& shown, ControlView* container)
      : ControlView(shared, shown, container), mouse(&shown) {}

  // The canvas draws it.
  static void Draw(const Look& /*look*/, const RECT& /*bounds*/, const Control& /*item*/) {}

  // A mouse event at that point of the canvas, in the models' pixels.
  void Send(const MouseEvent& event, POINT at);
  // What was pressed will not be released here.
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
  std::unique_ptr<TextField> field;  // while it is typed into
};

}  // namespace kw::windows
