#pragma once

#include <string_view>

namespace kw {

// Whether a text is empty or of blanks alone.
inline bool IsBlank(std::string_view text) { return text.find_first_not_of(' ') == std::string_view::npos; }

}  // namespace kw
