#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "control/PropertyBag.h"

namespace kw {

// Persisted properties as bytes.
//
// The format, all numbers little-endian: a header of "KwEP", the 16-bit format version (1) and the 16-bit number of
// entries. Each entry is the key's 16-bit length and the key, a type byte (1 Boolean, 2 integer, 3 text), and the
// value: one byte, 16 bits, or a 32-bit length and the text. Keys and texts are UTF-8. Entries may come in any order.
class EncodedBag final : public PropertyBag {
public:
  // Reads up to `count` bytes and returns how many it read; 0 if there are no more or they cannot be read.
  using Source = std::function<std::size_t(char* to, std::size_t count)>;
  enum class Outcome : std::uint8_t { Good, OtherFormat, LaterVersion, Damaged };

  // Reads all entries and no byte behind them. Unless that is good, the bag stays unchanged.
  Outcome Decode(const Source& source);
  std::string Encode() const;

  bool ReadBoolean(const std::string& key, bool defaultValue) override;
  std::int16_t ReadInteger(const std::string& key, std::int16_t defaultValue) override;
  std::string ReadText(const std::string& key, const std::string& defaultValue) override;
  void WriteBoolean(const std::string& key, bool value, bool defaultValue) override;
  void WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) override;
  // A text that is longer than any path is written as the default: with it the bytes could not be read again.
  void WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) override;

private:
  using Value = std::variant<bool, std::int16_t, std::string>;

  // Raises TypeMismatch if the key's value has another type.
  template <class Wanted>
  Wanted Read(const std::string& key, Wanted defaultValue) const;

  std::vector<std::pair<std::string, Value>> entries;
};

}  // namespace kw
