#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "components/base/RunTimeError.h"
#include "components/controls/Control.h"
#include "components/controls/Log.h"
#include "components/platform/Desktop.h"
#include "members/EditorEvents.h"

namespace kw {

// The folder of the trace file and of the scratch bitmap, shared by all editors of one thread. The trace joins it to
// the file name as it stands, so it has to end with a backslash for the file to lie inside the folder.
extern thread_local std::string AppDir;

// The error trap and the trace of one editor: every procedure passes its name to TraceFunction, and every error of a
// procedure ends in HandleCriticalError. Procedure (see Procedure.h) gives both their shape.
class Trap {
public:
  static constexpr std::size_t HistoryLimit = 4096;
  static constexpr std::string_view TraceFileName = "FunctionsInExecution.txt";

  // Everything referred to must outlive the trap.
  Trap(Desktop& platform, EditorEvents& container, Control& userControl, Control& viewport, Control& drawingSurface,
       Log& log);

  // Local date and time as month-day-year hour:minute:second, from six separate reads.
  std::string GetTimeStamp() const;

  // Appends the name to the trace file and to the history. Raises the errors of Log::Append, the history unchanged.
  void TraceFunction(std::string_view name);

  // Reports the current error: disables the editor, shows the message, writes the block and raises ErrorOccured.
  // Does nothing while the editor is disabled. Raises the errors of Log::Append, and Overflow for an error number
  // that does not fit ErrorOccured.
  void HandleCriticalError();

  // In design mode the trap rests: nothing is traced, and nothing is reported.
  void Rest(bool value) { isAtRest = value; }
  bool IsAtRest() const { return isAtRest; }

  // The run-time error that a trapped statement met last.
  const RunTimeError& CurrentError() const { return currentError; }
  void SetCurrentError(RunTimeError error) { currentError = std::move(error); }

  // Whether a procedure is under way, with all that it may be waiting for: a box, a dialog, the end of a print job.
  bool IsInProcedure() const { return procedures > 0; }

  // The last HistoryLimit characters of CR LF and name, one after the other.
  const std::string& FunctionHistory() const { return m_FunctionHistory; }

private:
  friend class Procedure;

  static std::string TraceFilePath();

  Desktop& desktop;
  EditorEvents& events;
  Control& editor;
  Control& picFrame;
  Control& picCanvas;
  Log& KwLogCtl1;
  int procedures = 0;
  bool isAtRest = false;
  std::string m_FunctionHistory;
  RunTimeError currentError{ErrorNumber::InternalError};
};

}  // namespace kw
