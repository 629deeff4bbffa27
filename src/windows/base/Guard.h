#pragma once

#include <exception>
#include <utility>

#include "windows/base/WaitPointer.h"

namespace kw::windows {

// The barrier around what the system or a host calls: it times the action for the wait pointer and lets no exception
// out, because that would unwind foreign stack frames and end the process. Returns the action's result or, if it threw,
// the result of `answer`, which gets the exception, or null if that is no std::exception.
template <class Action, class Answer>
auto Guard(Action&& action, Answer&& answer) noexcept {
  const WaitPointer::Work work;
  try {
    return std::forward<Action>(action)();
  } catch (const std::exception& error) {
    return std::forward<Answer>(answer)(&error);
  } catch (...) {
    return std::forward<Answer>(answer)(static_cast<const std::exception*>(nullptr));
  }
}

// For actions whose errors nobody handles: the editor has reported them already, or could not. True if the action ran
// to its end.
template <class Action>
bool Guard(Action&& action) noexcept {
  return Guard(
      [&] {
        std::forward<Action>(action)();
        return true;
      },
      [](const std::exception*) { return false; });
}

// The action's result, or `otherwise` if it threw.
template <class Value, class Action>
Value GuardOr(Value otherwise, Action&& action) noexcept {
  Guard([&] { otherwise = std::forward<Action>(action)(); });
  return otherwise;
}

}  // namespace kw::windows
