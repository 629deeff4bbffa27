#pragma once

#include <string_view>

namespace kw {

// Stands in the name of a page file between the name of its document and the number of the page.
inline constexpr std::string_view PageMarker = "_Page_";

}  // namespace kw
