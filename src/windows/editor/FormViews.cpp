#include "windows/editor/FormViews.h"

#include <type_traits>

#include "components/controls/LightWeightMarker.h"

#include "windows/base/Gdi.h"
#include "windows/toolbar/ToolBarView.h"
#include "windows/views/CanvasItemView.h"
#include "windows/views/CheckBoxView.h"
#include "windows/views/CommandButtonView.h"
#include "windows/views/DTPickerView.h"
#include "windows/views/ImageComboView.h"
#include "windows/views/LabelView.h"
#include "windows/views/MenuView.h"
#include "windows/views/NumberFieldView.h"
#include "windows/views/OptionButtonView.h"
#include "windows/views/PageSpinnerView.h"
#include "windows/views/PictureBoxView.h"
#include "windows/views/RaisedAreaView.h"
#include "windows/views/RaisedPictureView.h"
#include "windows/views/ScrollBarView.h"
#include "windows/views/SliderView.h"

namespace kw::windows {
namespace {

// How a kind of model is shown: in a view, and drawn without a window.
struct Kind {
  bool (*isOf)(const Control& model);
  std::unique_ptr<ControlView> (*makeView)(ViewTree& tree, Control& model, ControlView* container, BarRows& bars);
  void (*draw)(const Look& look, const RECT& bounds, const Control& model);
};

template <class Model, class ViewOfModel>
constexpr Kind KindOf() {
  return {[](const Control& model) { return dynamic_cast<const Model*>(&model) != nullptr; },
          [](ViewTree& tree, Control& model, ControlView* container, BarRows& bars) -> std::unique_ptr<ControlView> {
            auto& shown = static_cast<Model&>(model);
            if constexpr (std::is_constructible_v<ViewOfModel, ViewTree&, Model&, ControlView*, BarRows&>) {
              return std::make_unique<ViewOfModel>(tree, shown, container, bars);
            } else {
              static_cast<void>(bars);
              return std::make_unique<ViewOfModel>(tree, shown, container);
            }
          },
          [](const Look& look, const RECT& bounds, const Control& model) {
            ViewOfModel::Draw(look, bounds, static_cast<const Model&>(model));
          }};
}

// Every kind of model that has a view. Timers, logs and the like have none.
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
    KindOf<CommandButton, CommandButtonView>(),
    KindOf<NumberField, NumberFieldView>(),
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

std::unique_ptr<ControlView> FormViews::MakeView(ViewTree& tree, Control& model, ControlView* container) {
  const Kind* const kind = Find(model);
  return kind == nullptr ? nullptr : kind->makeView(tree, model, container, bars);
}

void DrawChildren(const Look& look, const Control& holder) {
  for (const Control* child : holder.Children()) {
    const Kind* const kind = Find(*child);
    if (kind == nullptr || !child->Visible()) continue;
    const RECT bounds = ToRect(look.scale.ToDevice(BoundsOf(*child)));
    const int saved = SaveDC(look.context);
    IntersectClipRect(look.context, bounds.left, bounds.top, bounds.right, bounds.bottom);
    OffsetViewportOrgEx(look.context, bounds.left, bounds.top, nullptr);
    const RECT own = {0, 0, WidthOf(bounds), HeightOf(bounds)};
    kind->draw(look, own, *child);
    DrawChildren(look, *child);
    RestoreDC(look.context, saved);
  }
}

}  // namespace kw::windows
