#pragma once

#include <exception>

namespace kw::windows {

// Runs what the system called us for. An error must not cross the system's stack frames: the editor has reported it
// already, or could not; nobody is left to hear of it.
template <class Action>
void Guard(Action&& action) {
  try {
    action();
  } catch (const std::exception&) {
    return;
  }
}

}  // namespace kw::windows
