#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "tests/activex/Ocx.h"
#include "tests/activex/Sinks.h"
#include "tests/support/win32/Snapshot.h"

namespace kw::test {

// The steps of a host and its user with the control in any container: they keep its properties, open a document, turn a
// page, draw with the mouse, and print through IViewObject. The container has made the control and shows it.
class ContainerWalk {
public:
  // Lets the container's own message loop run for so many milliseconds.
  using Pump = std::function<void(DWORD milliseconds)>;

  // The folder is that of the control's files; it must outlive the control.
  ContainerWalk(IUnknown* hosted, const ScratchFolder& folder, Pump messageLoop);

  const ComPtr<_KwEditorLayers>& Control() const { return control; }
  // The control's window; null if it is not in place.
  HWND Window() const;
  bool Await(const std::function<bool()>& condition) const;

  // All of it in this order.
  void WalkThrough();
  void OpenDocument();
  void TurnPage();
  void DrawRectangle();
  void Print() const;
  void Persist() const;
  // Lets go of the control; the container may hold it still.
  void Release();

private:
  void ClickButton(const char* toolTip) const;
  void Drag(HWND canvas, POINT from, POINT to) const;

  const ScratchFolder& scratch;
  Pump pump;
  ComPtr<_KwEditorLayers> control;
  EventSink sink;
  std::unique_ptr<Connection> connection;
};

}  // namespace kw::test
