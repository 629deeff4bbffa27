#include "activex/Verbs.h"

#include <olectl.h>

#include "activex/Enumerator.h"
#include "components/base/Texts.h"
#include "windows/base/Text.h"

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
    verbs.push_back({number, windows::ToWide(TranslatedIfOwn(command->menuText))});
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
  const windows::EditorWindow* const content = core.Activation().Content();
  const bool isUserAtWork = content != nullptr && content->IsUserAtWork();
  if (core.Editor().IsDesigned() || isUserAtWork || !core.Editor().TakesVerbs()) return OLEOBJ_S_CANNOT_DOVERB_NOW;
  core.Editor().CommandRoom().ToolbarButtonClick(std::string(command->key));
  return S_OK;
}

}  // namespace kw::activex
