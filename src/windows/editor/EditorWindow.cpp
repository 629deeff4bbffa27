#include "windows/editor/EditorWindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "windows/base/Gdi.h"
#include "windows/base/Mouse.h"
#include "windows/base/Owned.h"
#include "windows/base/ScreenScale.h"
#include "windows/editor/FormViews.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

// The scale at which a form fills the width. At least its own: below that, stretching keeps thin lines better. Limited,
// so that drawing does not take long.
Scale ScaleFor(int width, int ownWidth) {
  constexpr std::int32_t Largest = 3 * Scale::ModelDpi;
  return Scale(std::clamp(MulDiv(width, Scale::ModelDpi, ownWidth), Scale::ModelDpi, Largest));
}

}  // namespace

EditorWindow::EditorWindow(UserControl& root, HWND parent, const RECT& position, std::optional<Scale> scale)
    : tree(std::make_shared<ViewTree>(root, scale.value_or(ScaleOf(parent)), std::make_unique<FormViews>())) {
  tree->Open(parent, position);
}

EditorWindow::~EditorWindow() { Close(); }

HWND EditorWindow::Handle() const { return tree->Window(); }

void EditorWindow::Rescale(const Scale& scale) {
  const std::shared_ptr<ViewTree> kept = tree;
  kept->Rescale(scale);
}

void EditorWindow::Resize(const RECT& position) const {
  if (Handle() == nullptr) return;
  SetWindowPos(Handle(), nullptr, position.left, position.top, WidthOf(position), HeightOf(position),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void EditorWindow::Show(bool isVisible) const {
  if (Handle() != nullptr) ShowWindow(Handle(), isVisible ? SW_SHOWNA : SW_HIDE);
}

void EditorWindow::AllowInput(bool isAllowed) {
  const std::shared_ptr<ViewTree> kept = tree;
  kept->AllowInput(isAllowed);
}

void EditorWindow::HoldWith(std::function<std::shared_ptr<void>()> hold) { tree->HoldWith(std::move(hold)); }

void EditorWindow::OnKeys(std::function<void()> listener) { tree->OnKeys(std::move(listener)); }

bool EditorWindow::WantsKey(WPARAM key) const { return tree->WantsKey(key); }

bool EditorWindow::IsUserAtWork() const { return tree->IsUserAtWork(); }

void EditorWindow::Close() {
  const std::shared_ptr<ViewTree> kept = tree;
  kept->Close();
}

bool EditorWindow::TranslateAccelerator(MSG& message) {
  if (message.message != WM_KEYDOWN || !tree->IsOpen() || !tree->TakesInput()) return false;
  const std::shared_ptr<ViewTree> kept = tree;
  const ViewTree::Message underWay(*kept);
  const HWND window = kept->Window();
  if (message.hwnd != window && IsChild(window, message.hwnd) == FALSE) return false;
  const std::int16_t shift = ShiftState();
  if (message.wParam == VK_TAB && (shift & ~Mouse::ShiftKey) == 0) return kept->MoveFocus(shift != 0);
  if (!kept->WantsKeyAt(message.hwnd, message.wParam)) return false;
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return true;
}

bool EditorWindow::EnterByTab(bool isBackward) {
  const std::shared_ptr<ViewTree> kept = tree;
  return kept->IsOpen() && kept->TakesInput() && kept->MoveFocus(isBackward);
}

void EditorWindow::Draw(UserControl& root, HDC context, const RECT& bounds) {
  const auto ownWidth = static_cast<int>(std::lround(ToPixels(root.Width())));
  const auto ownHeight = static_cast<int>(std::lround(ToPixels(root.Height())));
  if (ownWidth <= 0 || ownHeight <= 0) return;
  const Scale scale = ScaleFor(WidthOf(bounds), ownWidth);
  const int width = scale.ToDevice(ownWidth);
  const int height = scale.ToDevice(ownHeight);
  // Outlives the frame, whose context may still hold it if the drawing fails.
  const OwnedGdiObject font(CreateCaptionFont(scale));
  BackBuffer frame;
  if (!frame.Reserve(width, height)) return;
  const Images images(scale);
  const HGDIOBJ before = SelectObject(frame.Context(), font.get());
  FillWithFace(frame.Context(), {0, 0, width, height});
  DrawChildren({frame.Context(), images, scale}, root);
  SelectObject(frame.Context(), before);
  const int mode = SetStretchBltMode(context, HALFTONE);
  SetBrushOrgEx(context, 0, 0, nullptr);
  StretchBlt(context, bounds.left, bounds.top, WidthOf(bounds), HeightOf(bounds), frame.Context(), 0, 0, width, height,
             SRCCOPY);
  SetStretchBltMode(context, mode);
}

}  // namespace kw::windows
