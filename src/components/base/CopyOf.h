#pragma once

#include <utility>
#include <variant>

namespace kw {

// A copy of a variant that may hold a text. The library's own copy constructor corrupts memory if the text gets none:
// it destroys an object that was never made. This one throws std::bad_alloc.
template <class... Types>
std::variant<Types...> CopyOf(const std::variant<Types...>& original) {
  return std::visit([](auto value) { return std::variant<Types...>(std::move(value)); }, original);
}

}  // namespace kw
