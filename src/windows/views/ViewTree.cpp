#include "windows/views/ViewTree.h"

#include <windowsx.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/base/Texts.h"
#include "scene/CanvasItems.h"
#include "windows/base/CommonControls.h"
#include "windows/base/Gdi.h"
#include "windows/base/Module.h"
#include "windows/base/Text.h"
#include "windows/views/RootView.h"

namespace kw::windows {

void ViewTree::Open(HWND parent, const RECT& position) {
  const CommonControls controls;
  OwnWindowClass::Register();
  // Closes the tree if Open throws.
  struct Opening {
    ViewTree* tree;
    explicit Opening(ViewTree& opened) : tree(&opened) {}
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;
    ~Opening() {
      if (tree != nullptr) tree->Close();
    }
  };
  Opening opening(*this);
  isMade = true;
  font = CreateCaptionFont(scale);
  auto made = std::make_unique<RootView>(*this, *root, parent, position);
  RootView* const opened = made.get();
  views[root] = std::move(made);
  rootView = opened;
  rootView->Open();
  if (rootView->Handle() == nullptr) Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
  MakeViewsIn(*root, rootView);
  CompleteViews(*root);
  if (IsOpen()) opened->LetHostHear();
  opening.tree = nullptr;
}

void ViewTree::Close() {
  if (!std::exchange(isMade, false)) return;
  ControlView* const closing = std::exchange(rootView, nullptr);
  // Detach first: messages sent by dying windows must not reach the models.
  for (const auto& [model, view] : views) view->Detach();
  // Destroy the tool tip window before the windows that it watches, because it keeps data about them.
  if (toolTips != nullptr) DestroyWindow(std::exchange(toolTips, nullptr));
  if (closing != nullptr) closing->Destroy();
  for (auto& [model, view] : views) Retire(std::move(view));
  views.clear();
  windows.clear();
  DeleteObject(font);
}

void ViewTree::AllowInput(bool isAllowed) {
  if (isInputAllowed == isAllowed) return;
  isInputAllowed = isAllowed;
  if (IsOpen()) rootView->Changed(Aspect::Enabled);
}

void ViewTree::Rescale(const Scale& newScale) {
  if (!IsOpen() || newScale.Dpi() == scale.Dpi()) return;
  scale = newScale;
  Refresh();
}

void ViewTree::Refresh() {
  const Message underWay(*this);
  const HFONT oldFont = std::exchange(font, CreateCaptionFont(scale));
  const auto oldImages = std::exchange(images, std::make_unique<Images>(scale));
  RescaleViews(*root);
  DeleteObject(oldFont);
}

void ViewTree::RescaleViews(const Control& model) {
  if (ControlView* view = ViewOf(model); view != nullptr && !view->IsAsleep()) view->Rescale();
  for (const Control* child : model.Children()) RescaleViews(*child);
}

void ViewTree::Add(Control& model, ControlView* container) {
  if (!IsOpen() || container->IsAsleep()) return;
  // Items without a window need no system classes, and activating them would be too slow for the markers of a stroke.
  std::optional<CommonControls> controls;
  if (!IsCanvasItem(model)) controls.emplace();
  MakeViews(model, container);
  if (const ControlView* view = ViewOf(model)) view->ShowOrder();
  CompleteViews(model);
}

void ViewTree::MakeViews(Control& model, ControlView* container) {
  std::unique_ptr<ControlView> made = factory->MakeView(*this, model, container);
  if (made == nullptr) return;
  ControlView* const view = made.get();
  views[&model] = std::move(made);
  if (view->SleepsWhileHidden() && !model.Visible()) return;
  view->Open();
  MakeViewsIn(model, view);
}

// From front to back, since a new window lies behind its fellows.
void ViewTree::MakeViewsIn(Control& holder, ControlView* container) {
  const std::vector<Control*>& children = holder.Children();
  std::for_each(children.rbegin(), children.rend(), [&](Control* child) { MakeViews(*child, container); });
}

void ViewTree::Wake(ControlView& view) {
  // What was made before something failed goes again.
  struct Waking {
    ViewTree& tree;
    ControlView* view;
    Waking(ViewTree& own, ControlView& woken) : tree(own), view(&woken) {}
    Waking(const Waking&) = delete;
    Waking& operator=(const Waking&) = delete;
    ~Waking() {
      if (view != nullptr) tree.Unmake(*view);
    }
  };
  const CommonControls controls;
  Waking waking(*this, view);
  view.Open();
  view.ShowOrder();
  MakeViewsIn(view.Model(), &view);
  CompleteViews(view.Model());
  LayOut();
  waking.view = nullptr;
}

void ViewTree::Unmake(ControlView& view) {
  for (Control* child : view.Model().Children()) Remove(*child);
  view.Unopen();
}

void ViewTree::CompleteViews(const Control& model) {
  if (ControlView* view = ViewOf(model); view != nullptr && !view->IsAsleep()) view->Complete();
  for (const Control* child : model.Children()) CompleteViews(*child);
}

void ViewTree::Remove(Control& model) {
  const auto found = views.find(&model);
  if (found == views.end()) return;
  for (Control* child : model.Children()) Remove(*child);
  std::unique_ptr<ControlView> view = std::move(found->second);
  views.erase(found);
  ForgetWindow(view->Handle());
  view->Leave();
  view->Detach();
  view->Destroy();
  Retire(std::move(view));
}

// A linked list, because it must not allocate: on failure the view would be destroyed with its code on the stack.
void ViewTree::Retire(std::unique_ptr<ControlView> view) {
  if (messages == 0) return;
  view->retiredBefore = std::move(retired);
  retired = std::move(view);
}

// Not recursive, because the list may be long.
void ViewTree::FreeRetired() {
  while (retired != nullptr) {
    const std::unique_ptr<ControlView> last = std::move(retired);
    retired = std::move(last->retiredBefore);
  }
}

ControlView* ViewTree::ViewOf(HWND window) const {
  const auto found = windows.find(window);
  return found == windows.end() ? nullptr : found->second;
}

ControlView* ViewTree::ViewOf(const Control& model) const {
  const auto found = views.find(&model);
  return found == views.end() ? nullptr : found->second.get();
}

void ViewTree::MakeToolTips() {
  const CommonControls controls;
  // Without an owner: the host may give the window another parent, and destroy the former one.
  toolTips =
      CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, Module(), nullptr);
}

bool ViewTree::AddToolTip(HWND window, const Control& model) {
  if (model.ToolTip().empty()) return false;
  if (toolTips == nullptr) MakeToolTips();
  std::wstring text = ToWide(TranslatedIfOwn(model.ToolTip()));
  TTTOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;  // a size that every version of the common controls accepts
  tool.uFlags = TTF_IDISHWND;
  tool.hwnd = GetParent(window);
  tool.uId = reinterpret_cast<UINT_PTR>(window);
  tool.lpszText = text.data();
  return SendMessageW(toolTips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool)) != FALSE;
}

void ViewTree::TellToolTips(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
  const DWORD at = GetMessagePos();
  MSG told = {
      window, message, wParam, lParam, static_cast<DWORD>(GetMessageTime()), {GET_X_LPARAM(at), GET_Y_LPARAM(at)}};
  SendMessageW(toolTips, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&told));
}

bool ViewTree::IsOwn(HWND window) const {
  return window != nullptr && (window == Window() || IsChild(Window(), window) != FALSE);
}

bool ViewTree::WantsKey(WPARAM key) const {
  if (!IsOpen() || !TakesInput()) return false;
  if (isInMenu) return true;
  const HWND focus = GetFocus();
  return IsOwn(focus) && WantsKeyAt(focus, key);
}

bool ViewTree::WantsKeyAt(HWND window, WPARAM key) const {
  const ControlView* view = nullptr;  // the view of the window or of its nearest ancestor
  for (HWND one = window; view == nullptr && one != nullptr; one = GetParent(one)) view = ViewOf(one);
  return view != nullptr && view->TakesInput() && view->WantsKey(key);
}

void ViewTree::NoteKeys() {
  if (!areKeysNoted && Window() != nullptr) areKeysNoted = PostMessageW(Window(), KeysMessage, 0, 0) != FALSE;
}

void ViewTree::NoteMenu(bool isUp) {
  isInMenu = isUp;
  NoteKeys();
}

void ViewTree::TellKeys() {
  areKeysNoted = false;
  if (const auto listener = keysListener) listener();
}

void ViewTree::TellAnnouncements() {
  const auto held = Hold();
  announcements.Tell(Window());
}

bool ViewTree::IsUserAtWork() const { return IsOpen() && (isInMenu || IsOwn(GetCapture())); }

}  // namespace kw::windows
