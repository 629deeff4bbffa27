#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <variant>

#include "members/Members.h"

namespace kw {

// The parameters of each event as those of a function.
namespace event_parameters {

using Integer = std::int16_t&;
using Text = std::string&;

template <EventId event>
struct Of;

#define EVENT(name, number, parameters, help) \
  template <>                                 \
  struct Of<EventId::name> {                  \
    using Type = void parameters;             \
  };
#include "members/Events.def"

}  // namespace event_parameters

// What the control tells its container. It must outlive the control. A handler may change the arguments of an event; it
// may run a message loop and call the control again, but must not destroy it.
class EditorEvents {
public:
  using Argument = std::variant<std::int16_t*, std::string*>;

  EditorEvents() = default;
  EditorEvents(const EditorEvents&) = delete;
  EditorEvents& operator=(const EditorEvents&) = delete;
  virtual ~EditorEvents() = default;

  // Raises an event with the arguments that its row has.
  template <EventId event, class... Arguments>
  void Raise(Arguments&... arguments) {
    static_assert(std::is_same_v<typename event_parameters::Of<event>::Type, void(Arguments & ...)>,
                  "the arguments are not those of the event's row");
    const std::array<Argument, sizeof...(Arguments)> list{&arguments...};
    Raise(event, list);
  }

  // The arguments come in the order of the row.
  virtual void Raise(EventId event, std::span<const Argument> arguments) = 0;

  // A property was assigned.
  virtual void PropertyChanged(PropertyId property) = 0;
};

}  // namespace kw
