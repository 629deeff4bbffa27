#pragma once

#include <windows.h>

#include <ole2.h>
#include <wrl/client.h>

#include "activex/ClientSite.h"
#include "activex/HostEvents.h"
#include "activex/HostedDesktop.h"
#include "activex/InPlaceActivation.h"
#include "activex/Lifetime.h"
#include "activex/MemberDescription.h"
#include "control/KwEditorLayers.h"
#include "drawing/Scale.h"

namespace kw::activex {

// What the interface families of one control share: the editor itself and its relations to the container.
class EditorCore {
public:
  explicit EditorCore(IUnknown& controlling);
  EditorCore(const EditorCore&) = delete;
  EditorCore& operator=(const EditorCore&) = delete;
  ~EditorCore();

  Lifetime& Life() { return life; }
  ClientSite& Site() { return site; }
  MemberDescription& Members() { return members; }
  HostEvents& Events() { return events; }
  KwEditorLayers& Editor() { return editor; }
  InPlaceActivation& Activation() { return activation; }

  // The size of the control, also while it has no window; before the container gives one, that of the form.
  SIZEL Extent() const { return extent; }
  void SetExtent(SIZEL himetric);
  // The same in pixels of the screen, as the container placed the window, which shows the form at that scale.
  void SetWindowSize(SIZE pixels, const Scale& scale);
  // The size at which the form is laid out now, in its own pixels.
  SIZE FormSize();
  // A control that nobody gave a size lays itself out when it is first drawn.
  void LayOutOnce();

  // Whether a persisted property was assigned since the last load or save.
  bool IsDirty() const { return dirty; }
  void SetDirty(bool value) { dirty = value; }

  // Tells the container's view sink, if it asked for it, that the picture of the control is out of date.
  void TellViewChanged();
  void AdviseView(DWORD aspects, DWORD flags, IAdviseSink* sink);
  void ViewAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) const;

  // The sinks that want to know of saving, renaming and closing. Made when first asked for; null without memory.
  IOleAdviseHolder* Advises();

private:
  void LayOut(SIZE pixels);

  Lifetime life;
  ClientSite site;
  MemberDescription members;
  HostEvents events;
  InPlaceActivation activation;
  HostedDesktop desktop;
  KwEditorLayers editor;
  SIZEL extent = {};
  bool laidOut = false;
  bool dirty = false;
  DWORD viewAspects = 0;
  DWORD viewFlags = 0;
  Microsoft::WRL::ComPtr<IAdviseSink> viewSink;
  Microsoft::WRL::ComPtr<IOleAdviseHolder> advises;
};

}  // namespace kw::activex
