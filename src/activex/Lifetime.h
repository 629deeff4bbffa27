#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kw::activex {

// What keeps one control alive while its code is on the stack.
//
// A host may let go of the control inside an event or while a message box is up. The editor's
// procedure that raised the event has then not ended, so the control must outlive it: a call that came in through COM
// holds a reference to its end, and a call out to the host holds one. If that is the last one and no incoming call is
// under way, it is dropped at the message loop.
class Lifetime {
public:
  // `controlling` is the aggregate's unknown, or the control's own.
  explicit Lifetime(IUnknown& controlling) : unknown(&controlling) {}
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;
  ~Lifetime();

  IUnknown& Unknown() const { return *unknown; }
  // The references count with the control itself and not with an aggregate, which may answer what it likes when asked
  // how many there are.
  void CountIsOwn() { isCountOwn = true; }
  // From now on the references count with `own` only: the control is being destroyed.
  void Detach(IUnknown& own) { unknown = &own; }

  // A call came in through COM.
  class Entry {
  public:
    explicit Entry(Lifetime& entered);
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry();

  private:
    Lifetime& life;
  };

  // The control calls its host, which may do anything before it returns.
  class Outgoing {
  public:
    explicit Outgoing(Lifetime& calling);
    Outgoing(const Outgoing&) = delete;
    Outgoing& operator=(const Outgoing&) = delete;
    ~Outgoing();

  private:
    Lifetime& life;
  };

private:
  static LRESULT CALLBACK PostboxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool IsHeldByOthers() const;
  void ReleaseLater();
  void ReleaseOwed();

  IUnknown* unknown;
  bool isCountOwn = false;
  int entries = 0;
  HWND postbox = nullptr;
  ULONG owed = 0;         // references that are dropped at the message loop
  bool isPosted = false;  // the message that drops them is on its way
};

}  // namespace kw::activex
