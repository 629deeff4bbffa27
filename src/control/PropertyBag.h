#pragma once

#include <cstdint>
#include <string>

namespace kw {

// Where the container keeps the persisted properties. A key that is not there reads as the default; a value that equals
// the default need not be written. Raises TypeMismatch or Overflow if a stored value is of no use.
class PropertyBag {
public:
  PropertyBag() = default;
  PropertyBag(const PropertyBag&) = delete;
  PropertyBag& operator=(const PropertyBag&) = delete;
  virtual ~PropertyBag() = default;

  virtual bool ReadBoolean(const std::string& key, bool defaultValue) = 0;
  virtual std::int16_t ReadInteger(const std::string& key, std::int16_t defaultValue) = 0;
  virtual std::string ReadText(const std::string& key, const std::string& defaultValue) = 0;
  virtual void WriteBoolean(const std::string& key, bool value, bool defaultValue) = 0;
  virtual void WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) = 0;
  virtual void WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) = 0;
};

}  // namespace kw
