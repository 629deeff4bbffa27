#pragma once

#include <functional>
#include <utility>

namespace kw {

// A notification of a model with at most one handler, the editor's procedure of that name.
template <class... Args>
class Event {
public:
  void Connect(std::function<void(Args...)> newHandler) { handler = std::move(newHandler); }

  void Raise(Args... args) const {
    // A copy keeps the handler alive when it reconnects or destroys the event's owner.
    if (const auto current = handler) current(args...);
  }

private:
  std::function<void(Args...)> handler;
};

}  // namespace kw
