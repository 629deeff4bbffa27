#include "windows/WindowsDesktop.h"

#include <array>
#include <map>
#include <vector>

#include "components/base/FilePath.h"
#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "components/base/SystemFile.h"
#include "components/controls/Timer.h"
#include "windows/base/ClipboardFormats.h"
#include "windows/base/Guard.h"
#include "windows/base/Mouse.h"
#include "windows/base/ProfileFile.h"
#include "windows/base/ScreenScale.h"
#include "windows/base/Text.h"
#include "windows/base/TextDrawing.h"
#include "windows/base/WaitPointer.h"
#include "windows/dialogs/ModalWindow.h"
#include "windows/printing/Printer.h"
#include "windows/scanning/TwainScanner.h"

namespace kw::windows {
namespace {

struct RunningTimer {
  Timer* timer;
  const WindowsDesktop* desktop;
};

// The thread's running timers by their system ids: the id is all that the system passes to the callback.
std::map<UINT_PTR, RunningTimer>& RunningTimers() {
  thread_local std::map<UINT_PTR, RunningTimer> timers;
  return timers;
}

void CALLBACK TimeIsUp(HWND /*window*/, UINT /*message*/, UINT_PTR id, DWORD /*time*/) {
  const auto found = RunningTimers().find(id);
  if (found == RunningTimers().end()) return;  // it was stopped after the message was posted
  Timer* const timer = found->second.timer;
  Guard([timer] { timer->Fire(); });
}

std::wstring ExecutablePath() {
  std::vector<wchar_t> path(MAX_PATH);
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return {path.data(), length};
    path.resize(path.size() * 2);
  }
}

// The application's name, the default title of message boxes.
std::wstring ApplicationName() {
  std::wstring name = ExecutablePath();
  if (const auto slash = name.rfind(L'\\'); slash != std::wstring::npos) name.erase(0, slash + 1);
  if (const auto dot = name.rfind(L'.'); dot != std::wstring::npos) name.erase(dot);
  return name;
}

SYSTEMTIME Now() {
  SYSTEMTIME now = {};
  GetLocalTime(&now);
  return now;
}

}  // namespace

WindowsDesktop::WindowsDesktop() : printer(std::make_unique<Printer>()) {}

WindowsDesktop::~WindowsDesktop() {
  std::erase_if(RunningTimers(), [this](const auto& entry) {
    if (entry.second.desktop != this) return false;
    KillTimer(nullptr, entry.first);
    return true;
  });
}

HWND WindowsDesktop::DialogOwner() const { return GetActiveWindow(); }

std::shared_ptr<void> WindowsDesktop::EnterDialog() { return std::make_shared<WaitPointer::Rest>(); }
std::shared_ptr<void> WindowsDesktop::EnterEvents() { return std::make_shared<WaitPointer::Rest>(); }

HWND WindowsDesktop::TopLevelOwner() const {
  const HWND asked = DialogOwner();
  return asked == nullptr ? nullptr : GetAncestor(asked, GA_ROOT);
}

MessageAnswer WindowsDesktop::ShowMessageBox(const std::string& prompt, const std::string& title,
                                             MessageButtons buttons) {
  const std::wstring caption = title.empty() ? ApplicationName() : ToWide(title);
  const UINT type = buttons == MessageButtons::YesNoCancel ? MB_YESNOCANCEL : MB_OK;
  const auto whileUp = EnterDialog();
  const int answer = MessageBoxW(TopLevelOwner(), ToWide(prompt).c_str(), caption.c_str(), type);
  RenewPointer();  // what follows may take long: show the pointer now
  switch (answer) {
    case IDYES:
      return MessageAnswer::Yes;
    case IDNO:
      return MessageAnswer::No;
    case IDCANCEL:
      return MessageAnswer::Cancel;
    default:
      return MessageAnswer::Ok;
  }
}

void WindowsDesktop::ShowModal(DialogForm& dialog) {
  const auto whileUp = EnterDialog();
  ModalWindow(dialog, TopLevelOwner()).Run();
  RenewPointer();
}

void WindowsDesktop::Beep() { MessageBeep(MB_ICONEXCLAMATION); }

std::string WindowsDesktop::DecimalSeparator() const {
  std::array<wchar_t, 4> text = {};  // at most three characters
  const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(), static_cast<int>(text.size()));
  return length > 1 ? FromWide(text.data()) : ".";
}

// For the models the screen has 96 pixels to the inch; the views scale to its real DPI.
float WindowsDesktop::TwipsPerPixelX() const { return TwipsPerPixel; }
float WindowsDesktop::TwipsPerPixelY() const { return TwipsPerPixel; }

TextExtent WindowsDesktop::MeasureText(const std::string& text, const Font& font, std::int32_t widest) {
  return windows::MeasureText(text, font, widest, ScaleOf(DialogOwner()));
}

bool WindowsDesktop::ClipboardHasFormat(std::int32_t format) {
  if (format < 1 || format > 0xFFFF) Raise(ErrorNumber::InvalidClipboardFormat);
  if (format == ClipboardDib) return HoldDeviceIndependentBitmap(ClipboardFormats());
  return IsClipboardFormatAvailable(static_cast<UINT>(format)) != FALSE;
}

void WindowsDesktop::StartTimer(Timer& timer, std::int32_t milliseconds) {
  StopTimer(timer);
  const UINT_PTR id = SetTimer(nullptr, 0, static_cast<UINT>(milliseconds), &TimeIsUp);
  if (id == 0) Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
  RunningTimers()[id] = {&timer, this};
}

void WindowsDesktop::StopTimer(Timer& timer) {
  std::erase_if(RunningTimers(), [&timer](const auto& entry) {
    if (entry.second.timer != &timer) return false;
    KillTimer(nullptr, entry.first);
    return true;
  });
}

LocalDate WindowsDesktop::Date() const {
  const SYSTEMTIME now = Now();
  return {now.wYear, now.wMonth, now.wDay};
}

LocalTime WindowsDesktop::Time() const {
  const SYSTEMTIME now = Now();
  return {now.wHour, now.wMinute, now.wSecond};
}

void WindowsDesktop::RemoveFile(const std::string& path) {
  const SystemCode code = FileSystem::Current().Remove(ToFilesystemPath(path));
  if (code == 0) return;
  Raise(IsMissing(code) ? ErrorNumber::FileNotFound : ErrorNumber::PathFileAccessError, code);
}

std::string WindowsDesktop::DirectoryLookUp(const std::string& path) { return LookUpFile(path); }

void WindowsDesktop::PrintPicture(const Bitmap& picture) { printer->PrintPicture(picture); }
void WindowsDesktop::NewPrinterPage() { printer->EndPage(); }
void WindowsDesktop::EndPrintJob() { printer->EndJob(); }

std::unique_ptr<ScannerDriver> WindowsDesktop::MakeScannerDriver() {
  return std::make_unique<TwainScanner>(TwainScanner::Surroundings{
      [this] { return TopLevelOwner(); }, [this] { return EnterDialog(); }, [this] { return EnterEvents(); }});
}

void WindowsDesktop::DoEvents() {
  const auto underWay = EnterEvents();
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (message.message == WM_QUIT) {  // for the calling message loop
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

std::string WindowsDesktop::ReadProfileString(const std::string& section, const std::string& key,
                                              const std::string& defaultValue, const std::string& path) {
  return ReadProfileValue(section, key, defaultValue, path);
}

std::map<std::string, std::string> WindowsDesktop::ReadProfileSection(const std::string& section,
                                                                      const std::string& path) {
  return ReadPlainProfileValues(section, path);
}

bool WindowsDesktop::WriteProfileString(const std::string& section, const std::string& key, const std::string& value,
                                        const std::string& path) {
  return WriteProfileValue(section, key, value, path);
}

std::string WindowsDesktop::ApplicationFolder() const {
  std::wstring folder = ExecutablePath();
  const auto slash = folder.rfind(L'\\');
  if (slash == std::wstring::npos) return {};
  const bool isRoot = slash == 2 && folder[1] == L':';
  folder.erase(isRoot ? slash + 1 : slash);
  return FromWide(folder);
}

std::string WindowsDesktop::MachineName() const { return kw::MachineName(); }
std::int64_t WindowsDesktop::ProcessNumber() const { return kw::ProcessNumber(); }
bool WindowsDesktop::IsProcessRunning(std::int64_t number) const { return kw::IsProcessRunning(number); }

}  // namespace kw::windows
