#include "activex/EditorCore.h"

#include <olectl.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "activex/Extent.h"
#include "components/base/RunTimeError.h"
#include "components/base/Texts.h"
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
  events.OnChange([this](PropertyId property) {
    if (KwEditorLayers::IsPersisted(property)) dirty = true;
    TellViewChanged();
  });
  extent = FormToHimetric(FormSize());
}

EditorCore::~EditorCore() {
  const Lifetime::Entry entry(life);
  activation.Abandon();
  events.EventPoint().Clear();
  events.PropertyPoint().Clear();
  if (hasStarted) RunToItsEnd([this] { editor.UserControl_Terminate(); });
}

void EditorCore::Start() {
  if (hasStarted || editor.IsDesigned()) return;
  hasStarted = true;
  {
    const HostEvents::WithoutChanges values(events);  // they are new, not changed
    RunToItsEnd([this] { editor.UserControl_Initialize(); });
  }
  LayOutExtent();
}

void EditorCore::NeedRunTime(const char* method) {
  Start();
  if (!editor.IsDesigned()) return;
  throw RunTimeError(static_cast<std::int32_t>(ErrorNumber::InvalidProcedureCall),
                     std::string(method) + " is not available in design mode");
}

void EditorCore::FollowUserMode() {
  const IOleClientSite* const asked = site.Get();
  if (asked == nullptr) return;
  const bool isDesigned = !site.AmbientBoolean(DISPID_AMBIENT_USERMODE).value_or(true);
  if (asked != site.Get()) return;  // the container changed the site meanwhile, and the new one was asked
  if (isDesigned == editor.IsDesigned()) return Start();
  if (isDesigned) {
    editor.BeginDesign();
    LayOutExtent();
  } else {
    editor.EndDesign();
    Start();
    windows::Guard([this] { editor.LetDesigned(); });
  }
  activation.FollowUiDead();
  TellViewChanged();
}

void EditorCore::FollowLanguage() const {
  if (site.Get() == nullptr) return;
  ChooseLanguage(static_cast<std::uint32_t>(site.AmbientNumber(DISPID_AMBIENT_LOCALEID).value_or(0)));
}

void EditorCore::SetExtent(SIZEL himetric) {
  extent = himetric;
  // The container sets an active window's size itself, in screen pixels.
  if (activation.IsActive()) return;
  isExtentWaiting = true;
  if (hasStarted || editor.IsDesigned()) LayOutExtent();
}

void EditorCore::LayOutExtent() {
  if (!std::exchange(isExtentWaiting, false)) return;
  LayOut(HimetricToForm(extent));
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
