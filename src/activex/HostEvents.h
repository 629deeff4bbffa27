#pragma once

#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "activex/ConnectionPoint.h"
#include "activex/Lifetime.h"
#include "members/EditorEvents.h"

namespace kw::activex {

// Carries the control's events and property notifications to the sinks of the host.
//
// While the host has frozen events, events are dropped; changed properties are remembered and told at the thaw.
class HostEvents final : public EditorEvents {
public:
  explicit HostEvents(Lifetime& owner);

  ConnectionPoint& EventPoint() { return eventPoint; }
  ConnectionPoint& PropertyPoint() { return propertyPoint; }

  // Freezes nest. A thaw too many is ignored.
  void Freeze() { ++freezes; }
  void Thaw();

  // While it lives, changes of properties are not told to anyone.
  class WithoutChanges {
  public:
    explicit WithoutChanges(HostEvents& kept) : events(kept) { ++events.silences; }
    WithoutChanges(const WithoutChanges&) = delete;
    WithoutChanges& operator=(const WithoutChanges&) = delete;
    ~WithoutChanges() { --events.silences; }

  private:
    HostEvents& events;
  };

  // Called for each assigned property, frozen or not.
  void OnChange(std::function<void(PropertyId)> handler) { changed = std::move(handler); }

  void Raise(EventId event, std::span<const Argument> arguments) override;
  void PropertyChanged(PropertyId property) override;

private:
  void Send(DISPID event, std::span<VARIANT> arguments);
  void TellChanged(DISPID property);

  Lifetime& life;
  ConnectionPoint eventPoint;
  ConnectionPoint propertyPoint;
  int freezes = 0;
  int silences = 0;
  std::vector<DISPID> changedWhileFrozen;
  std::function<void(PropertyId)> changed;
};

}  // namespace kw::activex
