#include "annotated/PageWatch.h"

#include <utility>

#include "annotated/SeenLayers.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

constexpr std::int32_t Milliseconds = 100;

}  // namespace

PageWatch::PageWatch(Desktop& desktop, const EditorForm& watched)
    : form(watched), last(Present()), timer("PageWatch", desktop) {
  timer.Tick.Connect([this] { Compare(); });
  timer.SetInterval(Milliseconds);
  timer.SetEnabled(true);
}

PageWatch::Look PageWatch::Present() const {
  Look look;
  look.area = SeenArea(form);
  for (const TransparentPicture* layer : SeenLayers(form)) {
    look.items.push_back(ContentsItemOf(*layer));
    look.items.back().picture = {};
    look.pictures.push_back(layer->PictureNumber());
  }
  return look;
}

void PageWatch::Compare() {
  Look present = Present();
  if (present == last) return;
  last = std::move(present);
  Changed.Raise();
}

}  // namespace kw
