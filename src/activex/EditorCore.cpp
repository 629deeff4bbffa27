#include "activex/EditorCore.h"

#include <cmath>

#include "activex/Extent.h"
#include "windows/base/Guard.h"

namespace kw::activex {
namespace {

// For start-up and shut-down: neither may fail, because the host could then not create or release the control. If the
// procedure throws, the error could not even be reported; the editor is disabled by then and reports nothing more, so a
// second run completes the work.
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
  // The container sets an active window's size itself, in screen pixels.
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
  // The first call lays out the form even if the size is the form's own.
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
