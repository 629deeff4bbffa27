#include "activex/EditorCore.h"

#include <cmath>

#include "activex/Extent.h"
#include "windows/base/Guard.h"

namespace kw::activex {
namespace {

// For start-up and shut-down, whose failure must neither refuse the control nor reach the one who lets go of it. An
// error that the editor cannot even report leaves the procedure before its end. The editor is disabled by then and
// reports nothing more, so a second run does the rest.
template <class Procedure>
void RunToItsEnd(Procedure procedure) {
  if (!windows::Guard(procedure)) windows::Guard(procedure);
}

}  // namespace

EditorCore::EditorCore(IUnknown& controlling)
    : life(controlling), events(life), activation(*this), desktop(life, activation), editor(desktop, events) {
  const Lifetime::Entry entry(life);
  events.OnChange([this](PropertyId property) {
    if (KwEditorLayers::IsPersisted(property)) dirty = true;
    TellViewChanged();
  });
  RunToItsEnd([this] { editor.UserControl_Initialize(); });
  extent = FormToHimetric(FormSize());
  SetDirty(false);
}

EditorCore::~EditorCore() {
  const Lifetime::Entry entry(life);
  activation.Abandon();
  events.EventPoint().Clear();
  events.PropertyPoint().Clear();
  RunToItsEnd([this] { editor.UserControl_Terminate(); });
}

void EditorCore::SetExtent(SIZEL himetric) {
  extent = himetric;
  // A window gets its size from the container, in pixels of the screen.
  if (activation.IsActive()) return;
  LayOut(HimetricToForm(himetric));
  TellViewChanged();
}

void EditorCore::SetWindowSize(SIZE pixels, const Scale& scale) {
  extent = ScreenToHimetric(pixels);
  LayOut({scale.ModelPixelAt(pixels.cx), scale.ModelPixelAt(pixels.cy)});
}

SIZE EditorCore::FormSize() {
  const UserControl& root = editor.Root();
  return {std::lround(ToPixels(root.Width())), std::lround(ToPixels(root.Height()))};
}

void EditorCore::LayOutOnce() {
  if (!laidOut) LayOut(FormSize());
}

void EditorCore::LayOut(SIZE pixels) {
  UserControl& root = editor.Root();
  const SIZE current = FormSize();
  // The first size is laid out even if it is that of the form.
  if (!laidOut && pixels.cx == current.cx && pixels.cy == current.cy) root.Resize.Raise();
  laidOut = true;
  root.UserResize(static_cast<float>(pixels.cx), static_cast<float>(pixels.cy));
}

void EditorCore::TellViewChanged() {
  if (viewSink == nullptr || (viewAspects & DVASPECT_CONTENT) == 0) return;
  const Lifetime::Outgoing outgoing(life);
  const Microsoft::WRL::ComPtr<IAdviseSink> sink = viewSink;
  if ((viewFlags & ADVF_ONLYONCE) != 0) viewSink.Reset();
  sink->OnViewChange(DVASPECT_CONTENT, -1);
}

void EditorCore::AdviseView(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  viewAspects = aspects;
  viewFlags = flags;
  viewSink = sink;
  if ((flags & ADVF_PRIMEFIRST) != 0) TellViewChanged();
}

void EditorCore::ViewAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) const {
  if (aspects != nullptr) *aspects = viewAspects;
  if (flags != nullptr) *flags = viewFlags;
  if (sink != nullptr) viewSink.CopyTo(sink);
}

IOleAdviseHolder* EditorCore::Advises() {
  if (advises == nullptr) CreateOleAdviseHolder(&advises);
  return advises.Get();
}

}  // namespace kw::activex
