#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "components/platform/Desktop.h"

namespace kw::windows {

class Printer;

// The Windows desktop. A timer runs in the message loop of the thread that starts it.
class WindowsDesktop : public Desktop {
public:
  WindowsDesktop();
  ~WindowsDesktop() override;

  MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title, MessageButtons buttons) override;
  bool ShowOpen(OpenDialog& dialog) override;
  bool ShowColor(Colour& colour) override;
  bool ShowFont(Font& font) override;
  bool ShowPrinter(PrinterDialog& dialog) override;
  void ShowModal(DialogForm& dialog) override;
  void Beep() override;
  std::string DecimalSeparator() const override;
  void PrintPicture(const Bitmap& picture) override;
  void NewPrinterPage() override;
  void EndPrintJob() override;
  std::unique_ptr<ScannerDriver> MakeScannerDriver() override;
  void DoEvents() override;
  float TwipsPerPixelX() const override;
  float TwipsPerPixelY() const override;
  TextExtent MeasureText(const std::string& text, const Font& font, std::int32_t widest) override;
  bool ClipboardHasFormat(std::int32_t format) override;
  void StartTimer(Timer& timer, std::int32_t milliseconds) override;
  void StopTimer(Timer& timer) override;
  LocalDate Date() const override;
  LocalTime Time() const override;
  void RemoveFile(const std::string& path) override;
  std::string DirectoryLookUp(const std::string& path) override;
  std::string ReadProfileString(const std::string& section, const std::string& key, const std::string& defaultValue,
                                const std::string& path) override;
  std::map<std::string, std::string> ReadProfileSection(const std::string& section, const std::string& path) override;
  bool WriteProfileString(const std::string& section, const std::string& key, const std::string& value,
                          const std::string& path) override;
  std::string ApplicationFolder() const override;
  std::string MachineName() const override;
  std::int64_t ProcessNumber() const override;
  bool IsProcessRunning(std::int64_t number) const override;

protected:
  // The owner window of dialogs; by default the thread's active window.
  virtual HWND DialogOwner() const;
  // Called before a modal dialog is shown or the message queue is emptied. The returned object lives until that is
  // over.
  virtual std::shared_ptr<void> EnterDialog();
  virtual std::shared_ptr<void> EnterEvents();

private:
  // The top-level window that owns a dialog; a child window cannot own one.
  HWND TopLevelOwner() const;

  std::unique_ptr<Printer> printer;
};

}  // namespace kw::windows
