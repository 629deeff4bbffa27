#pragma once

#include <windows.h>

#include <memory>

#include "components/UserControl.h"
#include "drawing/Scale.h"
#include "windows/ControlView.h"

namespace kw::windows {

// The view that suits the model's type; null for a model without a look.
std::unique_ptr<ControlView> MakeView(Pane& pane, Control& model, ControlView* container);

std::unique_ptr<ControlView> MakeRootView(Pane& pane, UserControl& root, HWND parent, const RECT& position);

// What drawing a control without a window needs.
struct Look {
  HDC context;
  const Images& images;
  const Scale& scale;
};

// Draws what the model holds, all visible levels, with the model's upper left corner at (0, 0) of the context.
void DrawChildren(const Look& look, const Control& holder);

}  // namespace kw::windows
