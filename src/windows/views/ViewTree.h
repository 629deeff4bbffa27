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
#include "windows/views/Announcements.h"
#include "windows/views/ControlView.h"
#include "windows/views/ViewFactory.h"

namespace kw::windows {

// The views of an editor window and what they share. It owns the views and finds them by model or by window.
//
// Views that are removed while a message is handled are retired: they live until it has been handled, because their
// code may be on the stack.
class ViewTree : public std::enable_shared_from_this<ViewTree> {
public:
  ViewTree(UserControl& root, const Scale& scale, std::unique_ptr<ViewFactory> factory)
      : root(&root), scale(scale), factory(std::move(factory)), images(std::make_unique<Images>(scale)) {}
  ViewTree(const ViewTree&) = delete;
  ViewTree& operator=(const ViewTree&) = delete;
  // The tree must be closed before.
  ~ViewTree() = default;

  // Creates the root's window and everything below.
  void Open(HWND parent, const RECT& position);
  void Close();
  // Shows everything again, after a change of the system's colours.
  void Refresh();
  // Shows everything at another scale, if it differs: the window has moved to another screen.
  void Rescale(const Scale& newScale);
  bool IsOpen() const { return rootView != nullptr; }
  // Whether the host allows the user's input; see EditorWindow.
  void AllowInput(bool isAllowed);
  bool TakesInput() const { return isInputAllowed && root->Enabled(); }
  void HoldWith(std::function<std::shared_ptr<void>()> newHold) { hold = std::move(newHold); }
  std::shared_ptr<void> Hold() const { return hold ? hold() : nullptr; }
  HWND Window() const { return rootView == nullptr ? nullptr : rootView->Handle(); }
  // Valid only while the tree is open.
  UserControl& Root() const { return *root; }

  // Creates the views of a model and its descendants; the model is in front of its siblings. A model without a kind of
  // view gets none.
  void Add(Control& model, ControlView* container);
  // Removes the views of a model and its descendants.
  void Remove(Control& model);

  ControlView* ViewOf(HWND window) const;
  ControlView* ViewOf(const Control& model) const;
  // Makes the view findable by its window, until ForgetWindow.
  void NoteWindow(HWND window, ControlView& view) { windows[window] = &view; }
  void ForgetWindow(HWND window) { windows.erase(window); }

  // The scale from model pixels to screen pixels.
  const Scale& Scaling() const { return scale; }
  // One buffer serves all windows, because they are painted one after the other.
  BackBuffer& Buffer() { return buffer; }
  HFONT Font() const { return font; }
  const Images& Pictures() const { return *images; }
  // Opens a view that was asleep, and makes the views of all in its control. If that fails, it sleeps on.
  void Wake(ControlView& view);
  // See ViewFactory.
  void LayOut() { factory->LayOut(); }
  // Adds the control's tool tip; false if it has none. The window of the tips is made for the first one. From then on
  // it wants to hear of the control's mouse messages.
  bool AddToolTip(HWND window, const Control& model);
  void TellToolTips(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const;

  // Moves the focus to the next or previous tab stop; false past the last one.
  bool MoveFocus(bool isBackward);

  // For a host that calls IsDialogMessage, which asks before it takes the Tab key for itself. The tree moves the focus
  // in its own order, and past the last stop to the host's next control.
  bool ClaimsTab(const MSG& asked);
  // Whether the message is a key that was claimed. If so, it is done with.
  bool TakeClaimedTab(UINT message, WPARAM key);
  // The same for a window within a system control, which is no view of its own.
  static void ClaimTabOf(HWND inner);
  // Such a window's message and argument, sent to the painted view around it. A system control has messages of its own
  // from WM_USER on.
  static constexpr UINT TabMessage = WM_USER + 2;
  LRESULT OnTabMessage(UINT message, LPARAM argument);
  // The root got the focus from another window of the host. If that was by the Tab key, it goes on to a stop.
  void EnterByTab(HWND from);

  // Whether a window of the tree, or its menu, has the focus and wants the key.
  bool WantsKey(WPARAM key) const;
  // Whether a window that gets the key wants it.
  bool WantsKeyAt(HWND window, WPARAM key) const;
  // The result of WantsKey may have changed. The listener is called from the message loop, because it may do anything.
  void OnKeys(std::function<void()> listener) { keysListener = std::move(listener); }
  void NoteKeys();
  void NoteMenu(bool isUp);
  // In the range of the window class, WM_USER, because a host may look for messages of its own, from WM_APP on, among
  // those for its child windows.
  static constexpr UINT KeysMessage = WM_USER;
  void TellKeys();
  // Lets the message loop raise an event (EVENT_OBJECT_...) for screen readers: of a window or, by its child id, of a
  // part of it.
  void Announce(DWORD event, HWND window, LONG child) { announcements.Note(Window(), event, window, child); }
  void TellAnnouncements();
  // A number that no item of the tree's canvases had before.
  LONG NextItemNumber() { return ++lastItemNumber; }

  // Whether a menu is up or a window of the tree has captured the mouse.
  bool IsUserAtWork() const;

  // A message that is being handled: keeps the tree and its views alive during its life.
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
  void MakeToolTips();
  void LeaveByTab(bool isBackward);
  // The views of the model and of all in it, behind the windows that are there.
  void MakeViews(Control& model, ControlView* container);
  void MakeViewsIn(Control& holder, ControlView* container);
  void CompleteViews(const Control& model);
  // Lets an opened view sleep again.
  void Unmake(ControlView& view);
  void RescaleViews(const Control& model);
  void Retire(std::unique_ptr<ControlView> view);
  void FreeRetired();

  UserControl* root;
  Scale scale;
  bool isInputAllowed = true;
  std::function<std::shared_ptr<void>()> hold;
  bool isMade = false;  // Close has something to destroy
  ControlView* rootView = nullptr;
  std::unique_ptr<ViewFactory> factory;  // must outlive the views
  std::unordered_map<const Control*, std::unique_ptr<ControlView>> views;
  std::unordered_map<HWND, ControlView*> windows;  // index of the views that have a window
  std::unique_ptr<ControlView> retired;            // the head of the list of retired views
  int messages = 0;
  std::function<void()> keysListener;
  bool areKeysNoted = false;  // KeysMessage is posted
  bool isInMenu = false;
  Announcements announcements;
  LONG lastItemNumber = 0;
  bool isTabClaimed = false;       // its message comes next
  bool isTabCharacterDue = false;  // and then its character
  HFONT font = nullptr;
  HWND toolTips = nullptr;  // null until a tip is wanted
  std::unique_ptr<Images> images;
  BackBuffer buffer;
};

}  // namespace kw::windows
