#pragma once

#include <windows.h>

#include "windows/scanning/Twain.h"

namespace kw::windows {

// A session with the source manager and one source, in the protocol's states: 2 manager loaded, 3 manager open, 4
// source open, 5 source enabled, 6 image ready, 7 transfer running. A failed step up leaves the state unchanged; the
// destructor steps down from any state.
class TwainSession {
public:
  // The window must outlive the session.
  TwainSession(twain::ManagerEntry managerEntry, HWND parentWindow);
  TwainSession(const TwainSession&) = delete;
  TwainSession& operator=(const TwainSession&) = delete;
  ~TwainSession() { GoDownTo(2); }

  int State() const { return state; }

  bool OpenManager();
  // Lets the user choose a source in the manager's dialog. False if none was chosen.
  bool LetUserSelect(twain::Identity& chosen);
  // Finds the manager's default source, or its first one. False if there is none.
  bool FindDefault(twain::Identity& found);
  bool OpenSource(const twain::Identity& chosen);
  // Enables the source with its own dialog.
  bool Enable();

  // In state 5 and above: offers a message of the queue to the source. True if it was for the source; `notice` is the
  // source's notice. The notice of an image leads to state 6.
  bool Offer(MSG& message, WORD& notice);

  enum class Outcome { Image, Cancelled, Failed };
  // In state 6: takes the image, a device-independent bitmap whose memory the caller then owns. Leads to state 6 if the
  // source has another image, else to 5.
  Outcome Transfer(HGLOBAL& image);

  // Steps down to this state, 2 to 5, whatever the source answers.
  void GoDownTo(int lower);

private:
  WORD AskManager(WORD data, WORD message, void* content);
  WORD AskSource(DWORD group, WORD data, WORD message, void* content);
  void SetCapability(WORD capability, WORD type, WORD value);
  bool EndTransfer();
  void GoDown();

  twain::ManagerEntry entry;
  HWND parent;
  twain::Identity application = {};
  twain::Identity source = {};
  int state = 2;
};

}  // namespace kw::windows
