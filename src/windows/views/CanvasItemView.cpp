#include "windows/views/CanvasItemView.h"

#include <oleacc.h>

#include "components/controls/LightWeightMarker.h"
#include "scene/Accessible.h"
#include "windows/views/PictureBoxView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

// What screen readers know of the item.
struct CanvasItemView::Told {
  AccessibleItem item;
  bool isPicked = false;
};

CanvasItemView::CanvasItemView(ViewTree& shared, Control& shown, MouseInput& input, ControlView* container)
    : ControlView(shared, shown, container), mouse(&input) {}

CanvasItemView::~CanvasItemView() = default;

PictureBoxView* CanvasItemView::Canvas() const { return dynamic_cast<PictureBoxView*>(Container()); }

void CanvasItemView::Show(Aspect aspect) {
  if (aspect == Aspect::Pointer) RenewPointer();
  if (aspect == Aspect::Enabled || aspect == Aspect::Pointer || aspect == Aspect::Focus) return;
  if (aspect == Aspect::Typing) ShowTyping();
  if (!IsAttached()) return;
  if (field != nullptr) field->Show();
  if (PictureBoxView* canvas = Canvas()) {
    canvas->ItemsChanged();
    TellReaders(*canvas);
  }
}

LONG CanvasItemView::AccessibleId() {
  constexpr LONG IdsOfItem = 16;  // the item and its handles
  if (itemNumber == 0) itemNumber = Shared().NextItemNumber();
  return itemNumber * IdsOfItem;
}

void CanvasItemView::TellReaders(const PictureBoxView& canvas) {
  if (!IsAccessiblePart(Model())) return TellReadersThatItGoes();
  const auto tell = [&](DWORD event) { Shared().Announce(event, canvas.Handle(), AccessibleId()); };
  AccessibleItem now = AccessibleOf(Model());
  if (told == nullptr) {
    told = std::make_unique<Told>();
    tell(EVENT_OBJECT_CREATE);
  } else {
    if (now.name != told->item.name) tell(EVENT_OBJECT_NAMECHANGE);
    if (now.value != told->item.value) tell(EVENT_OBJECT_VALUECHANGE);
  }
  told->item = std::move(now);
  const auto* const layer = dynamic_cast<const TransparentPicture*>(&Model());
  const bool isPicked = layer != nullptr && layer->SelectionFrame() != 0;
  if (told->isPicked == isPicked) return;
  told->isPicked = isPicked;
  tell(isPicked ? EVENT_OBJECT_SELECTION : EVENT_OBJECT_SELECTIONREMOVE);
  if (isPicked && GetFocus() == canvas.Handle()) tell(EVENT_OBJECT_FOCUS);
}

void CanvasItemView::TellReadersThatItGoes() {
  if (told == nullptr) return;
  told.reset();
  if (const PictureBoxView* const canvas = Canvas())
    Shared().Announce(EVENT_OBJECT_DESTROY, canvas->Handle(), AccessibleId());
}

void CanvasItemView::ShowTyping() {
  auto& layer = static_cast<TransparentPicture&>(Model());
  const PictureBoxView* const canvas = Canvas();
  if (!layer.IsTyping()) {
    field.reset();
  } else if (canvas != nullptr && canvas->Handle() != nullptr) {
    field = std::make_unique<TextField>(canvas->Handle(), layer, Shared().Scaling());
  }
}

void CanvasItemView::Leave() {
  field.reset();
  TellReadersThatItGoes();
  if (PictureBoxView* canvas = Canvas()) {
    canvas->ItemsChanged();
    canvas->Forget(*this);
  }
}

void CanvasItemView::Rescale() {
  if (field != nullptr) field->Rescale(Shared().Scaling());
}

void CanvasItemView::Send(const MouseEvent& event, POINT at) {
  const bool isMarker = dynamic_cast<const LightWeightMarker*>(&Model()) != nullptr;
  const bool isPress = event.kind == MouseEvent::Kind::Down;
  if (isPress && (event.button == Mouse::LeftButton || !pressedAt)) pressedAt = at;
  if (isMarker && event.kind == MouseEvent::Kind::Up) {
    if (!pressedAt) return;  // the press was somewhere else
    const POINT start = *pressedAt;
    if (!event.isAnyHeld) LosePress();
    if (!TakesInput()) return;
    mouse->MouseUp.Raise(event.button, event.shift, ToTwips(static_cast<float>(at.x - start.x)),
                         ToTwips(static_cast<float>(at.y - start.y)));
    return;
  }
  // The position is relative to the layer's Left and Top. If it has a frame, its contents begin at (1, 1).
  const PixelRect bounds = PixelsOf(Model());
  sender.Send(*this, mouse, event, {static_cast<double>(at.x - bounds.left), static_cast<double>(at.y - bounds.top)});
}

}  // namespace kw::windows
