#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

#include "components/controls/UserControl.h"
#include "drawing/Scale.h"
#include "windows/base/Gdi.h"
#include "windows/base/Images.h"
#include "windows/views/ControlView.h"
#include "windows/views/ViewFactory.h"

namespace kw::windows {

// What the views of one editor window share. It owns the views; each is known by its model and, if it has one, by its
// window.
//
// Views that go while a message is under way are kept aside until it has ended, because their code may be on the stack.
class ViewTree : public std::enable_shared_from_this<ViewTree> {
public:
  ViewTree(UserControl& root, const Scale& scale, std::unique_ptr<ViewFactory> factory)
      : root(&root), scale(scale), factory(std::move(factory)), images(std::make_unique<Images>(scale)) {}
  ViewTree(const ViewTree&) = delete;
  ViewTree& operator=(const ViewTree&) = delete;
  // The tree must be closed.
  ~ViewTree() = default;

  // Makes the root's window and everything below.
  void Open(HWND parent, const RECT& position);
  void Close();
  // Shows everything in the system's present colours.
  void Refresh();
  // Shows everything at another scale, where it is another one: the window has come to another screen.
  void Rescale(const Scale& newScale);
  bool IsOpen() const { return rootView != nullptr; }
  // Whether the host lets the user do anything; see EditorWindow.
  void AllowInput(bool isAllowed);
  bool TakesInput() const { return isInputAllowed && root->Enabled(); }
  void HoldWith(std::function<std::shared_ptr<void>()> newHold) { hold = std::move(newHold); }
  std::shared_ptr<void> Hold() const { return hold ? hold() : nullptr; }
  HWND Window() const { return rootView == nullptr ? nullptr : rootView->Handle(); }
  // Only while the tree is open.
  UserControl& Root() const { return *root; }

  // Makes the views of a model and of what it holds, the model in front of its siblings. A model without a look gets
  // none.
  void Add(Control& model, ControlView* container);
  // Lets go of the views of a model and of what it holds.
  void Remove(Control& model);

  ControlView* ViewOf(HWND window) const;
  ControlView* ViewOf(const Control& model) const;
  // From now on that view is found by its window, until the window is gone.
  void NoteWindow(HWND window, ControlView& view) { windows[window] = &view; }
  void ForgetWindow(HWND window) { windows.erase(window); }

  // How large the models' pixels are on the screen.
  const Scale& Scaling() const { return scale; }
  // Painting one window is over before the next is painted, so one buffer serves them all.
  BackBuffer& Buffer() { return buffer; }
  HFONT Font() const { return font; }
  HWND ToolTips() const { return toolTips; }
  const Images& Pictures() const { return *images; }
  // See ViewFactory.
  void LayOut() { factory->LayOut(); }
  // Gives the control's tool tip, if it has one, to the mouse, and to those who cannot see as the window's name.
  void AddToolTip(HWND window, const Control& model) const;

  // The focus goes to the next control that takes it, or to the one before; false past the last.
  bool MoveFocus(bool isBackward);

  // Whether the keyboard is in one of the windows, or in a menu of theirs, and that key is wanted there.
  bool WantsKey(WPARAM key) const;
  // The same of a key that comes to that window.
  bool WantsKeyAt(HWND window, WPARAM key) const;
  // The wish for keys may be another one now. Who listens is told at the message loop, because he may do anything.
  void OnKeys(std::function<void()> listener) { keysListener = std::move(listener); }
  void NoteKeys();
  void NoteMenu(bool isUp);
  // In the range of the window class, WM_USER, because a host may look for messages of its own, from WM_APP on, among
  // those for its child windows.
  static constexpr UINT KeysMessage = WM_USER;
  void TellKeys();
  // A menu of the windows is up, or one of them holds the mouse.
  bool IsUserAtWork() const;

  // While one of these lives a message is under way, and the tree and its views exist.
  class Message {
  public:
    explicit Message(ViewTree& tree) : kept(tree.shared_from_this()) { ++kept->messages; }
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;
    ~Message() {
      if (--kept->messages == 0) kept->FreeRetired();
    }

  private:
    std::shared_ptr<ViewTree> kept;
  };

private:
  bool IsOwn(HWND window) const;
  void MakeViews(Control& model, ControlView* container);
  void RescaleViews(const Control& model);
  void Retire(std::unique_ptr<ControlView> view);
  void FreeRetired();

  UserControl* root;
  Scale scale;
  bool isInputAllowed = true;
  std::function<std::shared_ptr<void>()> hold;
  bool isMade = false;  // something is there for Close to take down
  ControlView* rootView = nullptr;
  std::unique_ptr<ViewFactory> factory;  // outlives the views
  std::unordered_map<const Control*, std::unique_ptr<ControlView>> views;
  std::unordered_map<HWND, ControlView*> windows;  // of the views that have one: few of the many
  std::unique_ptr<ControlView> retired;            // and those before it
  int messages = 0;
  std::function<void()> keysListener;
  bool areKeysNoted = false;  // the message that tells of them is on its way
  bool isInMenu = false;
  HFONT font = nullptr;
  HWND toolTips = nullptr;
  std::unique_ptr<Images> images;
  BackBuffer buffer;
};

}  // namespace kw::windows
