#include "devices/printing/Printing.h"

#include <algorithm>
#include <cstdlib>

#include "components/base/Arithmetic.h"
#include "components/base/FilePath.h"
#include "devices/StatusPanel.h"
#include "document/PageFiles.h"
#include "document/ScratchBitmap.h"
#include "picture/Depth.h"

namespace kw {

// The printer's job from its first page to its one end.
class Printing::Job {
public:
  Job(Desktop& platform, Procedure& procedure) : desktop(platform), run(procedure) {}
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  // If the report of an error has left the procedure, a second error is not reported.
  ~Job() {
    if (isOpen) run.Attempt([&] { desktop.EndPrintJob(); });
  }

  void End() {
    isOpen = false;
    run([&] { desktop.EndPrintJob(); });
  }

private:
  Desktop& desktop;
  Procedure& run;
  bool isOpen = true;
};

Printing::Printing(const EditorContext& context, Document& openDocument)
    : EditorContext(context), document(openDocument) {
  form.chkCancelPrinting.Click.Connect([this] {
    if (form.chkCancelPrinting.Value()) chkCancel_Click();  // not when the procedure sets it back
  });
}

void Printing::PrintPages() {
  if (isAtWork) return;
  Procedure run(trap);
  const DeviceAtWork printer(run, form.kwraPrintingStatus, isAtWork);
  // While the dialog is up, the host may open another document.
  const auto source = run.Ask<Source>(
      [&] {
        return Source{document.FilePath(), document.UnwrittenPages(), form.PageIndex.Max() > 0};
      },
      {});
  const Range pages = AskForRange(run);
  if (pages.first <= 0 || pages.last <= 0) return;
  run([&] { form.lblPrintingStatus.SetCaption(""); });
  run([&] { ShowCentred(form.kwraPrintingStatus, form.editor); });
  run([&] { isPrinting = true; });
  Job job(desktop, run);
  PrintRange(run, source, pages);
  job.End();
  // They hold the last page that was rendered.
  run([&] { KWPicTempBuffer.Replace({}); });
  run([&] { form.picTempBuffer.SetPicture({}); });
  run([&] { form.kwraPrintingStatus.SetVisible(false); });
  run([&] { isPrinting = false; });
}

// No pages when the user cancelled.
Printing::Range Printing::AskForRange(Procedure& run) {
  return run.Ask<Range>(
      [&] {
        PrinterDialog dialog;
        dialog.firstPage = dialog.fromPage = form.PageIndex.Min();
        dialog.lastPage = dialog.toPage = form.PageIndex.Max();
        dialog.copies = 1;
        dialog.document = FromFilesystemPath(ToFilesystemPath(document.FilePath()).filename());
        if (!desktop.ShowPrinter(dialog)) return Range();
        return Range{ToInteger16(dialog.fromPage), ToInteger16(dialog.toPage)};
      },
      {});
}

void Printing::PrintRange(Procedure& run, const Source& source, Range pages) {
  for (std::int32_t page = pages.first; page <= pages.last; ++page) {
    if (!Pause(run)) return;
    ShowCaption(run, pages, page);
    const bool isPainted = PrintPage(run, source, ToInteger16(page));
    if (!isPrinting) return;
    ShowCaption(run, pages, page);
    if (!Pause(run)) return;
    run([&] {
      if (page == pages.last) return;
      if (!isPainted) desktop.PrintPicture({});  // its sheet stays blank
      desktop.NewPrinterPage();
    });
  }
}

void Printing::ShowCaption(Procedure& run, Range pages, std::int32_t page) {
  run([&] {
    const std::int16_t number = ToInteger16(std::abs(pages.first - page) + 1);
    const std::int16_t count = ToInteger16(std::abs(pages.first - pages.last) + 1);
    form.lblPrintingStatus.SetCaption("Printing page " + std::to_string(number) + " of " + std::to_string(count));
  });
}

// The only page of a document that was not split has the spinner's number 0. What runs in a pause may open another
// document.
bool Printing::IsShown(const std::string& path, std::int16_t page) const {
  return page == std::max(1, form.PageIndex.Value()) && path == document.FilePath();
}

// True if the printer has it.
bool Printing::PrintPage(Procedure& run, const Source& source, std::int16_t page) {
  Bitmap picture;
  const bool isReady =
      IsShown(source.path, page) ? TakeShownPage(run, picture) : TakePageFile(run, source, page, picture);
  if (!isReady || !Pause(run)) return false;
  run([&] {
    constexpr int withAlpha = 32;
    if (picture.BitsPerPixel() == withAlpha) picture = ToDepth(picture, 24);  // what is transparent shows white paper
  });
  // A printer that refuses one page would refuse the others too.
  const bool isPainted = run([&] { desktop.PrintPicture(picture); });
  if (!isPainted) isPrinting = false;
  return isPainted;
}

bool Printing::TakeShownPage(Procedure& run, Bitmap& picture) {
  return run([&] {
    picture = KWPic.Current();
    if (picture.IsEmpty()) Raise(ErrorNumber::ObjectVariableNotSet);
  });
}

// What runs in the pauses may use the scratch engine and the scratch bitmap for a picture of its own. The page is then
// rendered once more, without a pause.
bool Printing::TakePageFile(Procedure& run, const Source& source, std::int16_t page, Bitmap& picture) {
  std::string file;
  const bool hasFile = run([&] {
    if (source.unwrittenPages.contains(page)) Raise(ErrorNumber::FileNotFound);
    const bool isWholeFile = !source.isSplit && page == 1;
    file = isWholeFile ? source.path : GetPageFileName(source.path, page);
  });
  if (!hasFile) return false;
  const auto pause = [&](const Bitmap& expected) {
    if (!Pause(run) || !SamePicture(KWPicTempBuffer.Current(), expected)) Raise(ErrorNumber::Cancelled);
  };
  const std::int32_t error = run.Attempt([&] {
    picture = Render(file, pause);
    if (!SamePicture(picture, KWPicTempBuffer.Current())) Raise(ErrorNumber::Cancelled);
  });
  if (error == 0 || !isPrinting) return error == 0;
  return run([&] { picture = Render(file, {}); });
}

// The page file as picTempBuffer shows it. Between two steps calls `pause` with what the scratch engine holds.
Bitmap Printing::Render(const std::string& file, const Pausing& pause) {
  KWPicEd& engine = KWPicTempBuffer;
  if (!engine.Load(file)) {
    Raise(desktop.DirectoryLookUp(file).empty() ? ErrorNumber::FileNotFound : ErrorNumber::InvalidPicture);
  }
  const auto rest = [&] {
    if (pause) pause(Bitmap(engine.Current()));
  };
  rest();
  std::int16_t bitsPerPixel = engine.PageValue();
  engine.ConvertToBitsPerPixel(bitsPerPixel);
  rest();
  ScratchBitmap scratch(desktop);
  if (pause) {
    scratch.Write(engine);
    rest();
    form.picTempBuffer.SetPicture(scratch.Read());
  } else {
    form.picTempBuffer.SetPicture(scratch.Pass(engine));
  }
  return form.picTempBuffer.Picture();
}

// Handles the messages that wait; false if printing is to stop.
bool Printing::Pause(Procedure& run) {
  run([&] { desktop.DoEvents(); });
  return isPrinting;
}

void Printing::chkCancel_Click() {
  Procedure run(trap, "chkCancel_Click");
  run([&] { form.chkCancelPrinting.SetValue(false); });
  run([&] { isPrinting = false; });
}

}  // namespace kw
