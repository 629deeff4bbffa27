#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace kw::test {

// While it lives, a module of this process calls another function than the system's one of that name.
class ImportPatch {
public:
  template <class Function>
  ImportPatch(HMODULE module, const char* name, Function* instead) : place(Find(module, name)) {
    EXPECT_NE(place, nullptr) << "the module does not import " << name;
    if (place != nullptr) former = Exchange(reinterpret_cast<void*>(instead));
  }
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;
  ~ImportPatch() {
    if (place != nullptr) Exchange(former);
  }

private:
  static void** Find(HMODULE module, const std::string& name) {
    auto* const base = reinterpret_cast<std::byte*>(module);
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto& head = *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos.e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = head.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; library->OriginalFirstThunk != 0; ++library) {
      const auto* asked = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
      auto* found = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
      for (; asked->u1.AddressOfData != 0; ++asked, ++found) {
        if (IMAGE_SNAP_BY_ORDINAL(asked->u1.Ordinal)) continue;
        const auto* const entry = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + asked->u1.AddressOfData);
        if (name == static_cast<const char*>(entry->Name)) return reinterpret_cast<void**>(&found->u1.Function);
      }
    }
    return nullptr;
  }
  void* Exchange(void* function) const {
    DWORD protection = 0;
    VirtualProtect(static_cast<void*>(place), sizeof *place, PAGE_READWRITE, &protection);
    void* const before = *place;
    *place = function;
    VirtualProtect(static_cast<void*>(place), sizeof *place, protection, &protection);
    return before;
  }

  void** place;
  void* former = nullptr;
};

}  // namespace kw::test
