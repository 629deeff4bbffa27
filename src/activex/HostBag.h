#pragma once

#include <windows.h>

#include <ocidl.h>

#include "control/PropertyBag.h"

namespace kw::activex {

// Persisted properties in the host's IPropertyBag.
class HostBag final : public PropertyBag {
public:
  // For reading. The host's bag reports errors to `log`, which may be null.
  HostBag(IPropertyBag& hostBag, IErrorLog* log) : bag(hostBag), errors(log) {}
  // For writing. A property with its default value is written only if `writesDefaults` is set.
  HostBag(IPropertyBag& hostBag, bool writesDefaults) : bag(hostBag), writeAll(writesDefaults) {}

  // The result of the first write that failed, else S_OK.
  HRESULT Result() const { return result; }

  bool ReadBoolean(const std::string& key, bool defaultValue) override;
  std::int16_t ReadInteger(const std::string& key, std::int16_t defaultValue) override;
  std::string ReadText(const std::string& key, const std::string& defaultValue) override;
  void WriteBoolean(const std::string& key, bool value, bool defaultValue) override;
  void WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) override;
  void WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) override;

private:
  // Reads a value of that type; the caller must clear it. False if the bag does not have the key.
  bool Read(const std::string& key, VARTYPE type, VARIANT& value);
  void Write(const std::string& key, VARIANT& value);

  IPropertyBag& bag;
  IErrorLog* errors = nullptr;
  bool writeAll = false;
  HRESULT result = S_OK;
};

}  // namespace kw::activex
