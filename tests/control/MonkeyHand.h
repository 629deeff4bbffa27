#pragma once

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/LayersFixture.h"

namespace kw::test {

// The hand of a user who does anything: mouse, keys, tools, menus, timers, pages, boxes, at random.
class MonkeyHand : public EditorTest {
public:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); }
  bool IsOneIn(int n) { return Below(n) == 0; }
  template <class Items>
  auto& OneOf(Items& items) {
    return items[static_cast<std::size_t>(Below(static_cast<int>(std::size(items))))];
  }

  // Mostly on the page, sometimes beside it, seldom absurd.
  float Coordinate() {
    if (IsOneIn(2000)) return std::ldexp(1.0F, Below(60)) * (IsOneIn(2) ? 1.0F : -1.0F);
    if (IsOneIn(30)) return static_cast<float>(Below(4000) - 2000);
    return static_cast<float>(Below(420) - 10) + (IsOneIn(4) ? 0.5F : 0.0F);
  }
  std::int16_t Shift() { return IsOneIn(4) ? static_cast<std::int16_t>(Below(8)) : std::int16_t{0}; }

  MouseInput& Under() {
    EditorForm& form = Form();
    if (IsOneIn(20)) return form.TransBackImage;
    if (IsOneIn(4)) {
      std::vector<TransparentPicture*> layers;
      for (const auto& [index, layer] : form.TransLayers) {
        if (index != 0) layers.push_back(layer.get());
      }
      return *OneOf(layers);
    }
    return form.picCanvas;
  }
  void Press() {
    const std::int16_t buttons[] = {1, 1, 1, 1, 2, 4};
    if (!IsOneIn(10)) Form().picCanvas.ReceiveFocus();
    Under().MouseDown.Raise(OneOf(buttons), Shift(), Coordinate(), Coordinate());
  }
  void MoveMouse() {
    Under().MouseMove.Raise(IsOneIn(4) ? std::int16_t{0} : std::int16_t{1}, Shift(), Coordinate(), Coordinate());
  }
  void Release() {
    Under().MouseUp.Raise(1, Shift(), Coordinate(), Coordinate());
    const EditorForm& form = Form();
    EXPECT_FALSE(form.fr.Visible());
    EXPECT_FALSE(form.point1(0).Visible());
    EXPECT_EQ(form.point1.UBound(), 0);
    EXPECT_FALSE(form.tmrMoveLayer.Enabled());
  }
  void LoseMouse() { Form().picCanvas.MouseLost.Raise(); }
  void ChooseTool() {
    const std::string key = OneOf(Form().tbrEditingTools.Buttons()).key;
    if (!key.empty()) Form().tbrEditingTools.UserClick(key);
  }
  void ClickButton() {
    EditorForm& form = Form();
    ToolBar* const bars[] = {&form.tbrBasicTools(0), &form.tbrBasicTools(1), &form.tbrFillPattern,
                             &form.tbrFonts,         &form.tbrMoreTools,     &form.tbrOpenFile};
    ToolBar& bar = *OneOf(bars);
    const std::string key = OneOf(bar.Buttons()).key;
    if (!key.empty()) bar.UserClick(key);
  }
  void PressKey() {
    const std::int16_t characters[] = {27, 1, 2, 2, 3, 6, 6, 13, 22, 24, 25, 26, 'a', 46};
    Form().picCanvas.KeyPress.Raise(OneOf(characters));
    if (IsOneIn(4)) Form().picCanvas.KeyUp.Raise(46, Shift());
  }
  void ChooseFromMenu() {
    EditorForm& form = Form();
    Menu* const entries[] = {&form.mnuCopySelectedArea, &form.mnuCutSelectedArea, &form.mnuMergeDown,
                             &form.mnuPasteSelectedArea, &form.mnuSelectAll};
    OneOf(entries)->UserChoose();
  }
  void LetTimePass() {
    std::map<std::string, Timer*> timers;  // by name: addresses differ from run to run
    for (const auto& [timer, interval] : desktop.runningTimers) timers[timer->Name()] = timer;
    if (timers.empty()) return;
    std::next(timers.begin(), Below(static_cast<int>(timers.size())))->second->Fire();
  }
  void Type() {
    for (const auto& [index, layer] : Form().TransLayers) {
      if (!layer->IsTyping()) continue;
      layer->Type(std::string(static_cast<std::size_t>(Below(200)), IsOneIn(3) ? '\n' : 'x'));
      if (IsOneIn(3)) layer->SetTyping(false);
      return;
    }
  }
  void TurnPage() { Form().PageIndex.UserSetValue(Below(5)); }
  void Open() { control->OpenFile(OneOf(documents)); }
  void Zoom() { Form().cmbZoomFactor.UserChoose(1 + Below(16)); }
  void ResizeControl() { Form().editor.UserResize(static_cast<float>(Below(1200)), static_cast<float>(Below(900))); }
  void DragBorder() {
    LightWeightMarker* const borders[] = {&Form().BorderRight, &Form().BorderBottom, &Form().BorderCorner};
    OneOf(borders)->MouseUp.Raise(1, 0, static_cast<float>(Below(3000) - 1500), static_cast<float>(Below(3000) - 1500));
    // The page must not grow for ever.
    TransparentPicture& page = Form().TransLayers(1);
    page.Move(0, 0, std::min(page.Width(), 600.0F), std::min(page.Height(), 600.0F));
  }
  void Scroll() {
    Form().vScroll.UserSetValue(Below(400));
    Form().hScroll.UserSetValue(Below(400));
  }
  void SetLine() { Form().sldLineHeight.UserSetValue(Below(30)); }
  // The visible controls of the tool box and the strip get the mouse as from a window.
  void UseToolBox() {
    EditorForm& form = Form();
    const std::pair<Control*, MouseInput*> parts[] = {
        {&form.kwraTools, &form.kwraTools},
        {&form.kwraTools, &form.kwraTools},
        {&form.kwraBasicToolsContainer(0), &form.kwraBasicToolsContainer(0)},
        {&form.kwraBasicToolsContainer(1), &form.kwraBasicToolsContainer(1)},
        {&form.SampleForeGroundColor, &form.SampleForeGroundColor},
        {&form.SampleBackGroundColor, &form.SampleBackGroundColor},
        {&form.kwrpColors, &form.kwrpColors},
        {&form.lblLineSize1, &form.lblLineSize1},
        {&form.lblLineSize2, &form.lblLineSize2},
        {&form.kwrpHideToolBox, &form.kwrpHideToolBox},
    };
    const auto& [part, mouse] = OneOf(parts);
    if (!part->CanTakeFocus()) return;
    const auto place = [this] { return static_cast<float>(Below(3000) - 500); };
    switch (Below(8)) {
      case 0:
        mouse->DblClick.Raise();
        break;
      case 1:
        mouse->MouseLost.Raise();
        break;
      case 2:
        mouse->Click.Raise();
        break;
      default:
        mouse->MouseDown.Raise(1, Shift(), place(), place());
        mouse->MouseMove.Raise(static_cast<std::int16_t>(Below(4)), Shift(), place(), place());
        if (!IsOneIn(4)) mouse->MouseUp.Raise(IsOneIn(4) ? std::int16_t{2} : std::int16_t{1}, 0, place(), place());
        break;
    }
  }
  void LayLabels() { Form().Label1.Click.Raise(); }
  void SwitchProperties() {
    switch (Below(4)) {
      case 0:
        control->LetIsToolboxVisible(IsOneIn(2));
        break;
      case 1:
        control->LetIsToShowBackImage(IsOneIn(2));
        break;
      case 2:
        control->LetBGImage(IsOneIn(3) ? "" : documents.front());
        break;
      default:
        control->LetSignatureFilePath(IsOneIn(3) ? "" : documents.front());
        break;
    }
  }
  void SetFocus() {
    Control* const controls[] = {&Form().picCanvas, &Form().cmbZoomFactor, &Form().sldLineHeight, &Form().vScroll};
    Control* const chosen = OneOf(controls);
    if (chosen->CanTakeFocus()) chosen->ReceiveFocus();
  }

  std::mt19937 random;
  std::vector<std::string> documents;
};

}  // namespace kw::test
