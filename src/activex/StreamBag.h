#pragma once

#include <windows.h>

#include <objidl.h>

#include "control/EncodedBag.h"

namespace kw::activex {

// On failure the bag stays unchanged: STG_E_INVALIDHEADER for another format, STG_E_OLDDLL for a later version, E_FAIL
// for truncated entries or an unknown type.
HRESULT LoadBag(EncodedBag& bag, IStream& stream);
HRESULT SaveBag(const EncodedBag& bag, IStream& stream);

}  // namespace kw::activex
