#pragma once

#include <exception>
#include <utility>

namespace kw::windows {

// The barrier: runs what the system or a host called us for. No error gets past here; it would run into frames that
// know nothing of it and end the process. What the action answers is the answer; where it failed, that of `answer`,
// which gets the error, or null for one of a foreign kind.
template <class Action, class Answer>
auto Guard(Action&& action, Answer&& answer) noexcept {
  try {
    return std::forward<Action>(action)();
  } catch (const std::exception& error) {
    return std::forward<Answer>(answer)(&error);
  } catch (...) {
    return std::forward<Answer>(answer)(static_cast<const std::exception*>(nullptr));
  }
}

// Where nobody is left to hear of an error: the editor has reported it already, or could not. True when the action ran
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

// The action's answer, or `otherwise` where it failed.
template <class Value, class Action>
Value GuardOr(Value otherwise, Action&& action) noexcept {
  Guard([&] { otherwise = std::forward<Action>(action)(); });
  return otherwise;
}

}  // namespace kw::windows
