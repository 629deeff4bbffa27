#pragma once

#include <windows.h>

#include <ocidl.h>

#include "control/PropertyBag.h"

namespace kw::activex {

// Persisted properties in the bag of the host.
class HostBag final : public PropertyBag {
public:
  // For reading; the host's bag reports to `log`, which may be null.
  HostBag(IPropertyBag& hostBag, IErrorLog* log) : bag(hostBag), errors(log) {}
  // For writing; without `writesDefaults` a property that equals its default is left out.
  HostBag(IPropertyBag& hostBag, bool writesDefaults) : bag(hostBag), writeAll(writesDefaults) {}

  // The first failure of a write.
  HRESULT Result() const { return result; }

  bool ReadBoolean(const std::string& key, bool defaultValue) override;
  std::int16_t ReadInteger(const std::string& key, std::int16_t defaultValue) override;
  std::string ReadText(const std::string& key, const std::string& defaultValue) override;
  void WriteBoolean(const std::string& key, bool value, bool defaultValue) override;
  void WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) override;
  void WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) override;

private:
  // Whether the bag has the key; `value` is then of that type and the caller's to clear.
  bool Read(const std::string& key, VARTYPE type, VARIANT& value);
  void Write(const std::string& key, VARIANT& value);

  IPropertyBag& bag;
  IErrorLog* errors = nullptr;
  bool writeAll = false;
  HRESULT result = S_OK;
};

}  // namespace kw::activex
