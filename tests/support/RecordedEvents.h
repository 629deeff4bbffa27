#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "members/EditorEvents.h"

namespace kw::test {

// The name in the row of an event or a property; "unexpected" for a number that no row has.
inline std::string RowNameOf(EventId event) {
  switch (event) {
#define EVENT(name, number, parameters, help) \
  case EventId::name:                         \
    return #name;
#include "members/Events.def"
  }
  return "unexpected";
}
inline std::string RowNameOf(PropertyId property) {
  switch (property) {
#define PROPERTY(name, number, type, help) \
  case PropertyId::name:                   \
    return #name;
#define LET_PROPERTY(name, number, type, help) PROPERTY(name, number, type, help)
#include "members/Members.def"
  }
  return "unexpected";
}

// Records what the control tells its container.
class RecordedEvents : public EditorEvents {
public:
  struct Page {
    std::string path;
    int page = 0;
    int count = 0;
    friend bool operator==(const Page&, const Page&) = default;
  };
  std::vector<int> errors;
  std::vector<std::string> errorTexts;
  std::vector<Page> created;
  std::vector<int> changedTo;
  std::vector<std::string> properties;
  std::function<void()> onPageChanged;
  // Runs in every event, with its name.
  std::function<void(const std::string&)> onEvent;

  // Drops all that was recorded.
  void Forget() {
    errors.clear();
    errorTexts.clear();
    created.clear();
    changedTo.clear();
    properties.clear();
  }

  using EditorEvents::Raise;
  void Raise(EventId event, std::span<const Argument> arguments) override {
    const auto integer = [&](std::size_t index) { return *std::get<std::int16_t*>(arguments[index]); };
    const auto text = [&](std::size_t index) { return *std::get<std::string*>(arguments[index]); };
    if (event == EventId::ErrorOccured) {
      errors.push_back(integer(0));
      errorTexts.push_back(text(1));
    } else if (event == EventId::NewPageCreated) {
      created.push_back({text(0), integer(1), integer(2)});
    } else if (event == EventId::PageChanged) {
      changedTo.push_back(integer(0));
      if (onPageChanged) onPageChanged();
    }
    if (onEvent) onEvent(RowNameOf(event));
  }
  void PropertyChanged(PropertyId property) override {
    properties.push_back(RowNameOf(property));
    if (onEvent) onEvent("PropertyChanged");
  }
};

}  // namespace kw::test
