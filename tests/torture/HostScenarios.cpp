// What a host asks of the control: its life, what it keeps, printing, scanning, the page for other programs.

#include <memory>

#include "annotated/AnnotatedPage.h"
#include "annotated/PageWatch.h"
#include "scene/Accessible.h"
#include "tests/drawing/PatternText.h"
#include "tests/support/Documents.h"
#include "tests/support/EditorFixture.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

// A scanner that always has an image.
class ReadyScanner final : public ScannerDriver {
public:
  explicit ReadyScanner(ScriptedDesktop& scripted) : desktop(scripted) {}
  void SelectSource() override {}
  bool Acquire() override {
    desktop.clipboardFormats.insert(ClipboardDib);
    return true;
  }
  void CancelAcquisition() override {}

private:
  ScriptedDesktop& desktop;
};

void OpenWithLayers(EditorStage& stage) {
  stage.OpenLargePage();
  stage.Choose("Circle");
  stage.DragOut(20, 30, 90, 80);
}

void AddLife(std::vector<Scenario>& rows) {
  const auto nothing = [](EditorStage&) {};
  rows.push_back(OfEditor("host.life", nothing, [](EditorStage& stage) {
    KwEditorLayers other(stage.desktop, stage.events);
    other.UserControl_Initialize();
    other.Root().UserResize(600, 400);
    other.UserControl_Terminate();
    stage.result = "lived";
  }));
  rows.push_back(OfEditor("host.load", nothing, [](EditorStage& stage) {
    RecordedBag bag;
    bag.values["MaxUndoLevels"] = "9";
    stage.control->UserControl_ReadProperties(bag);
  }));
  rows.push_back(OfEditor("host.save", nothing, [](EditorStage& stage) {
    RecordedBag bag;
    if (!stage.control->UserControl_WriteProperties(bag)) return;
    stage.result = std::to_string(bag.values.size());
  }));
  // Behind a value that could not be saved, the control is disabled; that is saved, too.
  for (int count = 0; count < 10; ++count) rows.back().between["result"].insert(std::to_string(count));
  rows.push_back(OfEditor("host.design", nothing, [](EditorStage& stage) {
    KwEditorLayers other(stage.desktop, stage.events);
    other.BeginDesign();
    other.Design(PropertyId::IsEditable, false);
    other.Design(PropertyId::MaxUndoLevels, std::int16_t{8});
    RecordedBag bag;
    if (!other.UserControl_WriteProperties(bag)) Raise(ErrorNumber::OutOfMemory);
    other.EndDesign();
    other.UserControl_Initialize();
    other.LetDesigned();
    other.UserControl_Terminate();
    stage.result = std::to_string(other.GetMaxUndoLevels()) + " " + std::to_string(bag.values.size());
  }));
}

void AddDevices(std::vector<Scenario>& rows) {
  rows.push_back(OfEditor(
      "host.print", [](EditorStage& stage) { stage.control->OpenFile(stage.MakeDocument("scan.tif", 3)); },
      [](EditorStage& stage) {
        stage.desktop.printedJobs.clear();
        stage.desktop.printerAnswers.clear();
        stage.desktop.printerAnswers.emplace_back([](PrinterDialog& dialog) {
          dialog.fromPage = 1;
          dialog.toPage = 3;
        });
        BarOf(stage.Form().tbrBasicTools, "PrinterSetup").UserClick("PrinterSetup");
      }));
  rows.push_back(OfEditor(
      "host.scan",
      [](EditorStage& stage) {
        stage.OpenLargePage();
        stage.desktop.scannerMaker = [&stage] { return std::make_unique<ReadyScanner>(stage.desktop); };
      },
      [](EditorStage& stage) {
        stage.Form().tbrMoreTools.ButtonClick.Raise("SelectScanner");
        stage.Form().tbrMoreTools.ButtonClick.Raise("Acquire");
      }));
  rows.push_back(OfEditor(
      "host.paste", [](EditorStage& stage) { stage.OpenLargePage(); },
      [](EditorStage& stage) {
        stage.desktop.clipboardFormats = {ClipboardDib};
        stage.desktop.FireTimers();
        stage.Form().mnuPasteSelectedArea.UserChoose();
      }));
}

std::string TellPart(const AccessibleItem& item) {
  return std::to_string(static_cast<int>(item.role)) + item.name + item.value + ";";
}

std::string TellAll(const Control& control) {
  std::string told = TellPart(AccessibleOf(control));
  for (const Control* const child : control.Children()) told += TellAll(*child);
  return told;
}

void AddWhatOthersSee(std::vector<Scenario>& rows) {
  rows.push_back(OfEditor("host.accessible", OpenWithLayers, [](EditorStage& stage) {
    std::string told = TellAll(stage.Form().editor);
    for (const AccessiblePart& part : PartsOf(stage.Form().picCanvas)) told += TellPart(part);
    stage.result = std::to_string(std::hash<std::string>()(told));
  }));
  rows.push_back(OfEditor("host.page.bands", OpenWithLayers, [](EditorStage& stage) {
    PatternText texts;
    std::string told;
    AnnotatedPage(stage.Form())
        .Draw(
            texts,
            [&](std::int32_t, const Bitmap& band) {
              told += Told(band) + ", ";
              return true;
            },
            std::size_t{100'000});
    stage.result = told;
  }));
  rows.push_back(OfEditor("host.page.tiff", OpenWithLayers, [](EditorStage& stage) {
    PatternText texts;
    MemoryFile file;
    AnnotatedPage(stage.Form()).WriteTiff(texts, file);
    std::uint64_t sum = 0;
    for (const std::uint8_t byte : file.Bytes()) sum = sum * 31 + byte;
    stage.result = std::to_string(file.Bytes().size()) + " bytes, " + std::to_string(sum);
  }));
  rows.push_back(OfEditor("host.page.watch", OpenWithLayers, [](EditorStage& stage) {
    int told = 0;
    PageWatch watch(stage.desktop, stage.Form());
    watch.Changed.Connect([&told] { ++told; });
    stage.Form().TransLayers(Layers::PageLayer).SetPicture(StagePicture());
    stage.desktop.FireTimers();
    stage.Form().TransLayers(Layers::PageLayer).SetPicture({});
    stage.desktop.FireTimers();
    stage.result = std::to_string(told);
  }));
  rows.back().between["page"] = {Told(StagePicture())};
}

}  // namespace

std::vector<Scenario> HostScenarios() {
  std::vector<Scenario> rows;
  AddLife(rows);
  AddDevices(rows);
  AddWhatOthersSee(rows);
  return rows;
}

}  // namespace kw::test
