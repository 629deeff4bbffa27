#include "trap/Trap.h"

#include <cstddef>

#include "components/base/Arithmetic.h"

namespace kw {

thread_local std::string AppDir;

namespace {

constexpr std::string_view NewLine = "\r\n";
const std::string BlockRule(80, '*');

std::string Digits(int value, int width) {
  std::string digits = std::to_string(value);
  if (digits.size() < static_cast<std::size_t>(width))
    digits.insert(0, static_cast<std::size_t>(width) - digits.size(), '0');
  return digits;
}

std::string MessageOf(const RunTimeError& error) {
  constexpr auto cannotCreate = static_cast<std::int32_t>(ErrorNumber::CannotCreateOffScreenImage);
  constexpr auto cannotLoad = static_cast<std::int32_t>(ErrorNumber::InvalidPicture);
  if (error.Number() == cannotCreate || error.Number() == cannotLoad) {
    return "There is not enough memory available to execute this task.\r\n"
           "Please close some of the other running application programs,\r\n"
           "Also you may have to close and restart this application again\r\n"
           "without saving changes ...";
  }
  return "Error Number : " + std::to_string(error.Number()) + "\r\nError Description : " + error.Description() +
         "\r\nLastDllError : " + std::to_string(error.LastDllError()) + "\r\nSource : " + error.Source();
}

}  // namespace

Trap::Trap(Desktop& platform, EditorEvents& container, Control& userControl, Control& viewport, Control& drawingSurface,
           Log& log)
    : desktop(platform),
      events(container),
      editor(userControl),
      picFrame(viewport),
      picCanvas(drawingSurface),
      KwLogCtl1(log) {}

std::string Trap::GetTimeStamp() const {
  const std::string month = Digits(desktop.Date().month, 2);
  const std::string day = Digits(desktop.Date().day, 2);
  const std::string year = Digits(desktop.Date().year, 4);
  const std::string hour = Digits(desktop.Time().hour, 2);
  const std::string minute = Digits(desktop.Time().minute, 2);
  const std::string second = Digits(desktop.Time().second, 2);
  return month + "-" + day + "-" + year + " " + hour + ":" + minute + ":" + second;
}

std::string Trap::TraceFilePath() { return AppDir + std::string(TraceFileName); }

void Trap::TraceFunction(std::string_view name) {
  if (isAtRest) return;
  std::string line(name);
  line += NewLine;
  KwLogCtl1.Append(TraceFilePath(), line);
  m_FunctionHistory += NewLine;
  m_FunctionHistory += name;
  if (m_FunctionHistory.size() > HistoryLimit) m_FunctionHistory.erase(0, m_FunctionHistory.size() - HistoryLimit);
}

void Trap::HandleCriticalError() {
  if (isAtRest || !editor.Enabled()) return;
  const RunTimeError error = currentError;  // whatever runs while the box is up has errors of its own
  editor.SetEnabled(false);
  picCanvas.SetPointer(MousePointer::NoDrop);
  picFrame.SetPointer(MousePointer::NoDrop);
  editor.SetPointer(MousePointer::NoDrop);

  std::string message = MessageOf(error);
  desktop.ShowMessageBox(message, "Critical Error");

  std::string block;
  block += NewLine;
  block += BlockRule + "\r\n";
  block += GetTimeStamp() + "\r\n";
  block += BlockRule + "\r\n";
  block += "FunctionInExecution : \r\n";
  block += m_FunctionHistory + "\r\n\r\n";
  block += message + "\r\n";
  block += BlockRule + "\r\n";
  KwLogCtl1.Append(TraceFilePath(), block);

  std::int16_t number = ToInteger16(error.Number());
  events.Raise<EventId::ErrorOccured>(number, message);
}

}  // namespace kw
