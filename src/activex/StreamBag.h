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
// The format, all numbers little-endian: a header of "KwEP", the 16-bit format version (1) and the 16-bit number of
// entries. Each entry is the key's 16-bit length and the key, a type byte (1 Boolean, 2 integer, 3 text), and the
// value: one byte, 16 bits, or a 32-bit length and the text. Keys and texts are UTF-8. Entries may come in any order.
class StreamBag final : public PropertyBag {
public:
  // Reads all entries of the stream. On failure the bag stays unchanged: STG_E_INVALIDHEADER for another format,
  // STG_E_OLDDLL for a later version, E_FAIL for truncated entries or an unknown type.
  HRESULT Load(IStream& stream);
  HRESULT Save(IStream& stream) const;
  // The number of bytes that Save writes.
  std::uint64_t Size() const;

  bool ReadBoolean(const std::string& key, bool defaultValue) override;
  std::int16_t ReadInteger(const std::string& key, std::int16_t defaultValue) override;
  std::string ReadText(const std::string& key, const std::string& defaultValue) override;
  void WriteBoolean(const std::string& key, bool value, bool defaultValue) override;
  void WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) override;
  void WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) override;

private:
  using Value = std::variant<bool, std::int16_t, std::string>;

  // Raises TypeMismatch if the key's value has another type.
  template <class Wanted>
  Wanted Read(const std::string& key, Wanted defaultValue) const;
  std::string Encode() const;

  std::vector<std::pair<std::string, Value>> entries;
};

}  // namespace kw::activex
