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
      : CanvasItemView(shared, shown, shown, container) {}
  bool SleepsWhileHidden() const override { return false; }
  ~CanvasItemView() override;

  // The canvas draws it.
  static void Draw(const Look& /*look*/, const RECT& /*bounds*/, const Control& /*item*/) {}

  // Handles a mouse event at a point of the canvas, in model pixels.
  void Send(const MouseEvent& event, POINT at);
  // Forgets the press: its release will not come.
  void LosePress() { pressedAt.reset(); }
  // The child id that the item has to screen readers; its handles have the next ones.
  LONG AccessibleId();
  void Leave() override;
  void Rescale() override;

private:
  CanvasItemView(ViewTree& shared, Control& shown, MouseInput& input, ControlView* container);
  HWND Create(HWND /*parent*/) override { return nullptr; }
  void Show(Aspect aspect) override;
  PictureBoxView* Canvas() const;
  void ShowTyping();
  // Tells screen readers whether it is there, what it is called and whether it is picked.
  void TellReaders(const PictureBoxView& canvas);
  void TellReadersThatItGoes();

  MouseInput* mouse;
  MouseSender sender;
  std::optional<POINT> pressedAt;
  std::unique_ptr<TextField> field;  // while the user types
  struct Told;
  std::unique_ptr<Told> told;  // to screen readers; null for what is no part of the canvas to them
  LONG itemNumber = 0;         // 0: none yet
};

}  // namespace kw::windows
