#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "activex/ConnectionPoint.h"
#include "activex/MemberDescription.h"
#include "control/EditorEvents.h"

namespace kw::activex {

// Carries the control's events and property notifications to the sinks of the host.
//
// While the host has frozen events, events are dropped; changed properties are remembered and told at the thaw.
class HostEvents final : public EditorEvents {
public:
  HostEvents(Lifetime& owner, MemberDescription& description);

  ConnectionPoint& EventPoint() { return eventPoint; }
  ConnectionPoint& PropertyPoint() { return propertyPoint; }

  // Freezes nest. A thaw too many is ignored.
  void Freeze() { ++freezes; }
  void Thaw();

  // Called for each assigned property with its name, frozen or not.
  void OnChange(std::function<void(const std::string&)> handler) { changed = std::move(handler); }

  void ErrorOccured(std::int16_t& errorNo, std::string& errorMsg) override;
  void NewPageCreated(std::string& filePath, std::int16_t& currentPageNo, std::int16_t& totalPages) override;
  void PageChanged(std::int16_t& pageNo) override;
  void PropertyChanged(const std::string& propertyName) override;

private:
  // Arguments in the order of the declaration; each is by reference.
  void Raise(DISPID event, std::vector<VARIANT> arguments);
  void TellChanged(DISPID property);

  Lifetime& life;
  MemberDescription& members;
  ConnectionPoint eventPoint;
  ConnectionPoint propertyPoint;
  int freezes = 0;
  std::vector<DISPID> changedWhileFrozen;
  std::function<void(const std::string&)> changed;
};

}  // namespace kw::activex
