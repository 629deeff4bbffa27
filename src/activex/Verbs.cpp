#include "activex/Verbs.h"

#include <olectl.h>

#include "activex/Enumerator.h"

namespace kw::activex {
namespace {

constexpr DWORD EntryFlags = MF_STRING | MF_ENABLED;
constexpr DWORD Attributes = OLEVERBATTRIB_ONCONTAINERMENU;

}  // namespace

std::wstring Verb::RegistryText() const {
  return menuText + L"," + std::to_wstring(EntryFlags) + L"," + std::to_wstring(Attributes);
}

std::vector<Verb> Verbs() {
  std::vector<Verb> verbs;
  for (LONG number = 1;; ++number) {
    const Dispatcher::Command* const command = Dispatcher::CommandOfVerb(number);
    if (command == nullptr) break;
    verbs.push_back({number, {command->menuText.begin(), command->menuText.end()}});
  }
  verbs.push_back({OLEIVERB_PROPERTIES, L"&Properties..."});
  return verbs;
}

bool HandOut(const Verb& verb, OLEVERB& given) {
  const std::size_t size = verb.menuText.size() + 1;
  given = {verb.number, static_cast<LPOLESTR>(CoTaskMemAlloc(size * sizeof(wchar_t))), EntryFlags, Attributes};
  if (given.lpszVerbName == nullptr) return false;
  verb.menuText.copy(given.lpszVerbName, size);
  given.lpszVerbName[size - 1] = L'\0';
  return true;
}

HRESULT EnumerateVerbs(IEnumOLEVERB** enumerator) {
  *enumerator = nullptr;
  return Enumerator<IEnumOLEVERB, OLEVERB, Verb>::Create(Verbs(), enumerator);
}

HRESULT RunVerb(EditorCore& core, LONG number) {
  const Dispatcher::Command* const command = Dispatcher::CommandOfVerb(number);
  if (command == nullptr) return OLEOBJ_S_INVALIDVERB;
  // Query the container first, because it may do anything before it answers.
  const bool isDesigned = !core.Site().AmbientBoolean(DISPID_AMBIENT_USERMODE).value_or(true);
  const windows::EditorWindow* const content = core.Activation().Content();
  const bool isUserAtWork = content != nullptr && content->IsUserAtWork();
  if (isDesigned || isUserAtWork || !core.Editor().TakesVerbs()) return OLEOBJ_S_CANNOT_DOVERB_NOW;
  core.Editor().CommandRoom().ToolbarButtonClick(std::string(command->key));
  return S_OK;
}

}  // namespace kw::activex
