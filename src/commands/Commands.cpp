// The command table and what its rows run.

#include <array>

#include "commands/Dispatcher.h"
#include "components/Arithmetic.h"
#include "document/GraphicFiles.h"
#include "trap/Procedure.h"

namespace kw {

std::span<const Dispatcher::Command> Dispatcher::Commands() {
  constexpr auto engine = &Dispatcher::RunOperations;
  constexpr auto depth = &Dispatcher::ChangeDepth;
  static constexpr std::array commands = std::to_array<Command>({
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
      {"SelectScanner", &Dispatcher::RaiseSelectScanner},
      {"Acquire", &Dispatcher::RaiseAcquire},
      {"Capture", &Dispatcher::ShowKey},
      {"Rotate", engine, {"Rotate"}},
      {"Resize", engine, {"Resize"}},
      {"HorizontalFlip", engine, {"HorizontalFlip"}},
      {"VerticalFlip", engine, {"VerticalFlip"}},
      {"Flip", engine, {"HorizontalFlip", "VerticalFlip"}},
      {"Erode", engine, {"Erode"}},
      {"NoTools", &Dispatcher::ShowKey},
      {"Chooser", nullptr},
      {"Fill", nullptr},
      {"Pen", nullptr},
      {"Text", nullptr},
      {"Line", nullptr},
      {"Rectangle", nullptr},
      {"Circle", nullptr},
      {"Rubber", nullptr},
      {"Image", nullptr},
      {"Signature", &Dispatcher::Signature},
      {"Stamp", &Dispatcher::Stamp},
      {"NoFillInside", nullptr},
      {"FillInside", nullptr},
      {"FontSettings", &Dispatcher::FontSettings},
      {"Blur", engine, {"Blur"}},
      {"Colorize", engine, {"Colorize"}},
      {"Contrast", engine, {"Contrast"}},
      {"Darken", engine, {"Darken"}},
      {"DecreaseBpp", depth, {"DecreaseBpp"}},
      {"Dilate", engine, {"Dilate"}},
      {"Dither", engine, {"Dither"}},
      {"Edge", engine, {"Edge"}},
      {"Emboss", engine, {"Emboss"}},
      {"GrayScale", engine, {"GrayScale"}},
      {"IncreaseBpp", depth, {"IncreaseBpp"}},
      {"Invert", engine, {"Invert"}},
      {"Lighten", engine, {"Lighten"}},
      {"Option", engine, {"Option"}},
      {"Soften", engine, {"Soften"}},
      {"Sharpen", engine, {"Sharpen"}},
      {"Threshold", engine, {"Threshold"}},
      {"Open", &Dispatcher::Open},
  });
  return commands;
}

void Dispatcher::Save(const Command& /*row*/) { properties.SavePage(); }

void Dispatcher::Print(const Command& /*row*/) { desktop.EndPrintJob(); }

// Not const, for a place in the table.
// NOLINTBEGIN(readability-make-member-function-const)
void Dispatcher::RaisePrinterSetup(const Command& /*row*/) { PrinterSetup.Raise(); }
void Dispatcher::RaiseSelectScanner(const Command& /*row*/) { SelectScanner.Raise(); }
void Dispatcher::RaiseAcquire(const Command& /*row*/) { Acquire.Raise(); }
// NOLINTEND(readability-make-member-function-const)

void Dispatcher::ShowSmallKey(const Command& row) {
  std::string prompt(row.key);
  prompt[0] = static_cast<char>(prompt[0] - 'A' + 'a');
  desktop.ShowMessageBox(prompt);
}

void Dispatcher::ShowKey(const Command& row) { desktop.ShowMessageBox(std::string(row.key)); }

void Dispatcher::Paste(const Command& /*row*/) { desktop.ShowMessageBox("mnuPasteSelectedArea_Click"); }

void Dispatcher::ZoomIn(const Command& /*row*/) { zoom.ZoomIn(); }
void Dispatcher::ZoomOut(const Command& /*row*/) { zoom.ZoomOut(); }

void Dispatcher::ShowHideTools(const Command& /*row*/) {
  properties.LetIsToolboxVisible(!properties.GetIsToolboxVisible());
}

void Dispatcher::ShowHideBackImage(const Command& /*row*/) {
  properties.LetIsToShowBackImage(!properties.GetIsToShowBackImage());
}

void Dispatcher::PrevPage(const Command& /*row*/) { StepPage(-1); }
void Dispatcher::NextPage(const Command& /*row*/) { StepPage(+1); }

void Dispatcher::StepPage(int step) {
  form.PageIndex.SetValue(ToInteger16(ToInteger16(form.PageIndex.Value()) + step));
}

// Each step is a statement of its own: after a failed operation the bracket is closed all the same.
void Dispatcher::RunOperations(const Command& row) {
  Procedure run(trap);
  run([&] { bracket.DoPreCommandProcess(); });
  for (const std::string_view operation : row.operations) {
    run([&] {
      if (!operation.empty()) KWPic.Apply(operation);
    });
  }
  run([&] { bracket.DoPostCommandProcess(); });
}

// The depth that the operation gave is the one to be written back in.
void Dispatcher::ChangeDepth(const Command& row) {
  Procedure run(trap);
  run([&] { bracket.DoPreCommandProcess(); });
  run([&] { KWPic.Apply(row.operations[0]); });
  run([&] { bracket.SetBitsPerPixel(KWPic.BitsPerPixel()); });
  run([&] { bracket.DoPostCommandProcess(); });
}

void Dispatcher::Signature(const Command& /*row*/) {
  form.tbrFillPattern.SetButtonPressed("NoFillInside", true);
  tbrFillPattern_ButtonClick("NoFillInside");
}

void Dispatcher::Stamp(const Command& /*row*/) { form.tbrEditingTools.SetButtonPressed("Stamp", true); }

void Dispatcher::FontSettings(const Command& /*row*/) {
  Procedure run(trap);
  run([&] { isFontDialogUp = true; });
  run([&] {
    Font font = layers.CurrentLayer().TextFont();
    desktop.ShowFont(font);  // cancelled, it leaves the font as it is
    layers.CurrentLayer().SetTextFont(font);
  });
  run([&] { isFontDialogUp = false; });
}

void Dispatcher::Open(const Command& /*row*/) {
  OpenDialog dialog;
  dialog.filter = SupportedGraphicFiles;
  dialog.filterIndex = 2;
  for (;;) {
    if (!desktop.ShowOpen(dialog)) Raise(ErrorNumber::Cancelled);
    if (!desktop.DirectoryLookUp(dialog.fileName).empty()) break;
    desktop.ShowMessageBox("File does not exist..\r\nPlease select the filename again..", "File Open Error");
  }
  document.OpenFile(dialog.fileName);
  document.SetFirstFilePath(dialog.fileName);
}

}  // namespace kw
