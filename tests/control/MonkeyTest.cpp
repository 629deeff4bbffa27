// A hand and a host that do anything, at random, with what must always hold checked after each event. What happens
// follows from the seed alone. KW_MONKEY_SEED and KW_MONKEY_EVENTS ask for another run or a longer one.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <numeric>
#include <utility>

#include "annotated/AnnotatedPage.h"
#include "annotated/PageWatch.h"
#include "scene/Accessible.h"
#include "tests/control/MonkeyHand.h"
#include "tests/drawing/PatternText.h"
#include "tests/support/CommandCases.h"
#include "tests/support/Watched.h"

namespace kw::test {
namespace {

long NumberFrom(const char* variable, long otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtol(text, nullptr, 10);
}

class Monkey : public MonkeyHand {
public:
  using Action = void (Monkey::*)();
  struct Weighted {
    int weight;
    Action action;
  };

  void RunVerb() {
    const Dispatcher::Command* const command = Dispatcher::CommandOfVerb(1 + Below(9));
    if (control->TakesVerbs()) control->CommandRoom().ToolbarButtonClick(std::string(command->key));
  }
  void LetProperty() {
    const bool value = IsOneIn(2);
    switch (Below(7)) {
      case 0:
        control->LetEnabled(value);
        break;
      case 1:
        control->LetIsEditable(value);
        break;
      case 2:
        control->LetIsToLightenBackImage(value);
        break;
      case 3:
        control->LetIsOpenButtonVisible(value);
        break;
      case 4:
        control->LetIsToAllowChooseColor(value);
        break;
      case 5:
        control->LetMaxUndoLevels(static_cast<std::int16_t>(Below(65536) - 32768));
        break;
      default:
        control->SavePage();
        break;
    }
  }
  // As IDataObject gives it to a host.
  void TakePage() {
    const AnnotatedPage page(Form());
    if (page.IsEmpty()) return;
    std::int32_t rows = 0;
    PatternText texts;
    page.Draw(texts, [&](std::int32_t top, const Bitmap& band) {
      EXPECT_EQ(top, rows);
      EXPECT_EQ(band.Width(), page.Width());
      rows += band.Height();
      return !IsOneIn(50);
    });
    EXPECT_LE(rows, page.Height());
  }
  void Advise() {
    if (watch == nullptr) {
      watch = std::make_unique<PageWatch>(desktop, Form());
      watch->Changed.Connect([this] { Nest(); });
    } else if (IsOneIn(2)) {
      watch.reset();
    }
  }
  void AskAsAScreenReader() {
    const std::vector<AccessiblePart> parts = PartsOf(Form().picCanvas);
    for (const AccessiblePart& part : parts) {
      EXPECT_NE(part.item, nullptr);
      AccessibleOf(*part.item);
    }
    const AccessiblePart* const hit = PartAt(parts, Below(600) - 20, Below(600) - 20);
    EXPECT_TRUE(hit == nullptr || IsAccessiblePart(*hit->item));
  }
  void Persist() {
    RecordedBag bag;
    control->UserControl_WriteProperties(bag);
    if (IsOneIn(2)) control->UserControl_ReadProperties(bag);
  }
  // A host that goes back to the design of its form, and on again.
  void Design() {
    control->BeginDesign();
    for (int i = Below(6); i > 0; --i) {
      control->Design(PropertyId::IsToolboxVisible, IsOneIn(2));
      control->Design(PropertyId::BGImage, OneOf(documents));
      AskAsAScreenReader();
      TakePage();
      ResizeControl();
    }
    control->EndDesign();
    control->LetDesigned();
  }
  // What a host or the system does out of an event, a notice or a box.
  void Nest() {
    constexpr int Deepest = 3;
    if (depth >= Deepest || !IsOneIn(40)) return;
    ++depth;
    constexpr Action actions[] = {&Monkey::LetProperty, &Monkey::TakePage,  &Monkey::AskAsAScreenReader,
                                  &Monkey::RunVerb,     &Monkey::Open,      &Monkey::LetTimePass,
                                  &Monkey::Persist,     &Monkey::TurnPage,  &Monkey::SwitchProperties,
                                  &Monkey::MoveMouse,   &Monkey::LoseMouse, &Monkey::ResizeControl};
    (this->*OneOf(actions))();
    --depth;
  }
  // Most of what takes long leaves at once: a picture that is enlarged again and again is no use here.
  void AnswerParameters(DialogForm& dialog) {
    if (dialog.Caption() == "Resize" || IsOneIn(3)) dialog.UserClose();
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
    ASSERT_GE(form.PageIndex.Value(), form.PageIndex.Min());
    ASSERT_LE(form.PageIndex.Value(), form.PageIndex.Max());
    for (const auto& [index, layer] : form.TransLayers) {
      ASSERT_TRUE(std::isfinite(layer->Left()) && std::isfinite(layer->Top())) << index;
      ASSERT_TRUE(layer->Width() >= 0 && layer->Height() >= 0 && std::isfinite(layer->Width() + layer->Height()));
      if (!layer->HasPicture()) continue;
      const Bitmap picture = layer->Picture();
      ASSERT_TRUE(picture.Width() > 0 && picture.Height() > 0 && picture.Width() <= 32767 && picture.Height() <= 32767)
          << picture.Width() << " x " << picture.Height();
    }
  }

  void AnswerDialogs() {
    desktop.whileBoxIsUp = [this](const ScriptedDesktop::Box&) {
      Nest();
      desktop.answers = {static_cast<MessageAnswer>(Below(4))};
    };
    desktop.onParameters = [this](DialogForm& dialog) { AnswerParameters(dialog); };
    desktop.openAnswers.assign(1, [this](OpenDialog& dialog) { dialog.fileName = OneOf(documents); });
    desktop.fontAnswers.assign(1, [this](Font& font) { font.size = static_cast<float>(4 + Below(60)); });
    desktop.colourAnswers.assign(1, [this](Colour& colour) { colour = static_cast<Colour>(Below(0x1000000)); });
  }
  void AllowBoxes() {
    for (const CommandCase& row : CommandCases()) {
      for (const CommandBox& box : row.boxes) desktop.Allow(box.title + ": " + box.prompt);
    }
    for (const char* const notice :
         {": change the code below", "Zoom Error: Can not Zoom in more..", "Error: Can not Zoom out more..",
          "File Error: Invalid file format..", "File Open Error: File does not exist..",
          "Save changes..: Do you want to Save Current Page?",
          "Critical Error: There is not enough memory available to execute this task."}) {
      desktop.Allow(notice);
    }
    // Those of absurd coordinates, a missing file, a cancelled dialog, and a command without a page.
    for (const int number : {6, 380, 53, 32755, 91}) {
      desktop.Allow("Critical Error: Error Number : " + std::to_string(number));
    }
  }
  void ForgetRecords() {
    for (const int number : events.errors) ++errorCounts[number];
    events.Forget();
    desktop.Forget();
  }

  int depth = 0;
  std::unique_ptr<PageWatch> watch;
  std::map<int, int> errorCounts;
};

TEST_F(Monkey, NothingItDoesBreaksTheEditor) {
  const long eventCount = NumberFrom("KW_MONKEY_EVENTS", Amount(20000L, 12000L));
  const auto seed = static_cast<unsigned>(NumberFrom("KW_MONKEY_SEED", 20261121));
  std::cout << "KW_MONKEY_SEED=" << seed << " KW_MONKEY_EVENTS=" << eventCount << std::endl;
  random.seed(seed);
  documents = {MakeImage("page.bmp", 400, 300), MakeDocument("pages.tif", 4), folder.File("missing.tif")};
  WriteWhole(folder.File("bad.tif"), ReadWhole(documents[1]).substr(0, 200));
  documents.push_back(folder.File("bad.tif"));
  constexpr Weighted actions[] = {
      {20, &Monkey::Press},
      {60, &Monkey::MoveMouse},
      {20, &Monkey::Release},
      {6, &Monkey::ChooseTool},
      {3, &Monkey::ClickButton},
      {4, &Monkey::PressKey},
      {1, &Monkey::LoseMouse},
      {1, &Monkey::ChooseFromMenu},
      {3, &Monkey::LetTimePass},
      {3, &Monkey::Type},
      {1, &Monkey::TurnPage},
      {1, &Monkey::Zoom},
      {1, &Monkey::ResizeControl},
      {1, &Monkey::DragBorder},
      {1, &Monkey::Scroll},
      {1, &Monkey::SetLine},
      {1, &Monkey::SetFocus},
      {1, &Monkey::SwitchProperties},
      {3, &Monkey::UseToolBox},
      {1, &Monkey::RunVerb},
      {1, &Monkey::LetProperty},
      {1, &Monkey::TakePage},
      {1, &Monkey::AskAsAScreenReader},
      {1, &Monkey::Advise},
      {1, &Monkey::Persist},
  };
  const int weights = std::accumulate(std::begin(actions), std::end(actions), 0,
                                      [](int sum, const Weighted& one) { return sum + one.weight; });
  AllowBoxes();
  events.onEvent = [this](const std::string&) { Nest(); };
  control->OpenFile(documents.front());
  for (long i = 0; i < eventCount; ++i) {
    AnswerDialogs();
    if (i % 500 == 499) {
      Open();
    } else if (i % 300 == 299) {
      LayLabels();
    } else if (i % 700 == 699) {
      Design();
    } else {
      int pick = Below(weights);
      const auto* const chosen =
          std::ranges::find_if(actions, [&pick](const Weighted& one) { return (pick -= one.weight) < 0; });
      (this->*chosen->action)();
    }
    CheckWhatAlwaysHolds();
    if (HasFatalFailure() || HasNonfatalFailure()) FAIL() << "at event " << i;
    ForgetRecords();
    // A reported error disables the control until its host enables it again.
    if (!control->GetEnabled() && !IsOneIn(4)) control->LetEnabled(true);
    if (!control->GetIsEditable() && !IsOneIn(4)) control->LetIsEditable(true);
    if (i % 1000 == 999) ForgetTrace();
  }
  events.onEvent = {};
  watch.reset();
  for (const auto& [number, count] : errorCounts) std::cout << "error " << number << ": " << count << " times\n";
}

}  // namespace
}  // namespace kw::test
