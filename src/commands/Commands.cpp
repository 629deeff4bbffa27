// The command table and what its rows run.

#include <algorithm>
#include <vector>

#include "commands/Dispatcher.h"
#include "components/base/Arithmetic.h"
#include "document/GraphicFiles.h"
#include "picture/effects/Effect.h"

namespace kw {
namespace {

using Command = Dispatcher::Command;

// Inserts a row for each effect that has none here or among the others, before the first row with a greater key.
void AddEffects(std::vector<Command>& rows, const std::vector<Command>& others,
                void (Dispatcher::*run)(const Command&, Procedure&)) {
  for (const Effect& effect : Effects()) {
    const auto isItsOwn = [&](const Command& row) { return row.key == effect.command; };
    if (std::ranges::any_of(rows, isItsOwn) || std::ranges::any_of(others, isItsOwn)) continue;
    const auto isGreater = [&](const Command& row) { return row.key > effect.command; };
    rows.insert(std::ranges::find_if(rows, isGreater), {effect.command, run, {effect.command}});
  }
}

// Adds a row for each tool: one of these, or one that runs nothing, because the group of buttons has chosen the tool.
void AddTools(std::vector<Command>& rows, const std::vector<Command>& running) {
  for (const Tool* tool : ToolsBy(&Tool::buttonPlace)) {
    const auto own = std::ranges::find(running, tool->key, &Command::key);
    rows.push_back(own == running.end() ? Command{tool->key, nullptr} : *own);
  }
}

}  // namespace

// An effect has a row here only if it is a verb, if more than the effect runs, or if its order is not that of the keys.
std::vector<Dispatcher::Command> Dispatcher::AllCommands() {
  constexpr auto engine = &Dispatcher::RunOperations;
  constexpr auto depth = &Dispatcher::ChangeDepth;
  std::vector<Command> commands{
      {"Save", &Dispatcher::Save},
      {"Print", &Dispatcher::Print},
      {"PrinterSetup", &Dispatcher::RaisePrinterSetup},
      {"Clear", &Dispatcher::ShowSmallKey},
      {"Cut", &Dispatcher::ShowSmallKey},
      {"Copy", &Dispatcher::ShowSmallKey},
      {"Paste", &Dispatcher::Paste},
      {"Undo", &Dispatcher::ShowSmallKey},
      {"Redo", &Dispatcher::ShowSmallKey},
      {"ZoomIn", &Dispatcher::ZoomIn},
      {"ZoomOut", &Dispatcher::ZoomOut},
      {"ShowHideTools", &Dispatcher::ShowHideTools},
      {"ShowHideBackImage", &Dispatcher::ShowHideBackImage},
      {"PrevPage", &Dispatcher::PrevPage},
      {"NextPage", &Dispatcher::NextPage},
      {"SelectScanner", &Dispatcher::RaiseSelectScanner, {}, 1, "&Scanner Setup..."},
      {"Acquire", &Dispatcher::RaiseAcquire, {}, 2, "&Acquire Image from Scanner..."},
      {"Capture", &Dispatcher::ShowKey, {}, 3, "&Capture"},
      {"Rotate", engine, {"Rotate"}, 4, "&Rotate..."},
      {"Resize", engine, {"Resize"}, 5, "Resi&ze..."},
      {"HorizontalFlip", engine, {"HorizontalFlip"}, 6, "&Horizontal Flip"},
      {"VerticalFlip", engine, {"VerticalFlip"}, 7, "&Vertical Flip"},
      {"Flip", engine, {"HorizontalFlip", "VerticalFlip"}, 8, "&Flip Both Ways"},
      {"Erode", engine, {"Erode"}, 9, "&Erode"},
  };
  AddTools(commands,
           {{"NoTools", &Dispatcher::ShowKey}, {"Signature", &Dispatcher::Signature}, {"Stamp", &Dispatcher::Stamp}});
  commands.insert(commands.end(),
                  {{"NoFillInside", nullptr}, {"FillInside", nullptr}, {"FontSettings", &Dispatcher::FontSettings}});
  std::vector<Command> effects{
      {"DecreaseBpp", depth, {"DecreaseBpp"}},
      {"IncreaseBpp", depth, {"IncreaseBpp"}},
      {"Soften", engine, {"Soften"}},
      {"Sharpen", engine, {"Sharpen"}},
  };
  AddEffects(effects, commands, engine);
  commands.insert(commands.end(), effects.begin(), effects.end());
  commands.push_back({"Open", &Dispatcher::Open});
  return commands;
}

std::span<const Dispatcher::Command> Dispatcher::Commands() {
  static const std::vector<Command> commands = AllCommands();
  return commands;
}

void Dispatcher::Save(const Command& /*row*/, Procedure& run) {
  run([&] { state.SavePage(); });
}

void Dispatcher::Print(const Command& /*row*/, Procedure& run) {
  run([&] { desktop.EndPrintJob(); });
}

// Not const, for a place in the table.
// NOLINTBEGIN(readability-make-member-function-const)
void Dispatcher::RaisePrinterSetup(const Command& /*row*/, Procedure& run) {
  run([&] { PrinterSetup.Raise(); });
}
void Dispatcher::RaiseSelectScanner(const Command& /*row*/, Procedure& run) {
  run([&] { SelectScanner.Raise(); });
}
void Dispatcher::RaiseAcquire(const Command& /*row*/, Procedure& run) {
  run([&] { Acquire.Raise(); });
}
// NOLINTEND(readability-make-member-function-const)

void Dispatcher::ShowSmallKey(const Command& row, Procedure& run) {
  run([&] {
    std::string prompt(row.key);
    prompt[0] = static_cast<char>(prompt[0] - 'A' + 'a');
    desktop.ShowMessageBox(prompt);
  });
}

void Dispatcher::ShowKey(const Command& row, Procedure& run) {
  run([&] { desktop.ShowMessageBox(std::string(row.key)); });
}

void Dispatcher::Paste(const Command& /*row*/, Procedure& run) {
  run([&] { desktop.ShowMessageBox("mnuPasteSelectedArea_Click"); });
}

void Dispatcher::ZoomIn(const Command& /*row*/, Procedure& run) {
  run([&] { zoom.ZoomIn(); });
}
void Dispatcher::ZoomOut(const Command& /*row*/, Procedure& run) {
  run([&] { zoom.ZoomOut(); });
}

void Dispatcher::ShowHideTools(const Command& /*row*/, Procedure& run) {
  run([&] { state.LetIsToolboxVisible(!state.GetIsToolboxVisible()); });
}

void Dispatcher::ShowHideBackImage(const Command& /*row*/, Procedure& run) {
  run([&] { state.LetIsToShowBackImage(!state.GetIsToShowBackImage()); });
}

void Dispatcher::PrevPage(const Command& /*row*/, Procedure& run) { StepPage(run, -1); }
void Dispatcher::NextPage(const Command& /*row*/, Procedure& run) { StepPage(run, +1); }

void Dispatcher::StepPage(Procedure& run, int step) {
  run([&] { form.PageIndex.SetValue(ToInteger16(ToInteger16(form.PageIndex.Value()) + step)); });
}

// Each step is a statement of its own: after a failed operation the bracket is closed all the same. It brings the
// result of the last one to the page's depth.
void Dispatcher::RunOperations(const Command& row, Procedure& run) {
  run([&] { bracket.DoPreCommandProcess(); });
  // The unused ones are the last.
  std::size_t left =
      row.operations.size() - static_cast<std::size_t>(std::ranges::count(row.operations, std::string_view()));
  for (const std::string_view operation : row.operations) {
    run([&] {
      if (!operation.empty()) KWPic.Apply(operation, --left == 0 ? bracket.BitsPerPixel() : std::int16_t{0});
    });
  }
  run([&] { bracket.DoPostCommandProcess(); });
}

// The depth that the operation gave is the one to be written back in.
void Dispatcher::ChangeDepth(const Command& row, Procedure& run) {
  run([&] { bracket.DoPreCommandProcess(); });
  run([&] { KWPic.Apply(row.operations[0]); });
  run([&] { bracket.SetBitsPerPixel(KWPic.BitsPerPixel()); });
  run([&] { bracket.DoPostCommandProcess(); });
}

void Dispatcher::Signature(const Command& /*row*/, Procedure& run) {
  run([&] { form.tbrFillPattern.SetButtonPressed("NoFillInside", true); });
  run([&] { tbrFillPattern_ButtonClick("NoFillInside"); });
}

void Dispatcher::Stamp(const Command& /*row*/, Procedure& run) {
  run([&] { form.tbrEditingTools.SetButtonPressed("Stamp", true); });
}

void Dispatcher::FontSettings(const Command& /*row*/, Procedure& run) {
  run([&] { isFontDialogUp = true; });
  run([&] {
    const std::uint64_t opening = openings.Count();
    Font font = layers.CurrentLayer().TextFont();
    desktop.ShowFont(font);  // cancelled, it leaves the font as it is
    // While the dialog was up, another document may have been opened.
    if (openings.Count() == opening) layers.CurrentLayer().SetTextFont(font);
  });
  run([&] { isFontDialogUp = false; });
}

void Dispatcher::Open(const Command& /*row*/, Procedure& run) {
  OpenDialog dialog;
  dialog.filter = SupportedGraphicFiles;
  dialog.filterIndex = 2;
  if (!run([&] { AskForFile(dialog); })) return;
  run([&] { document.OpenFile(dialog.fileName); });
  run([&] { document.SetFirstFilePath(dialog.fileName); });
}

// Asks again until there is such a file. A cancelled dialog is its error.
void Dispatcher::AskForFile(OpenDialog& dialog) {
  for (;;) {
    if (!desktop.ShowOpen(dialog)) Raise(ErrorNumber::Cancelled);
    if (!desktop.DirectoryLookUp(dialog.fileName).empty()) return;
    desktop.ShowMessageBox("File does not exist..\r\nPlease select the filename again..", "File Open Error");
  }
}

}  // namespace kw
