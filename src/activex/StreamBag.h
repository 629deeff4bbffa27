#pragma once

#include <windows.h>

#include <objidl.h>

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "control/PropertyBag.h"

namespace kw::activex {

// Persisted properties in a stream.
//
// All numbers are little-endian. A header: "KwEP", the 16-bit version of the form (1), the 16-bit count of entries.
// Each entry: the 16-bit length of the key and the key, a byte for the type (1 Boolean, 2 integer, 3 text), and the
// value: a byte, 16 bits, or a 32-bit length and a text. Keys and texts are UTF-8. The order of the entries does not
// matter.
class StreamBag final : public PropertyBag {
public:
  // Reads all of the stream's entries. On any failure the bag stays as it was: STG_E_INVALIDHEADER for another form,
  // STG_E_OLDDLL for a later version, E_FAIL for entries cut short or of an unknown type.
  HRESULT Load(IStream& stream);
  HRESULT Save(IStream& stream) const;
  // The size that Save writes.
  std::uint64_t Size() const;

  bool ReadBoolean(const std::string& key, bool defaultValue) override;
  std::int16_t ReadInteger(const std::string& key, std::int16_t defaultValue) override;
  std::string ReadText(const std::string& key, const std::string& defaultValue) override;
  void WriteBoolean(const std::string& key, bool value, bool defaultValue) override;
  void WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) override;
  void WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) override;

private:
  using Value = std::variant<bool, std::int16_t, std::string>;

  // Raises TypeMismatch where the value under `key` is of another type.
  template <class Wanted>
  Wanted Read(const std::string& key, Wanted defaultValue) const;
  std::string Encode() const;

  std::vector<std::pair<std::string, Value>> entries;
};

}  // namespace kw::activex
