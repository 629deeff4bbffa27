#include "fuzz/Tries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kw::KW_FUZZED_TRY({data, size});
  return 0;
}
