#pragma once

#include <new>
#include <string_view>
#include <utility>

#include "trap/Trap.h"

namespace kw {

// The shape of every procedure of the editor: it traces its name on entry, then runs each statement under the trap.
//
//   Procedure run(trap, "SavePage");
//   run([&] { ... });  // a statement; when it fails, the error is reported and the next one runs
//
// An error never leaves a statement, except one that the report itself meets: that leaves the procedure.
class Procedure {
public:
  // Traces `name`. A failing trace is an error of the procedure like any other.
  Procedure(Trap& errorTrap, std::string_view name) : Procedure(errorTrap) {
    (*this)([&] { trap.TraceFunction(name); });
  }
  // For the few procedures that trace no name, or more than their name.
  explicit Procedure(Trap& errorTrap) : trap(errorTrap) { ++trap.procedures; }
  Procedure(const Procedure&) = delete;
  Procedure& operator=(const Procedure&) = delete;
  ~Procedure() { --trap.procedures; }

  // Runs a statement; true when it ran to its end.
  template <class Statement>
  bool operator()(Statement&& statement) {
    try {
      std::forward<Statement>(statement)();
      return true;
    } catch (const RunTimeError& error) {
      trap.SetCurrentError(error);
    } catch (const std::bad_alloc&) {
      trap.SetCurrentError(RunTimeError(ErrorNumber::OutOfMemory));
    } catch (const std::exception& error) {
      trap.SetCurrentError(RunTimeError(static_cast<std::int32_t>(ErrorNumber::InternalError), error.what()));
    }
    if (!isIgnoring) Report();
    return false;
  }

  // Reports the error that the last failing statement met.
  void Report() { trap.HandleCriticalError(); }

  // The value of an expression; `otherwise` when it fails.
  template <class Value, class Expression>
  Value Ask(Expression&& expression, Value otherwise) {
    (*this)([&] { otherwise = std::forward<Expression>(expression)(); });
    return otherwise;
  }

  // Runs a statement whose failure the procedure deals with itself: its error's number, 0 when it ran to its end.
  template <class Statement>
  std::int32_t Attempt(Statement&& statement) {
    const bool before = std::exchange(isIgnoring, true);
    const bool succeeded = (*this)(std::forward<Statement>(statement));
    isIgnoring = before;
    return succeeded ? 0 : trap.CurrentError().Number();
  }

  // From now on a failing statement is skipped without a report.
  void IgnoreErrors() { isIgnoring = true; }

private:
  Trap& trap;
  bool isIgnoring = false;
};

}  // namespace kw
