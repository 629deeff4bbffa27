#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "components/base/Bitmap.h"
#include "components/base/Font.h"
#include "components/base/LocalDate.h"
#include "components/base/Units.h"

namespace kw {

class DialogForm;
class ScannerDriver;
class Timer;

enum class MessageButtons : std::uint8_t { Ok, YesNoCancel };
enum class MessageAnswer : std::uint8_t { Ok, Yes, No, Cancel };

// The room that a text takes, in pixels.
struct TextExtent {
  std::int32_t width = 0;
  std::int32_t height = 0;
  friend bool operator==(const TextExtent&, const TextExtent&) = default;
};

struct LocalTime {
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// The open dialog's fields.
struct OpenDialog {
  // Pairs of a text and its patterns, all separated by "|".
  std::string filter;
  int filterIndex = 1;  // from 1
  bool isReadOnlyBoxHidden = true;
  std::string fileName;  // offered, then chosen
};

// The printer dialog's fields. Pages count from 1; a bound below that is shown as 1.
struct PrinterDialog {
  std::int32_t firstPage = 1;  // that can be chosen
  std::int32_t lastPage = 1;
  std::int32_t fromPage = 1;  // offered, then chosen
  std::int32_t toPage = 1;
  std::int32_t copies = 1;
  std::string document{};  // what the job is called; empty: by the program's name
};

// Clipboard format of a device-independent bitmap.
inline constexpr std::int32_t ClipboardDib = 8;

// The one seam between the editor and the platform. All calls come on the editor's own thread.
class Desktop {
public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  // Shows a modal box without an icon and waits for the answer. An empty title shows the application's name.
  virtual MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title = {},
                                       MessageButtons buttons = MessageButtons::Ok) = 0;

  // The common dialogs. Each shows what it is handed, waits, and takes over what the user chose; false, with nothing
  // changed, when the user cancelled. Raises PrinterError if there is no printer.
  virtual bool ShowOpen(OpenDialog& dialog) = 0;
  virtual bool ShowColor(Colour& colour) = 0;
  virtual bool ShowFont(Font& font) = 0;
  virtual bool ShowPrinter(PrinterDialog& dialog) = 0;

  // Makes the form visible in a window of its own, before all others of the editor, and waits until it is visible no
  // more. Every way of closing the window that is not the form's own raises its CloseBox first. Raises OutOfMemory if
  // the system gives no window.
  virtual void ShowModal(DialogForm& dialog) = 0;

  // The sound of a wrong entry.
  virtual void Beep() = 0;
  // The user's, in UTF-8.
  virtual std::string DecimalSeparator() const = 0;

  // Paints a picture on the current page of the printer chosen last, or of the default one, beginning a job and a page
  // if none is open: from the upper left corner of the printable area on, in its true size if its resolution is
  // known, but never larger than that area and in its proportions. An empty picture leaves the page blank. Raises
  // PrinterError.
  virtual void PrintPicture(const Bitmap& picture) = 0;
  // The next picture goes on a new page. Does nothing if no page is open. Raises PrinterError.
  virtual void NewPrinterPage() = 0;
  // Hands the open job to the printer; does nothing without one. No job is open afterwards, also if it fails. Raises
  // PrinterError.
  virtual void EndPrintJob() = 0;

  // A way to the platform's scanners; null if it has none.
  virtual std::unique_ptr<ScannerDriver> MakeScannerDriver() = 0;

  // Handles what waits in the message queue, then returns. Anything may happen meanwhile.
  virtual void DoEvents() = 0;

  // The screen's twips for each pixel.
  virtual float TwipsPerPixelX() const = 0;
  virtual float TwipsPerPixelY() const = 0;

  // The room that layers give a text in this font: its lines are broken at line ends and, unless `widest` is 0, between
  // words if they would pass `widest` pixels. A text that ends in a line end has an empty last line.
  virtual TextExtent MeasureText(const std::string& text, const Font& font, std::int32_t widest) = 0;

  // Whether the clipboard holds data in that format. A plain bitmap is no device-independent one, even if the
  // system would make one of it. Raises InvalidClipboardFormat or the platform's error.
  virtual bool ClipboardHasFormat(std::int32_t format) = 0;

  // From now on, calls timer.Fire() every `milliseconds`, through the message loop, until StopTimer. Starting a
  // running timer begins its interval afresh; stopping a stopped one does nothing.
  virtual void StartTimer(Timer& timer, std::int32_t milliseconds) = 0;
  virtual void StopTimer(Timer& timer) = 0;

  // The date and the time are read apart, as the run time's two functions read them.
  virtual LocalDate Date() const = 0;
  virtual LocalTime Time() const = 0;

  // Raises FileNotFound or PathFileAccessError.
  virtual void RemoveFile(const std::string& path) = 0;
  // The name of the file at `path`; empty if there is none.
  virtual std::string DirectoryLookUp(const std::string& path) = 0;

  // A value of a profile file, at most 511 characters; the default if there is none.
  virtual std::string ReadProfileString(const std::string& section, const std::string& key,
                                        const std::string& defaultValue, const std::string& path) = 0;
  // The plain values of a section by their keys, read at once. What is quoted, or longer than such a value can be, is
  // left out: ReadProfileString is asked for it.
  virtual std::map<std::string, std::string> ReadProfileSection(const std::string& section,
                                                                const std::string& path) = 0;
  // False if the file cannot be written.
  virtual bool WriteProfileString(const std::string& section, const std::string& key, const std::string& value,
                                  const std::string& path) = 0;

  // The folder of the running application's executable, as the platform reports it.
  virtual std::string ApplicationFolder() const = 0;
  // The machine that the host runs on, and the number of its process there.
  virtual std::string MachineName() const = 0;
  virtual std::int64_t ProcessNumber() const = 0;
  // Whether this machine has a process of that number now; also if that cannot be found out.
  virtual bool IsProcessRunning(std::int64_t number) const = 0;
};

}  // namespace kw
