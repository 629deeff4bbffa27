#pragma once

#ifdef __has_feature
#define KW_HAS_FEATURE(name) __has_feature(name)
#else
#define KW_HAS_FEATURE(name) 0
#endif

namespace kw::test {

// Whether the address or the thread sanitizer watches every access, which takes many times as long.
#if defined(__SANITIZE_ADDRESS__) || KW_HAS_FEATURE(address_sanitizer) || KW_HAS_FEATURE(thread_sanitizer)
constexpr bool IsWatched = true;
#else
constexpr bool IsWatched = false;
#endif

// The amount of work of a test: all of it, or under a sanitizer enough that each kind still occurs.
template <class Number>
constexpr Number Amount(Number all, Number watched) {
  return IsWatched ? watched : all;
}

}  // namespace kw::test
