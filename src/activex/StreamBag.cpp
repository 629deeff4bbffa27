#include "activex/StreamBag.h"

#include <string>

namespace kw::activex {

HRESULT LoadBag(EncodedBag& bag, IStream& stream) {
  const auto outcome = bag.Decode([&stream](char* to, std::size_t count) -> std::size_t {
    ULONG read = 0;
    return FAILED(stream.Read(to, static_cast<ULONG>(count), &read)) ? 0 : read;
  });
  switch (outcome) {
    case EncodedBag::Outcome::Good:
      return S_OK;
    case EncodedBag::Outcome::OtherFormat:
      return STG_E_INVALIDHEADER;
    case EncodedBag::Outcome::LaterVersion:
      return STG_E_OLDDLL;
    case EncodedBag::Outcome::Damaged:
      break;
  }
  return E_FAIL;
}

HRESULT SaveBag(const EncodedBag& bag, IStream& stream) {
  const std::string bytes = bag.Encode();
  ULONG written = 0;
  const HRESULT result = stream.Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
  if (FAILED(result)) return result;
  return written == bytes.size() ? S_OK : STG_E_MEDIUMFULL;
}

}  // namespace kw::activex
