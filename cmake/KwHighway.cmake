# The target kw_highway: Google Highway, vector instructions that are chosen when the program runs.
# Natively it is the Debian package libhwy-dev; for Windows scripts/codecs makes it.
add_library(kw_highway INTERFACE)
if(WIN32)
  if(NOT EXISTS "${KW_DEPS}/lib/libhwy.a")
    message(FATAL_ERROR "${KW_DEPS}/lib/libhwy.a is missing: run ./kw setup")
  endif()
  target_link_libraries(kw_highway INTERFACE "${KW_DEPS}/lib/libhwy.a")
  target_include_directories(kw_highway SYSTEM INTERFACE "${KW_DEPS}/include")
  # GCC aligns the stack of 64-bit Windows programs to 16 bytes only, yet takes it for aligned to 32 and 64 when it
  # stores wide registers.
  target_compile_options(kw_highway INTERFACE "$<$<COMPILE_LANGUAGE:CXX>:-Wa,-muse-unaligned-vector-move>")
else()
  find_library(KW_HIGHWAY_LIBRARY hwy)
  if(NOT KW_HIGHWAY_LIBRARY)
    message(FATAL_ERROR "Highway was not found: run ./kw setup")
  endif()
  target_link_libraries(kw_highway INTERFACE "${KW_HIGHWAY_LIBRARY}")
endif()
