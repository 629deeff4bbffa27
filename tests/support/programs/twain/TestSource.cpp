// A scanner without paper: a TWAIN source that scans computed pages at once and fails where it is told to.
//
// It runs in the process of the test and takes its orders from the environment:
//   KW_SOURCE_PAGES  how many sheets lie in the feeder (default 1)
//   KW_SOURCE_DEPTH  bits per pixel: 1, 8 or 24 (default); "mixed" for 1 on the first page and 8 on the others
//   KW_SOURCE_FAILS  the step that goes wrong, see Fails(); "silent": no image ever gets ready
// What it was asked it appends to the variable KW_SOURCE_TRACE, one letter each.

#include <windows.h>

#include <cstring>
#include <string>

#include "tests/support/programs/twain/TestSheet.h"
#include "windows/scanning/Twain.h"

namespace {

namespace twain = kw::windows::twain;

twain::Identity identity = {};
twain::Identity application = {};
int page = 0;  // that is scanned next, from 1

std::string Variable(const char* name) {
  char text[256] = {};
  GetEnvironmentVariableA(name, static_cast<char*>(text), sizeof text);
  return static_cast<const char*>(text);
}

bool Fails(const char* step) { return Variable("KW_SOURCE_FAILS") == step; }

void Trace(char letter) { SetEnvironmentVariableA("KW_SOURCE_TRACE", (Variable("KW_SOURCE_TRACE") + letter).c_str()); }

int Pages() {
  const std::string count = Variable("KW_SOURCE_PAGES");
  return count.empty() ? 1 : std::stoi(count);
}

int Depth() {
  const std::string depth = Variable("KW_SOURCE_DEPTH");
  if (depth == "mixed") return page == 1 ? 1 : 8;
  return depth.empty() ? 24 : std::stoi(depth);
}

void Notify(WORD notice) {
  for (const wchar_t* name : {L"TWAINDSM.dll", L"twain_32.dll"}) {
    const HMODULE manager = GetModuleHandleW(name);
    if (manager == nullptr) continue;
    const auto entry =
        reinterpret_cast<twain::ManagerEntry>(reinterpret_cast<void*>(GetProcAddress(manager, "DSM_Entry")));
    entry(&identity, &application, twain::Control, twain::NoData, notice, nullptr);
    return;
  }
}

WORD Identify(const twain::Identity* origin, WORD message, void* content) {
  auto* const given = static_cast<twain::Identity*>(content);
  switch (message) {
    case twain::Get: {
      const DWORD id = given->id;
      *given = {};
      given->id = id;
      given->version = {1, 0, twain::LanguageEnglishUsa, twain::CountryUsa, "1.0"};
      given->protocolMajor = twain::ProtocolMajor;
      given->protocolMinor = twain::ProtocolMinor;
      given->supportedGroups = twain::Control | twain::Image;
      std::strcpy(given->manufacturer, "Kw");
      std::strcpy(given->productFamily, "Test");
      std::strcpy(given->productName, "Kw Test Source");
      return twain::Success;
    }
    case twain::OpenSource:
      Trace('O');
      if (Fails("open")) return twain::Failure;
      identity = *given;
      application = *origin;
      return twain::Success;
    case twain::CloseSource:
      Trace('C');
      return Fails("close") ? twain::Failure : twain::Success;
    default:
      return twain::Failure;
  }
}

WORD Show(WORD message) {
  if (message == twain::DisableSource) {
    Trace('D');
    return Fails("disable") ? twain::Failure : twain::Success;
  }
  Trace('E');
  if (Fails("enable")) return twain::Failure;
  page = 1;
  if (Fails("silent")) return twain::Success;
  if (Fails("user closes")) {
    Notify(twain::CloseSourceRequest);
    return twain::Success;
  }
  Notify(twain::TransferReady);
  return Fails("hidden interface") ? twain::CheckStatus : twain::Success;
}

WORD Scan(void* content) {
  Trace('T');
  if (Fails("user cancels")) return twain::Cancel;
  if (Fails("transfer") || (page == 2 && Fails("second transfer"))) return twain::Failure;
  std::vector<std::uint8_t> sheet = kw::test::TestSheet(page, Depth());
  if (Fails("image")) sheet.resize(sizeof(BITMAPINFOHEADER) + 10);
  const HGLOBAL memory = GlobalAlloc(GHND, sheet.size());
  std::memcpy(GlobalLock(memory), sheet.data(), sheet.size());
  GlobalUnlock(memory);
  *static_cast<HGLOBAL*>(content) = memory;
  return twain::TransferDone;
}

WORD Transfers(WORD message, void* content) {
  auto* const pending = static_cast<twain::PendingTransfers*>(content);
  if (message == twain::Reset) {
    Trace('R');
    pending->count = 0;
    return twain::Success;
  }
  Trace('N');
  if (Fails("end")) return twain::Failure;
  pending->count = static_cast<WORD>(Pages() - page);
  ++page;
  return twain::Success;
}

}  // namespace

extern "C" __declspec(dllexport) WORD FAR PASCAL
    DS_Entry(twain::Identity* origin, DWORD group, WORD data, WORD message, void* content) {
  if (group == twain::Image) return data == twain::NativeTransferData ? Scan(content) : WORD{twain::Failure};
  switch (data) {
    case twain::IdentityData:
      return Identify(origin, message, content);
    case twain::UserInterfaceData:
      return Show(message);
    case twain::PendingTransfersData:
      return Transfers(message, content);
    case twain::EventData:
      static_cast<twain::Event*>(content)->notice = twain::NoMessage;
      return twain::NotSourceEvent;
    case twain::StatusData:
      *static_cast<twain::Status*>(content) = {1, 0};  // some failure
      return twain::Success;
    default:
      return twain::Failure;  // no capability can be set
  }
}
