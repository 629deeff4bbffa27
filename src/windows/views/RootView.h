#pragma once

#include "components/controls/UserControl.h"
#include "windows/views/PaintedView.h"

namespace kw::windows {

// The view of the form itself: the window that contains all others.
class RootView final : public PaintedView {
public:
  // `position` is the window's position in `parent`.
  RootView(ViewTree& shared, UserControl& shown, HWND parent, const RECT& position)
      : PaintedView(shared, shown, nullptr, nullptr, &shown), root(shown), host(parent), start(position) {}

  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  // To be called when all windows are made.
  void LetHostHear() const;

private:
  HWND Create(HWND parent) override;
  void Show(Aspect aspect) override;
  void ShowEnabled() override;
  void Paint(HDC context, const RECT& client) override;
  bool Scroll(WPARAM wheel);

  UserControl& root;
  HWND host;
  RECT start;
  int wheelRest = 0;  // wheel delta that did not yet suffice for a pixel
};

}  // namespace kw::windows
