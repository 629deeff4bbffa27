#include "windows/ViewFactory.h"

#include "components/LightWeightMarker.h"

#include "windows/CanvasItemView.h"
#include "windows/CheckBoxView.h"
#include "windows/DTPickerView.h"
#include "windows/Gdi.h"
#include "windows/ImageComboView.h"
#include "windows/LabelView.h"
#include "windows/MenuView.h"
#include "windows/OptionButtonView.h"
#include "windows/PageSpinnerView.h"
#include "windows/PictureBoxView.h"
#include "windows/RaisedAreaView.h"
#include "windows/RaisedPictureView.h"
#include "windows/RootView.h"
#include "windows/ScrollBarView.h"
#include "windows/SliderView.h"
#include "windows/ToolBarView.h"

namespace kw::windows {
namespace {

// How one kind of model is shown: in a view, and drawn without a window.
struct Kind {
  bool (*isOf)(const Control& model);
  std::unique_ptr<ControlView> (*makeView)(Pane& pane, Control& model, ControlView* container);
  void (*draw)(const Look& look, const RECT& place, const Control& model);
};

template <class Model, class ViewOfModel>
constexpr Kind KindOf() {
  return {[](const Control& model) { return dynamic_cast<const Model*>(&model) != nullptr; },
          [](Pane& pane, Control& model, ControlView* container) -> std::unique_ptr<ControlView> {
            return std::make_unique<ViewOfModel>(pane, static_cast<Model&>(model), container);
          },
          [](const Look& look, const RECT& place, const Control& model) {
            ViewOfModel::Draw(look, place, static_cast<const Model&>(model));
          }};
}

// Every kind of model that has a look. Timers, logs and the like have none.
constexpr Kind Kinds[] = {
    KindOf<PictureBox, PictureBoxView>(),
    KindOf<TransparentPicture, CanvasItemView>(),
    KindOf<LightWeightMarker, CanvasItemView>(),
    KindOf<ToolBar, ToolBarView>(),
    KindOf<RaisedArea, RaisedAreaView>(),
    KindOf<Frame, FrameView>(),
    KindOf<RaisedPicture, RaisedPictureView>(),
    KindOf<Label, LabelView>(),
    KindOf<ImageCombo, ImageComboView>(),
    KindOf<ScrollBar, ScrollBarView>(),
    KindOf<Slider, SliderView>(),
    KindOf<PageSpinner, PageSpinnerView>(),
    KindOf<CheckBox, CheckBoxView>(),
    KindOf<OptionButton, OptionButtonView>(),
    KindOf<DTPicker, DTPickerView>(),
    KindOf<Menu, MenuView>(),
};

const Kind* Find(const Control& model) {
  for (const Kind& kind : Kinds) {
    if (kind.isOf(model)) return &kind;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<ControlView> MakeView(Pane& pane, Control& model, ControlView* container) {
  const Kind* const kind = Find(model);
  return kind == nullptr ? nullptr : kind->makeView(pane, model, container);
}

std::unique_ptr<ControlView> MakeRootView(Pane& pane, UserControl& root, HWND parent, const RECT& position) {
  return std::make_unique<RootView>(pane, root, parent, position);
}

void DrawChildren(const Look& look, const Control& holder) {
  for (const Control* child : holder.Children()) {
    const Kind* const kind = Find(*child);
    if (kind == nullptr || !child->Visible()) continue;
    const RECT place = ToRect(look.scale.ToDevice(BoundsOf(*child)));
    const int saved = SaveDC(look.context);
    IntersectClipRect(look.context, place.left, place.top, place.right, place.bottom);
    OffsetViewportOrgEx(look.context, place.left, place.top, nullptr);
    const RECT own = {0, 0, WidthOf(place), HeightOf(place)};
    kind->draw(look, own, *child);
    DrawChildren(look, *child);
    RestoreDC(look.context, saved);
  }
}

}  // namespace kw::windows
