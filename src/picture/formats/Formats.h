#pragma once

#include "picture/PictureFormat.h"
#include "picture/formats/FormatList.h"

namespace kw {

inline constexpr double CentimetresPerInch = 2.54;

// Of every format in the list: NameFormat and NameExtensions.
#define KW_DECLARE_FORMAT(Name, ...)       \
  extern const PictureFormat Name##Format; \
  inline constexpr PictureFormat::Extensions Name##Extensions{__VA_ARGS__};
KW_FORMATS(KW_DECLARE_FORMAT)
#undef KW_DECLARE_FORMAT

}  // namespace kw
