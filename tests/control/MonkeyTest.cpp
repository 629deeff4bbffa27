// A hand that does anything: mouse, keys, tools, menus, timers, pages, boxes, at random, with what must always hold
// checked after each event. KW_MONKEY_EVENTS and KW_MONKEY_SEED ask for a longer run or another one.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <map>
#include <numeric>
#include <random>
#include <utility>

#include "tests/support/LayersFixture.h"
#include "tests/support/Watched.h"

namespace kw::test {
namespace {

long NumberFrom(const char* variable, long otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtol(text, nullptr, 10);
}

class Monkey : public EditorTest {
public:
  using Action = void (Monkey::*)();
  struct Weighted {
    int weight;
    Action action;
  };

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
    // A picture that is enlarged again and again is no use here.
    if (!key.empty() && key != "Resize" && key != "IncreaseBpp") bar.UserClick(key);
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
    std::vector<Timer*> timers;
    for (const auto& [timer, interval] : desktop.runningTimers) timers.push_back(timer);
    if (!timers.empty()) OneOf(timers)->Fire();
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

  void CheckWhatAlwaysHolds() {
    EditorForm& form = Form();
    Layers& layers = control->LayerRoom();
    std::vector<std::int16_t> order = layers.ZOrder().Order();
    std::vector<std::int16_t> loaded;
    for (const auto& [index, layer] : form.TransLayers) {
      if (index != 0) loaded.push_back(static_cast<std::int16_t>(index));
    }
    ASSERT_FALSE(order.empty());
    ASSERT_EQ(order.front(), Layers::PageLayer);
    std::ranges::sort(order);
    ASSERT_EQ(order, loaded) << "the stacking order is one of all layers";
    ASSERT_TRUE(form.TransLayers.IsLoaded(layers.CurrentLayerIndex()));
    const auto& tools = form.tbrEditingTools.Buttons();
    ASSERT_LE(std::ranges::count_if(tools, &ToolBar::Button::pressed), 1);
    ASSERT_FALSE(form.TransLayers(0).HasPicture()) << "the template";
    ASSERT_TRUE(!form.kwrpColors.Visible() || form.editor.ActiveControl() == &form.kwrpColors);
    ASSERT_GE(form.sldLineHeight.Value(), form.sldLineHeight.Min());
    ASSERT_LE(form.sldLineHeight.Value(), form.sldLineHeight.Max());
    int picked = 0;
    for (const auto& [index, layer] : form.TransLayers) picked += layer->SelectionFrame() != 0 ? 1 : 0;
    ASSERT_LE(picked, 1);
  }

  void AnswerDialogs() {
    desktop.whileBoxIsUp = [this](const ScriptedDesktop::Box&) {
      desktop.answers = {static_cast<MessageAnswer>(Below(4))};
    };
    desktop.openAnswers.assign(1, [this](OpenDialog& dialog) { dialog.fileName = OneOf(documents); });
    desktop.fontAnswers.assign(1, [this](Font& font) { font.size = static_cast<float>(4 + Below(60)); });
    desktop.colourAnswers.assign(1, [this](Colour& colour) { colour = static_cast<Colour>(Below(0x1000000)); });
  }

  std::mt19937 random;
  std::vector<std::string> documents;
  std::map<int, int> errorCounts;
};

TEST_F(Monkey, NothingItDoesBreaksTheEditor) {
  const long eventCount = NumberFrom("KW_MONKEY_EVENTS", Amount(20000L, 12000L));
  const auto seed = static_cast<unsigned>(NumberFrom("KW_MONKEY_SEED", 20261121));
  std::cout << "seed " << seed << ", " << eventCount << " events\n";
  random.seed(seed);
  documents = {MakeImage("page.bmp", 400, 300), MakeDocument("pages.tif", 4), folder.File("missing.tif")};
  constexpr Weighted actions[] = {
      {20, &Monkey::Press},        {60, &Monkey::MoveMouse},     {20, &Monkey::Release},
      {6, &Monkey::ChooseTool},    {3, &Monkey::ClickButton},    {4, &Monkey::PressKey},
      {1, &Monkey::LoseMouse},     {1, &Monkey::ChooseFromMenu}, {3, &Monkey::LetTimePass},
      {3, &Monkey::Type},          {1, &Monkey::TurnPage},       {1, &Monkey::Zoom},
      {1, &Monkey::ResizeControl}, {1, &Monkey::DragBorder},     {1, &Monkey::Scroll},
      {1, &Monkey::SetLine},       {1, &Monkey::SetFocus},       {1, &Monkey::SwitchProperties},
      {3, &Monkey::UseToolBox},
  };
  const int weights = std::accumulate(std::begin(actions), std::end(actions), 0,
                                      [](int sum, const Weighted& one) { return sum + one.weight; });
  control->OpenFile(documents.front());
  for (long i = 0; i < eventCount; ++i) {
    AnswerDialogs();
    if (i % 500 == 499) {
      Open();
    } else if (i % 300 == 299) {
      LayLabels();
    } else {
      int pick = Below(weights);
      const auto* const chosen =
          std::ranges::find_if(actions, [&pick](const Weighted& one) { return (pick -= one.weight) < 0; });
      (this->*chosen->action)();
    }
    CheckWhatAlwaysHolds();
    if (HasFatalFailure() || HasNonfatalFailure()) FAIL() << "at event " << i;
    for (const int number : std::exchange(events.errors, {})) ++errorCounts[number];
    // A reported error disables the control until its host enables it again.
    if (!control->GetEnabled()) control->LetEnabled(true);
    if (!control->GetIsEditable()) control->LetIsEditable(true);
    if (i % 1000 == 999) ForgetTrace();
    desktop.boxes.clear();
  }
  // The errors that absurd coordinates, a missing file and a cancelled dialog are to raise.
  for (const auto& [number, count] : errorCounts) {
    std::cout << "error " << number << ": " << count << " times\n";
    EXPECT_TRUE(number == 6 || number == 380 || number == 481 || number == 53 || number == 32755 || number == 91)
        << number;
  }
}

}  // namespace
}  // namespace kw::test
