// What a hand on the mouse makes on the page: strokes, texts, stamps, drags.

#include <memory>

#include "components/controls/CheckBox.h"
#include "components/controls/ImageCombo.h"
#include "drawing/Compositor.h"
#include "scene/CanvasItems.h"
#include "tests/drawing/PatternText.h"
#include "tests/support/Documents.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

constexpr std::int32_t SeenWidth = 200;
constexpr std::int32_t SeenHeight = 150;

void OpenForHand(EditorStage& stage, const char* tool) {
  stage.OpenLargePage();
  stage.Choose(tool);
}

void AddStrokes(std::vector<Scenario>& rows) {
  for (const char* const tool : {"Pen", "Rubber", "Line", "Rectangle", "Circle", "Text", "NoTools", "Image", "Fill"}) {
    rows.push_back(OfEditor(
        std::string("editor.stroke.") + tool, [=](EditorStage& stage) { OpenForHand(stage, tool); },
        [](EditorStage& stage) { stage.DragOut(20, 30, 90, 80); }));
    // The layer is there, and a later step of the stroke fails.
    rows.back().between["layers"] = {"2", "3", "4"};
  }
  rows.push_back(OfEditor(
      "editor.stroke.picked",
      [](EditorStage& stage) {
        OpenForHand(stage, "Rectangle");
        stage.DragOut(20, 30, 90, 80);
        stage.Choose("NoTools");
      },
      [](EditorStage& stage) {
        for (const auto& [index, layer] : stage.Form().TransLayers) {
          if (index > Layers::PageLayer) layer->UserPick();
        }
      }));
  rows.push_back(OfEditor(
      "editor.text",
      [](EditorStage& stage) {
        OpenForHand(stage, "Text");
        stage.DragOut(20, 30, 150, 80);
      },
      [](EditorStage& stage) {
        for (const auto& [index, layer] : stage.Form().TransLayers) {
          if (index <= Layers::PageLayer || !layer->IsTextEntry()) continue;
          layer->SetTyping(true);
          layer->Type("a text that is longer than a short string\nof two lines");
          layer->SetTyping(false);
        }
      }));
}

void AddStamps(std::vector<Scenario>& rows) {
  const auto setUp = [](EditorStage& stage) {
    OpenForHand(stage, "Stamp");
    stage.control->LetSignatureFilePath(stage.MakePicture("sign.bmp"));
  };
  for (const bool isSigned : {false, true}) {
    rows.push_back(OfEditor(isSigned ? "editor.stamp.signed" : "editor.stamp", setUp, [=](EditorStage& stage) {
      stage.desktop.formAnswers.clear();
      stage.desktop.formAnswers.emplace_back([=](DialogForm& dialog) {
        for (Control* const child : dialog.Children()) {
          if (auto* const combo = dynamic_cast<ImageCombo*>(child); combo != nullptr && child->Name() == "cmbStamps") {
            combo->UserChoose(4);
          }
          if (auto* const box = dynamic_cast<CheckBox*>(child); box != nullptr && isSigned != box->Value()) {
            box->UserToggle();
          }
        }
        if (dialog.Visible()) dialog.KeyDown.Raise(DialogForm::EnterKey, 0);
      });
      stage.Form().picCanvas.MouseDown.Raise(1, 0, 30, 40);
      stage.Form().picCanvas.MouseUp.Raise(1, 0, 30, 40);
    }));
    rows.back().between["layers"] = {"2", "3", "4"};
  }
}

// The canvas as it is painted, again and again from the same list of items.
void AddPainting(std::vector<Scenario>& rows) {
  rows.push_back(OfEditor(
      "editor.paint",
      [](EditorStage& stage) {
        OpenForHand(stage, "Circle");
        stage.DragOut(20, 30, 90, 80);
        stage.Choose("Text");
        stage.DragOut(100, 30, 150, 80);
        for (const auto& [index, layer] : stage.Form().TransLayers) layer->SetCaption("seen");
      },
      [compositor = std::make_shared<Compositor>(0)](EditorStage& stage) {
        const PixelRect area = {0, 0, SeenWidth, SeenHeight};
        Bitmap seen(SeenWidth, SeenHeight, 32);
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(SeenWidth) * SeenHeight);
        PatternText texts;
        compositor->Show(ItemsOf(stage.Form().picCanvas));
        compositor->Paint({pixels.data(), SeenWidth, area}, area, &texts);
        std::uint64_t sum = 0;
        for (const std::uint32_t pixel : pixels) sum = sum * 31 + (pixel & 0xFFFFFFU);
        stage.result = std::to_string(sum);
      }));
}

void AddCanvasWork(std::vector<Scenario>& rows) {
  rows.push_back(OfEditor(
      "editor.view", [](EditorStage& stage) { stage.OpenLargePage(); },
      [](EditorStage& stage) {
        EditorForm& form = stage.Form();
        form.editor.UserResize(700, 500);
        form.cmbZoomFactor.UserChoose(3);
        form.hScroll.UserSetValue(10);
        form.vScroll.UserSetValue(20);
        form.editor.UserResize(500, 400);
        form.editor.Paint.Raise();
        stage.desktop.FireTimers();
      }));
  rows.push_back(OfEditor(
      "editor.keys",
      [](EditorStage& stage) {
        OpenForHand(stage, "Rectangle");
        stage.DragOut(20, 30, 90, 80);
      },
      [](EditorStage& stage) {
        for (const int character : {1, 2, 3, 6, 22, 24, 25, 26, 27}) {
          stage.Form().picCanvas.KeyPress.Raise(static_cast<std::int16_t>(character));
        }
      }));
  rows.push_back(OfEditor(
      "editor.labels", [](EditorStage& stage) { stage.OpenLargePage(); },
      [](EditorStage& stage) { stage.control->LayerRoom().Label1_Click(); }));
  for (int count = 2; count < 60; ++count) rows.back().between["layers"].insert(std::to_string(count));
}

}  // namespace

std::vector<Scenario> DrawingScenarios() {
  std::vector<Scenario> rows;
  AddStrokes(rows);
  AddStamps(rows);
  AddPainting(rows);
  AddCanvasWork(rows);
  return rows;
}

}  // namespace kw::test
