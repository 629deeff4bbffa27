#include "activex/Module.h"

#include <oleauto.h>

#include <atomic>

namespace kw::activex::Module {
namespace {

HINSTANCE instance = nullptr;
std::atomic<long> users = 0;

}  // namespace

HINSTANCE Instance() { return instance; }
void SetInstance(HINSTANCE newInstance) { instance = newInstance; }

std::wstring Path() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());
  }
}

void Lock() { ++users; }
void Unlock() { --users; }
bool IsUnused() { return users == 0; }

HRESULT LoadLibraryOfTypes(ITypeLib** library) { return LoadTypeLibEx(Path().c_str(), REGKIND_NONE, library); }

HRESULT LoadTypeInfo(REFGUID guid, ITypeInfo** info) {
  Microsoft::WRL::ComPtr<ITypeLib> library;
  const HRESULT result = LoadLibraryOfTypes(&library);
  return FAILED(result) ? result : library->GetTypeInfoOfGuid(guid, info);
}

}  // namespace kw::activex::Module
