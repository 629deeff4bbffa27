#pragma once

#include <windows.h>

#include "windows/scanning/Twain.h"

namespace kw::windows {

// The talk with the source manager and one source, in the protocol's states: 2 the manager is loaded, 3 open, 4 a
// source is open, 5 enabled, 6 an image is ready, 7 its transfer is under way. A step up that is refused leaves the
// state as it is; at the end the session goes down whatever state it is in.
class TwainSession {
public:
  // The window must live as long as the session.
  TwainSession(twain::ManagerEntry managerEntry, HWND parentWindow);
  TwainSession(const TwainSession&) = delete;
  TwainSession& operator=(const TwainSession&) = delete;
  ~TwainSession() { GoDownTo(2); }

  int State() const { return state; }

  bool OpenManager();
  // Fills in the source that the user chose in the manager's dialog. False when there is none.
  bool LetUserSelect(twain::Identity& chosen);
  // Fills in the manager's default source, or its first one. False when there is none.
  bool FindDefault(twain::Identity& found);
  bool OpenSource(const twain::Identity& chosen);
  // The source shows its own dialog.
  bool Enable();

  // In state 5 and above: offers a message of the queue to the source. True when it was for the source alone; `notice`
  // is what the source has to say. A notice that an image is ready leads to state 6.
  bool Offer(MSG& message, WORD& notice);

  enum class Outcome { Image, Cancelled, Failed };
  // In state 6: takes the image; the caller owns the memory, a device-independent bitmap. Then the state is 6 again
  // where the source has another image, else 5.
  Outcome Transfer(HGLOBAL& image);

  // From a higher state step by step to this one, 2 to 5; whatever the source answers.
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
