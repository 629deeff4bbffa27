// What the control does with documents: its life, opening, pages, commands, properties.

#include <utility>

#include "components/controls/NumberField.h"
#include "components/engine/KWPicEd.h"
#include "picture/Signature.h"
#include "tests/support/Documents.h"
#include "tests/support/EditorFixture.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

void OpenThreePages(EditorStage& stage) { stage.control->OpenFile(stage.MakeDocument("scan.tif", 3)); }

// While a document is opened or a page is turned there is no page for a time.
Scenario Opening(std::string name, EditorStage::Procedure setUp, EditorStage::Procedure action) {
  Scenario row = OfEditor(std::move(name), std::move(setUp), std::move(action));
  row.between["page"] = {"none"};
  row.between["background"] = {"none"};
  row.between["engine"] = {"none"};
  row.between["layers"] = {"2"};
  for (const char* const range : {"0 to 0", "0 to 1", "0 to 3", "1 to 1", "1 to 2", "1 to 3"}) {
    row.between["range"].insert(range);
  }
  for (const char* const number : {"0", "1", "2", "3"}) row.between["page number"].insert(number);
  for (int page = 1; page <= 3; ++page) row.between["engine"].insert(Told(PageOfGreyTiff(page)));
  for (int page = 1; page <= 3; ++page) row.between["page"].insert(Told(PageOfGreyTiff(page)));
  return row;
}

void AddOpenings(std::vector<Scenario>& rows) {
  for (const char* const extension : {"fmf", "tif", "jpg", "gif", "bmp"}) {
    const std::string name = std::string("page.") + extension;
    rows.push_back(Opening(
        "editor.open." + std::string(extension), [=](EditorStage& stage) { stage.MakePicture(name); },
        [=](EditorStage& stage) { stage.control->OpenFile(stage.File(name)); }));
  }
  rows.push_back(Opening(
      "editor.open.another",
      [](EditorStage& stage) {
        stage.OpenLargePage();
        stage.Choose("Rectangle");
        stage.DragOut(10, 10, 60, 60);
        stage.MakePicture("other.bmp");
      },
      [](EditorStage& stage) { stage.control->OpenFile(stage.File("other.bmp")); }));
  rows.push_back(Opening(
      "editor.split.tif", [](EditorStage& stage) { stage.MakeDocument("scan.tif", 3); },
      [](EditorStage& stage) { stage.control->OpenFile(stage.File("scan.tif")); }));
  rows.push_back(Opening(
      "editor.split.fmf",
      [](EditorStage& stage) {
        for (int page = 1; page <= 3; ++page) {
          PictureDocument one;
          one.Replace(PageOfGreyTiff(page));
          one.Append(stage.File("scan.fmf"));
        }
      },
      [](EditorStage& stage) { stage.control->OpenFile(stage.File("scan.fmf")); }));
  rows.push_back(Opening("editor.open.first_page_file", OpenThreePages,
                         [](EditorStage& stage) { stage.control->OpenFile(stage.File("scan_Page_1.tif")); }));
  rows.push_back(Opening("editor.turn", OpenThreePages, [](EditorStage& stage) {
    stage.Form().PageIndex.UserSetValue(stage.Form().PageIndex.Value() == 3 ? 2 : 3);
  }));
}

void AddCommands(std::vector<Scenario>& rows) {
  const auto setUp = [](EditorStage& stage) { stage.control->OpenFile(stage.MakePicture("page.bmp")); };
  for (const char* const key :
       {"Blur", "Colorize", "Contrast", "DecreaseBpp", "Dither", "Erode", "GrayScale", "IncreaseBpp", "Invert",
        "Option", "Rotate", "Resize", "Threshold", "HorizontalFlip", "Flip"}) {
    // The two halves of "Flip", and the change of depth behind each effect.
    rows.push_back(OfEditor("editor.command." + std::string(key), setUp,
                            [=](EditorStage& stage) { stage.Form().tbrMoreTools.ButtonClick.Raise(key); }));
    Scenario& row = rows.back();
    for (const int depth : {1, 4, 8, 24, 32}) {
      PictureDocument engine;
      engine.Replace(StagePicture());
      if (std::string_view(key) == "Flip") {
        for (const char* const half : {"HorizontalFlip", "VerticalFlip"}) {
          engine.Replace(StagePicture());
          engine.Apply(*FindEffect(half), StandardValues(*FindEffect(half)));
          row.between["engine"].insert(Told(engine.Current()));
        }
      } else if (const Effect* const effect = FindEffect(key)) {
        engine.Apply(*effect, StandardValues(*effect));
      }
      row.between["engine"].insert(Told(engine.Current()));
      auto bits = static_cast<std::int16_t>(depth);
      engine.ConvertToBitsPerPixel(bits);
      row.between["engine"].insert(Told(engine.Current()));
    }
    // The second half of the bracket shows what the engine has.
    row.between["page"] = row.between["engine"];
  }
  for (const char* const key : {"ZoomIn", "ZoomOut", "ShowHideTools", "ShowHideBackImage", "Save", "Clear", "Paste"}) {
    rows.push_back(OfEditor("editor.command." + std::string(key), setUp,
                            [=](EditorStage& stage) { stage.Form().tbrMoreTools.ButtonClick.Raise(key); }));
  }
  rows.push_back(OfEditor(
      "editor.dialog.typed",
      [=](EditorStage& stage) {
        setUp(stage);
        stage.desktop.onParameters = [&stage](DialogForm& dialog) {
          dialog.UserScale(2);
          for (Control* const child : dialog.Children()) {
            auto* const number = dynamic_cast<NumberField*>(child);
            if (number != nullptr && number->Name() == "Angle") number->UserType("90");
          }
          stage.desktop.FireTimers();
        };
      },
      [](EditorStage& stage) { stage.Form().tbrMoreTools.ButtonClick.Raise("Rotate"); }));
  constexpr double right[] = {90};
  PictureDocument engine;
  engine.Replace(StagePicture());
  engine.Apply(*FindEffect("Rotate"), right);
  rows.back().between["engine"].insert(Told(engine.Current()));
}

void AddProperties(std::vector<Scenario>& rows) {
  rows.push_back(OfEditor(
      "editor.background",
      [](EditorStage& stage) {
        stage.OpenLargePage();
        stage.MakePicture("back.bmp");
      },
      [](EditorStage& stage) {
        stage.control->LetBGImage(stage.File("back.bmp"));
        stage.control->LetIsToShowBackImage(true);
      }));
  rows.back().isSilent = true;
  rows.push_back(OfEditor(
      "editor.signature", [](EditorStage& stage) { stage.MakePicture("sign.bmp"); },
      [](EditorStage& stage) { stage.control->LetSignatureFilePath(stage.File("sign.bmp")); }));
  rows.back().isSilent = true;
  // It is used as it is if its paper could not be made white.
  rows.back().between["signature"].insert(Told(SignatureInk(StagePicture())));
  rows.push_back(OfEditor(
      "editor.properties", [](EditorStage& stage) { stage.OpenLargePage(); },
      [](EditorStage& stage) {
        KwEditorLayers& control = *stage.control;
        control.LetIsEditable(false);
        control.LetIsEditable(true);
        control.LetIsToolboxVisible(false);
        control.LetIsToolboxVisible(true);
        control.LetIsOpenButtonVisible(true);
        control.LetIsToAllowChooseColor(false);
        control.LetIsToAllowChooseColor(true);
        control.LetIsToLightenBackImage(true);
        control.LetIsSaveButtonEnabled(true);
        control.LetMaxUndoLevels(7);
        control.LetAppDir(control.GetAppDir());
      }));
}

}  // namespace

std::vector<Scenario> DocumentScenarios() {
  std::vector<Scenario> rows;
  AddOpenings(rows);
  AddCommands(rows);
  AddProperties(rows);
  return rows;
}

}  // namespace kw::test
