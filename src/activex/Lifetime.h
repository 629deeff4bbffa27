#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kw::activex {

// Keeps a control alive while its code is on the stack.
//
// A host may release the control during an event or a message box. The editor's procedure that raised the event has not
// returned then, so the control must outlive it. Therefore an incoming COM call holds a reference until it returns, and
// so does an outgoing call to the host. If an outgoing call holds the last reference and no incoming call is running,
// the message loop releases it later.
class Lifetime {
public:
  // `controlling` is the aggregate's unknown, or the control's own if it is not aggregated.
  explicit Lifetime(IUnknown& controlling) : unknown(&controlling) {}
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;
  ~Lifetime();

  IUnknown& Unknown() const { return *unknown; }
  // From now on the reference count is the control's own. Before, it may be an aggregate's, whose AddRef and Release
  // may return any number.
  void CountIsOwn() { isCountOwn = true; }
  // From now on only `own` counts references: the control is being destroyed.
  void Detach(IUnknown& own) { unknown = &own; }

  // An incoming COM call: holds a reference during its life.
  class Entry {
  public:
    explicit Entry(Lifetime& entered);
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry();

  private:
    Lifetime& life;
  };

  // An outgoing call to the host, which may do anything before it returns: holds a reference during its life.
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
  ULONG owed = 0;         // references for the message loop to release
  bool isPosted = false;  // the message that releases them is posted
};

}  // namespace kw::activex
