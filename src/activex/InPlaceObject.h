#pragma once

#include <windows.h>

#include <oleidl.h>

#include "activex/EditorCore.h"

namespace kw::activex {

// The control in its container's window: position, deactivation, keys, frame activation.
class InPlaceObject : public IOleInPlaceObject, public IOleInPlaceActiveObject {
public:
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;

  STDMETHODIMP InPlaceDeactivate() override;
  STDMETHODIMP UIDeactivate() override;
  STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) override;
  STDMETHODIMP ReactivateAndUndo() override;

  STDMETHODIMP TranslateAccelerator(LPMSG message) override;
  STDMETHODIMP OnFrameWindowActivate(BOOL activate) override;
  STDMETHODIMP OnDocWindowActivate(BOOL activate) override;
  STDMETHODIMP ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window, BOOL isFrame) override;
  STDMETHODIMP EnableModeless(BOOL enable) override;

protected:
  explicit InPlaceObject(EditorCore& shared) : core(shared) {}
  ~InPlaceObject() = default;

private:
  EditorCore& core;
};

}  // namespace kw::activex
