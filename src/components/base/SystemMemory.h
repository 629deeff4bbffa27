#pragma once

#include <cstddef>

namespace kw {

// Tells the system that all of a block is about to be used, so that it may provide it in large pages: providing the
// usual ones one by one takes as long as some effects. Changes nothing else; small blocks are left alone.
void PreferLargePages(void* block, std::size_t bytes) noexcept;

}  // namespace kw
