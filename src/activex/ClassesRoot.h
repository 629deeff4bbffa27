#pragma once

#include <windows.h>

#include <objbase.h>

#include <string>

#include "activex/Registration.h"

namespace kw::activex {

struct RegistryRow {
  std::wstring key;
  const wchar_t* name;  // null: the key's default value
  std::wstring value;
};

// The registry's classes of all users or of the calling one. HKEY_CLASSES_ROOT shows both at once and decides by what
// is there already which of them is written; so during its life that key is, in this process, the chosen one alone, for
// the system's functions, too.
class ClassesRoot {
public:
  explicit ClassesRoot(Users users);
  ClassesRoot(const ClassesRoot&) = delete;
  ClassesRoot& operator=(const ClassesRoot&) = delete;
  ~ClassesRoot();

  // Whether there are such classes and they may be written; if not, nothing else may be called.
  HRESULT Result() const { return result; }

  HRESULT Write(const RegistryRow& row) const;
  // A missing key is no error.
  HRESULT Remove(const std::wstring& key) const;
  bool Has(const std::wstring& key) const;
  // Whether programs of the other architecture, 32 or 64 bits, see the key.
  bool OtherArchitectureHas(const std::wstring& key) const;

private:
  HKEY hive;
  HKEY classes = nullptr;
  HRESULT result;
};

// COM on this thread, which who registers may have left out.
class ComApartment {
public:
  ComApartment() : result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
  ~ComApartment() {
    if (SUCCEEDED(result)) CoUninitialize();
  }

private:
  HRESULT result;
};

}  // namespace kw::activex
