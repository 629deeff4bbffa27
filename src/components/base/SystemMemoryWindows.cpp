#ifdef _WIN32
#include "components/base/SystemMemory.h"

namespace kw {

// Large pages need a right that users do not have.
void PreferLargePages(void* /*block*/, std::size_t /*bytes*/) noexcept {}

}  // namespace kw
#endif
