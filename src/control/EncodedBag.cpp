#include "control/EncodedBag.h"

#include <algorithm>

#include "components/base/RunTimeError.h"

namespace kw {
namespace {

constexpr char Magic[4] = {'K', 'w', 'E', 'P'};
constexpr std::uint16_t FormatVersion = 1;
// The longest text is a path of 32767 UTF-16 units; longer data is no property of ours.
constexpr std::uint32_t LongestText = 4 * 32767;

enum class EntryType : std::uint8_t { Boolean = 1, Integer = 2, Text = 3 };

template <class Number>
void Put(std::string& bytes, Number number) {
  for (std::size_t index = 0; index < sizeof number; ++index) {
    bytes.push_back(static_cast<char>((static_cast<std::uint64_t>(number) >> (8 * index)) & 0xFFU));
  }
}

// After the first failure every further read fails, too.
class EntryReader {
public:
  explicit EntryReader(const EncodedBag::Source& bytes) : source(bytes) {}

  bool IsGood() const { return good; }

  template <class Number>
  Number Get() {
    const std::string bytes = GetText(sizeof(Number));
    std::uint64_t number = 0;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
      number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[index])) << (8 * index);
    }
    return static_cast<Number>(number);
  }

  std::string GetText(std::uint32_t length) {
    std::string text;
    if (!good || length > LongestText) {
      good = false;
      return text;
    }
    text.resize(length);
    std::uint32_t done = 0;
    while (done < length) {
      const std::size_t read = source(text.data() + done, length - done);
      if (read == 0) {
        good = false;
        return {};
      }
      done += static_cast<std::uint32_t>(read);
    }
    return text;
  }

private:
  const EncodedBag::Source& source;
  bool good = true;
};

}  // namespace

EncodedBag::Outcome EncodedBag::Decode(const Source& source) {
  EntryReader reader(source);
  const std::string magic = reader.GetText(sizeof Magic);
  const auto version = reader.Get<std::uint16_t>();
  const auto count = reader.Get<std::uint16_t>();
  if (!reader.IsGood() || !std::equal(std::begin(Magic), std::end(Magic), magic.begin())) {
    return Outcome::OtherFormat;
  }
  if (version != FormatVersion) return Outcome::LaterVersion;
  std::vector<std::pair<std::string, Value>> loaded;
  for (std::uint16_t index = 0; index < count && reader.IsGood(); ++index) {
    std::string key = reader.GetText(reader.Get<std::uint16_t>());
    switch (static_cast<EntryType>(reader.Get<unsigned char>())) {
      case EntryType::Boolean:
        loaded.emplace_back(std::move(key), reader.Get<unsigned char>() != 0);
        break;
      case EntryType::Integer:
        loaded.emplace_back(std::move(key), reader.Get<std::int16_t>());
        break;
      case EntryType::Text:
        loaded.emplace_back(std::move(key), reader.GetText(reader.Get<std::uint32_t>()));
        break;
      default:
        return Outcome::Damaged;
    }
  }
  if (!reader.IsGood()) return Outcome::Damaged;
  entries = std::move(loaded);
  return Outcome::Good;
}

std::string EncodedBag::Encode() const {
  std::string bytes(std::begin(Magic), std::end(Magic));
  Put(bytes, FormatVersion);
  Put(bytes, static_cast<std::uint16_t>(entries.size()));
  for (const auto& [key, value] : entries) {
    Put(bytes, static_cast<std::uint16_t>(key.size()));
    bytes += key;
    if (const bool* boolean = std::get_if<bool>(&value)) {
      Put(bytes, EntryType::Boolean);
      Put(bytes, static_cast<unsigned char>(*boolean));
    } else if (const auto* integer = std::get_if<std::int16_t>(&value)) {
      Put(bytes, EntryType::Integer);
      Put(bytes, static_cast<std::uint16_t>(*integer));
    } else {
      const auto& text = std::get<std::string>(value);
      Put(bytes, EntryType::Text);
      Put(bytes, static_cast<std::uint32_t>(text.size()));
      bytes += text;
    }
  }
  return bytes;
}

template <class Wanted>
Wanted EncodedBag::Read(const std::string& key, Wanted defaultValue) const {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.first == key; });
  if (found == entries.end()) return defaultValue;
  if (const Wanted* value = std::get_if<Wanted>(&found->second)) return *value;
  Raise(ErrorNumber::TypeMismatch);
}

bool EncodedBag::ReadBoolean(const std::string& key, bool defaultValue) { return Read(key, defaultValue); }
std::int16_t EncodedBag::ReadInteger(const std::string& key, std::int16_t defaultValue) {
  return Read(key, defaultValue);
}
std::string EncodedBag::ReadText(const std::string& key, const std::string& defaultValue) {
  return Read(key, defaultValue);
}

// The bytes hold every property, even with its default value, so that they stay valid if a default changes.
void EncodedBag::WriteBoolean(const std::string& key, bool value, bool /*defaultValue*/) {
  entries.emplace_back(key, value);
}
void EncodedBag::WriteInteger(const std::string& key, std::int16_t value, std::int16_t /*defaultValue*/) {
  entries.emplace_back(key, value);
}
void EncodedBag::WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) {
  entries.emplace_back(key, value.size() <= LongestText ? value : defaultValue);
}

}  // namespace kw
