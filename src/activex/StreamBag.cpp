#include "activex/StreamBag.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "components/base/RunTimeError.h"

namespace kw::activex {
namespace {

constexpr char Magic[4] = {'K', 'w', 'E', 'P'};
constexpr std::uint16_t Version = 1;
// The longest text is a path of 32767 UTF-16 units; longer data is no property of ours.
constexpr std::uint32_t LongestText = 4 * 32767;

enum class Type : unsigned char { Boolean = 1, Integer = 2, Text = 3 };

template <class Number>
void Put(std::string& bytes, Number number) {
  for (std::size_t index = 0; index < sizeof number; ++index) {
    bytes.push_back(static_cast<char>((static_cast<std::uint64_t>(number) >> (8 * index)) & 0xFFU));
  }
}

// Reads from a stream. After the first failure every further read fails, too.
class Reader {
public:
  explicit Reader(IStream& source) : stream(source) {}

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
      ULONG read = 0;
      if (FAILED(stream.Read(text.data() + done, length - done, &read)) || read == 0) {
        good = false;
        return {};
      }
      done += read;
    }
    return text;
  }

private:
  IStream& stream;
  bool good = true;
};

}  // namespace

HRESULT StreamBag::Load(IStream& stream) {
  Reader reader(stream);
  const std::string magic = reader.GetText(sizeof Magic);
  const auto version = reader.Get<std::uint16_t>();
  const auto count = reader.Get<std::uint16_t>();
  if (!reader.IsGood() || !std::equal(std::begin(Magic), std::end(Magic), magic.begin())) return STG_E_INVALIDHEADER;
  if (version != Version) return STG_E_OLDDLL;
  std::vector<std::pair<std::string, Value>> loaded;
  for (std::uint16_t index = 0; index < count && reader.IsGood(); ++index) {
    std::string key = reader.GetText(reader.Get<std::uint16_t>());
    switch (static_cast<Type>(reader.Get<unsigned char>())) {
      case Type::Boolean:
        loaded.emplace_back(std::move(key), reader.Get<unsigned char>() != 0);
        break;
      case Type::Integer:
        loaded.emplace_back(std::move(key), reader.Get<std::int16_t>());
        break;
      case Type::Text:
        loaded.emplace_back(std::move(key), reader.GetText(reader.Get<std::uint32_t>()));
        break;
      default:
        return E_FAIL;
    }
  }
  if (!reader.IsGood()) return E_FAIL;
  entries = std::move(loaded);
  return S_OK;
}

std::string StreamBag::Encode() const {
  std::string bytes(std::begin(Magic), std::end(Magic));
  Put(bytes, Version);
  Put(bytes, static_cast<std::uint16_t>(entries.size()));
  for (const auto& [key, value] : entries) {
    Put(bytes, static_cast<std::uint16_t>(key.size()));
    bytes += key;
    if (const bool* boolean = std::get_if<bool>(&value)) {
      Put(bytes, Type::Boolean);
      Put(bytes, static_cast<unsigned char>(*boolean));
    } else if (const auto* integer = std::get_if<std::int16_t>(&value)) {
      Put(bytes, Type::Integer);
      Put(bytes, static_cast<std::uint16_t>(*integer));
    } else {
      const auto& text = std::get<std::string>(value);
      Put(bytes, Type::Text);
      Put(bytes, static_cast<std::uint32_t>(text.size()));
      bytes += text;
    }
  }
  return bytes;
}

HRESULT StreamBag::Save(IStream& stream) const {
  const std::string bytes = Encode();
  ULONG written = 0;
  const HRESULT result = stream.Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
  if (FAILED(result)) return result;
  return written == bytes.size() ? S_OK : STG_E_MEDIUMFULL;
}

std::uint64_t StreamBag::Size() const { return Encode().size(); }

template <class Wanted>
Wanted StreamBag::Read(const std::string& key, Wanted defaultValue) const {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.first == key; });
  if (found == entries.end()) return defaultValue;
  if (const Wanted* value = std::get_if<Wanted>(&found->second)) return *value;
  Raise(ErrorNumber::TypeMismatch);
}

bool StreamBag::ReadBoolean(const std::string& key, bool defaultValue) { return Read(key, defaultValue); }
std::int16_t StreamBag::ReadInteger(const std::string& key, std::int16_t defaultValue) {
  return Read(key, defaultValue);
}
std::string StreamBag::ReadText(const std::string& key, const std::string& defaultValue) {
  return Read(key, defaultValue);
}

// A stream holds every property, even with its default value, so that it stays valid if a default changes.
void StreamBag::WriteBoolean(const std::string& key, bool value, bool /*defaultValue*/) {
  entries.emplace_back(key, value);
}
void StreamBag::WriteInteger(const std::string& key, std::int16_t value, std::int16_t /*defaultValue*/) {
  entries.emplace_back(key, value);
}
void StreamBag::WriteText(const std::string& key, const std::string& value, const std::string& /*defaultValue*/) {
  entries.emplace_back(key, value);
}

}  // namespace kw::activex
