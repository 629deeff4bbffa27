#include "windows/scanning/TwainSession.h"

#include <array>
#include <cstring>

namespace kw::windows {
namespace {

twain::UserInterface InterfaceOn(HWND parent) { return {TRUE, FALSE, parent}; }

}  // namespace

TwainSession::TwainSession(twain::ManagerEntry managerEntry, HWND parentWindow)
    : entry(managerEntry), parent(parentWindow) {
  application.version = {1, 0, twain::LanguageEnglishUsa, twain::CountryUsa, "1.0"};
  application.protocolMajor = twain::ProtocolMajor;
  application.protocolMinor = twain::ProtocolMinor;
  application.supportedGroups = twain::Control | twain::Image;
  std::strcpy(application.manufacturer, "Kw");
  std::strcpy(application.productFamily, "KwEditor");
  std::strcpy(application.productName, "KwEditor");
}

WORD TwainSession::AskManager(WORD data, WORD message, void* content) {
  return entry(&application, nullptr, twain::Control, data, message, content);
}

WORD TwainSession::AskSource(DWORD group, WORD data, WORD message, void* content) {
  return entry(&application, &source, group, data, message, content);
}

bool TwainSession::OpenManager() {
  HWND window = parent;
  if (AskManager(twain::ParentData, twain::OpenManager, &window) != twain::Success) return false;
  state = 3;
  return true;
}

bool TwainSession::LetUserSelect(twain::Identity& chosen) {
  return AskManager(twain::IdentityData, twain::UserSelect, &chosen) == twain::Success;
}

bool TwainSession::FindDefault(twain::Identity& found) {
  for (const WORD which : std::to_array<WORD>({twain::GetDefault, twain::GetFirst})) {
    found = {};
    if (AskManager(twain::IdentityData, which, &found) == twain::Success && found.productName[0] != 0) return true;
  }
  return false;
}

bool TwainSession::OpenSource(const twain::Identity& chosen) {
  source = chosen;
  if (AskManager(twain::IdentityData, twain::OpenSource, &source) != twain::Success) return false;
  state = 4;
  // Both are the defaults of every source, so a source may reject them.
  SetCapability(twain::TransferCount, twain::Integer16, twain::AllImages);
  SetCapability(twain::TransferMechanism, twain::Unsigned16, twain::NativeTransfer);
  return true;
}

void TwainSession::SetCapability(WORD capability, WORD type, WORD value) {
  const HGLOBAL container = GlobalAlloc(GHND, sizeof(twain::OneValue));
  if (container == nullptr) return;
  auto* const content = static_cast<twain::OneValue*>(GlobalLock(container));
  *content = {type, value};
  GlobalUnlock(container);
  twain::Capability wanted = {capability, twain::OneValueContainer, container};
  AskSource(twain::Control, twain::CapabilityData, twain::Set, &wanted);
  GlobalFree(container);
}

bool TwainSession::Enable() {
  twain::UserInterface shown = InterfaceOn(parent);
  const WORD result = AskSource(twain::Control, twain::UserInterfaceData, twain::EnableSource, &shown);
  if (result != twain::Success && result != twain::CheckStatus) return false;
  state = 5;
  return true;
}

bool TwainSession::Offer(MSG& message, WORD& notice) {
  twain::Event event = {&message, twain::NoMessage};
  const WORD result = AskSource(twain::Control, twain::EventData, twain::ProcessEvent, &event);
  notice = event.notice;
  if (notice == twain::TransferReady && state == 5) state = 6;
  return result == twain::SourceEvent;
}

TwainSession::Outcome TwainSession::Transfer(HGLOBAL& image) {
  image = nullptr;
  const WORD result = AskSource(twain::Image, twain::NativeTransferData, twain::Get, &image);
  if (result != twain::TransferDone && result != twain::Cancel) return Outcome::Failed;  // the state remains 6
  state = 7;
  if (!EndTransfer()) GoDownTo(5);  // a source that cannot end a transfer has no further image
  if (result == twain::TransferDone) return Outcome::Image;
  if (image != nullptr) GlobalFree(image);
  image = nullptr;
  return Outcome::Cancelled;
}

void TwainSession::GoDownTo(int lower) {
  // Ending one transfer leads back to state 6 while the source has more images; from there all are dropped at once.
  while (state > lower) GoDown();
}

bool TwainSession::EndTransfer() {
  twain::PendingTransfers pending = {};
  const WORD result = AskSource(twain::Control, twain::PendingTransfersData, twain::EndTransfer, &pending);
  state = result == twain::Success && pending.count == 0 ? 5 : 6;
  return result == twain::Success;
}

void TwainSession::GoDown() {
  twain::PendingTransfers pending = {};
  switch (state) {
    case 7:
      EndTransfer();
      return;
    case 6:
      AskSource(twain::Control, twain::PendingTransfersData, twain::Reset, &pending);
      break;
    case 5: {
      twain::UserInterface shown = InterfaceOn(parent);
      AskSource(twain::Control, twain::UserInterfaceData, twain::DisableSource, &shown);
      break;
    }
    case 4:
      AskManager(twain::IdentityData, twain::CloseSource, &source);
      break;
    default: {
      HWND window = parent;
      AskManager(twain::ParentData, twain::CloseManager, &window);
      break;
    }
  }
  --state;
}

}  // namespace kw::windows
