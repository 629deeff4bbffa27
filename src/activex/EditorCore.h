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

// The state that a control's interface families share: the editor, the client site, and what the container sees.
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
  // The platform of the editor; also for dialogs of the control that are not the editor's.
  HostedDesktop& Platform() { return desktop; }

  // Runs the editor's start-up unless it has run or the container designs its form. Whatever needs a started editor
  // calls it first: a method or a property, a verb, loading, saving, drawing.
  void Start();
  // The same for what cannot be had in design mode: raises InvalidProcedureCall there.
  void NeedRunTime(const char* method);
  // Asks the container for the ambient UserMode, and begins or ends design mode. A container that does not answer does
  // not design.
  void FollowUserMode();
  // Asks the container for the ambient LocaleID and takes the own texts from its language, for the whole thread.
  void FollowLanguage() const;

  // The control's size, with or without a window. Until the container sets one it is the form's.
  SIZEL Extent() const { return extent; }
  void SetExtent(SIZEL himetric);
  // The same in screen pixels: the size that the container gave the window, which shows the form at that scale.
  void SetWindowSize(SIZE pixels, const Scale& scale);
  // The size at which the form is laid out now, in form pixels (96 to the inch).
  SIZE FormSize();
  // Lays out the form before its first drawing if the container never set a size.
  void LayOutOnce();

  // Whether a persisted property was assigned since the last load or save.
  bool IsDirty() const { return dirty; }
  void SetDirty(bool value) { dirty = value; }

  // Tells the container's view sink, if there is one, that the control must be drawn again.
  void TellViewChanged();
  void AdviseView(DWORD aspects, DWORD flags, IAdviseSink* sink);
  void ViewAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) const;

  // The advise sinks for saving, renaming and closing. Created on first use; null if memory runs out.
  IOleAdviseHolder* Advises();

private:
  void LayOut(SIZE pixels);
  // Lays out the form for the container's extent if that has not been done.
  void LayOutExtent();

  Lifetime life;
  ClientSite site;
  MemberDescription members;
  HostEvents events;
  InPlaceActivation activation;
  HostedDesktop desktop;
  KwEditorLayers editor;
  SIZEL extent = {};
  bool hasStarted = false;
  bool isExtentWaiting = false;
  bool laidOut = false;
  bool dirty = false;
  DWORD viewAspects = 0;
  DWORD viewFlags = 0;
  Microsoft::WRL::ComPtr<IAdviseSink> viewSink;
  Microsoft::WRL::ComPtr<IOleAdviseHolder> advises;
};

}  // namespace kw::activex
