#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "components/controls/DialogForm.h"
#include "components/controls/Scanner.h"
#include "components/controls/Timer.h"
#include "components/platform/Desktop.h"
#include "components/platform/ScannerDriver.h"
#include "tests/support/ExpectedBoxes.h"
#include "tests/support/ProfileFile.h"

namespace kw::test {

// A desktop that records what the editor asks of it and answers what a test has laid down. Files are real ones.
class ScriptedDesktop : public Desktop {
public:
  struct Box {
    std::string prompt;
    std::string title;
    MessageButtons buttons = MessageButtons::Ok;
    friend bool operator==(const Box&, const Box&) = default;
  };

  // The boxes that were shown, in order.
  std::vector<Box> boxes;
  // Answers to the boxes to come; when none is left, a box is answered with Ok.
  std::deque<MessageAnswer> answers;
  // Runs while a box is up.
  std::function<void(const Box&)> whileBoxIsUp;
  std::set<std::int32_t> clipboardFormats;
  LocalDate date{2026, 11, 15};
  LocalTime time{3, 8, 21};
  mutable int dateReads = 0;
  mutable int timeReads = 0;
  // Runs whenever the editor asks for the number of its process, which is part of a scratch file's name.
  std::function<void()> onProcessNumber;
  // The name that a look-up of the path gives; by default that of the file on the disk.
  std::function<std::string(const std::string& path)> onLookUp;
  // The user's actions in the dialogs of parameters before Enter, unless the dialog is left by then.
  std::function<void(DialogForm&)> onParameters;
  // The user's actions in the common dialogs to come: a change of the fields and OK; Cancel if none is left.
  std::deque<std::function<void(OpenDialog&)>> openAnswers;
  std::deque<std::function<void(Colour&)>> colourAnswers;
  std::deque<std::function<void(Font&)>> fontAnswers;
  std::deque<std::function<void(PrinterDialog&)>> printerAnswers;
  std::vector<PrinterDialog> printersShown;
  std::vector<OpenDialog> openShown;
  std::vector<Colour> coloursShown;
  std::vector<Font> fontsShown;
  // Pages of the jobs that were ended, and of the one that is open, each with the picture that was painted on it last.
  std::vector<std::vector<Bitmap>> printedJobs;
  std::vector<Bitmap> openJob;
  int newPrinterPages = 0;
  int endsOfJob = 0;
  // Run when the printer is asked for something; they may raise errors.
  std::function<void(const Bitmap&)> onPrintPicture;
  std::function<void()> onEndPrintJob;
  std::function<void()> onDoEvents;
  // Makes the way to the scanners; without it there is none.
  std::function<std::unique_ptr<ScannerDriver>()> scannerMaker;
  // The user's actions in the forms to come; a form that is still visible then, or finds none here, is closed.
  std::deque<std::function<void(DialogForm&)>> formAnswers;
  int beeps = 0;
  std::string decimalSeparator = ".";
  float twipsPerPixelX = 15;
  float twipsPerPixelY = 15;
  std::string applicationFolder = R"(C:\Program Files\Host)";
  std::string machineName;
  std::int64_t processNumber = 1234;
  std::set<std::int64_t> runningProcesses;
  std::map<Timer*, std::int32_t> runningTimers;
  std::map<std::string, int> timerStarts;

  // Lets the time of all timers come that run now.
  void FireTimers() const {
    const auto running = runningTimers;
    for (const auto& [timer, interval] : running) FireTimer(*timer);
  }
  // Lets the time of a running timer come, as the message loop would. False when it does not run.
  bool FireTimer(Timer& timer) const {
    if (!runningTimers.contains(&timer)) return false;
    timer.Fire();
    return true;
  }

  MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title, MessageButtons buttons) override {
    boxes.push_back({prompt, title, buttons});
    expectedBoxes.Came(title + ": " + prompt);
    if (whileBoxIsUp) whileBoxIsUp(boxes.back());
    if (answers.empty()) return MessageAnswer::Ok;
    const MessageAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  bool ShowOpen(OpenDialog& dialog) override {
    openShown.push_back(dialog);
    return Answer(openAnswers, dialog);
  }
  bool ShowColor(Colour& colour) override {
    coloursShown.push_back(colour);
    return Answer(colourAnswers, colour);
  }
  bool ShowFont(Font& font) override {
    fontsShown.push_back(font);
    return Answer(fontAnswers, font);
  }
  bool ShowPrinter(PrinterDialog& dialog) override {
    printersShown.push_back(dialog);
    return Answer(printerAnswers, dialog);
  }
  void ShowModal(DialogForm& dialog) override {
    dialog.SetVisible(true);
    dialog.Activate.Raise();
    if (dialog.Name() == "frmParameters") {
      if (onParameters) onParameters(dialog);
      if (dialog.Visible()) dialog.KeyDown.Raise(DialogForm::EnterKey, 0);
    } else {
      Answer(formAnswers, dialog);
    }
    if (dialog.Visible()) dialog.UserClose();
  }
  void Beep() override { ++beeps; }
  std::string DecimalSeparator() const override { return decimalSeparator; }
  void PrintPicture(const Bitmap& picture) override {
    if (onPrintPicture) onPrintPicture(picture);
    if (isNewPage || openJob.empty()) openJob.emplace_back();
    isNewPage = false;
    openJob.back() = picture;
  }
  void NewPrinterPage() override {
    ++newPrinterPages;
    isNewPage = true;
  }
  void EndPrintJob() override {
    ++endsOfJob;
    isNewPage = false;
    if (!openJob.empty()) printedJobs.push_back(std::exchange(openJob, {}));
    if (onEndPrintJob) onEndPrintJob();
  }
  std::unique_ptr<ScannerDriver> MakeScannerDriver() override { return scannerMaker ? scannerMaker() : nullptr; }
  void DoEvents() override {
    if (onDoEvents) onDoEvents();
  }
  std::string ReadProfileString(const std::string& section, const std::string& key, const std::string& defaultValue,
                                const std::string& path) override {
    return ProfileFile(path).Read(section, key, defaultValue);
  }
  std::map<std::string, std::string> ReadProfileSection(const std::string& section, const std::string& path) override {
    return ProfileFile(path).ReadPlainValues(section);
  }
  bool WriteProfileString(const std::string& section, const std::string& key, const std::string& value,
                          const std::string& path) override {
    return ProfileFile(path).Write(section, key, value);
  }
  float TwipsPerPixelX() const override { return twipsPerPixelX; }
  float TwipsPerPixelY() const override { return twipsPerPixelY; }
  // A plain stand-in: every character is half as wide as a line is high, and lines break at any character.
  TextExtent MeasureText(const std::string& text, const Font& font, std::int32_t widest) override {
    const auto line = static_cast<std::int32_t>(std::ceil(font.size * 96 / 72));
    const std::int32_t character = std::max(1, line / 2);
    TextExtent extent{.width = 0, .height = line};
    std::int32_t width = 0;
    for (const char c : text) {
      if (c == '\r') continue;
      const bool isFull = widest > 0 && width + character > widest && width > 0;
      if (c == '\n' || isFull) {
        extent.height += line;
        width = 0;
      }
      if (c != '\n') width += character;
      extent.width = std::max(extent.width, width);
    }
    return extent;
  }
  bool ClipboardHasFormat(std::int32_t format) override { return clipboardFormats.contains(format); }
  void StartTimer(Timer& timer, std::int32_t milliseconds) override {
    runningTimers[&timer] = milliseconds;
    ++timerStarts[timer.Name()];
  }
  void StopTimer(Timer& timer) override { runningTimers.erase(&timer); }
  LocalDate Date() const override {
    ++dateReads;
    return date;
  }
  LocalTime Time() const override {
    ++timeReads;
    return time;
  }
  void RemoveFile(const std::string& path) override { RemoveFileAt(path); }
  std::string DirectoryLookUp(const std::string& path) override { return onLookUp ? onLookUp(path) : LookUpFile(path); }
  std::string ApplicationFolder() const override { return applicationFolder; }
  std::string MachineName() const override { return machineName; }
  std::int64_t ProcessNumber() const override {
    if (onProcessNumber) onProcessNumber();
    return processNumber;
  }
  bool IsProcessRunning(std::int64_t number) const override {
    return number == processNumber || runningProcesses.contains(number);
  }

  // Drops all that was recorded.
  void Forget() {
    boxes.clear();
    openShown.clear();
    fontsShown.clear();
    coloursShown.clear();
    printersShown.clear();
    printedJobs.clear();
    openJob.clear();
  }
  // Boxes that the test expects; see ExpectedBoxes.
  void Expect(std::string words, int times = 1) { expectedBoxes.Add(Times(times, std::move(words))); }
  void Allow(std::string words) { expectedBoxes.Add(Perhaps(std::move(words))); }

private:
  ExpectedBoxes expectedBoxes;
  bool isNewPage = false;

  template <class Fields>
  static bool Answer(std::deque<std::function<void(Fields&)>>& coming, Fields& fields) {
    if (coming.empty()) return false;
    coming.front()(fields);
    coming.pop_front();
    return true;
  }
};

}  // namespace kw::test
