# The target kw_codecs: libtiff with the libraries of its codecs, libjpeg, giflib and zlib.
# Natively they are the machine's shared libraries; for Windows they are static libraries made by scripts/codecs.
add_library(kw_codecs INTERFACE)
if(WIN32)
  set(KW_DEPS "${CMAKE_SOURCE_DIR}/build/deps/${KW_TARGET}" CACHE PATH "Static codec libraries for the Windows target")
  foreach(library IN ITEMS tiff jpeg lerc lzma webp z zstd gif)  # in link order: tiff needs those before gif
    if(NOT EXISTS "${KW_DEPS}/lib/lib${library}.a")
      message(FATAL_ERROR "${KW_DEPS}/lib/lib${library}.a is missing: run ./kw setup")
    endif()
    target_link_libraries(kw_codecs INTERFACE "${KW_DEPS}/lib/lib${library}.a")
  endforeach()
  target_include_directories(kw_codecs SYSTEM INTERFACE "${KW_DEPS}/include")
else()
  find_package(TIFF REQUIRED)
  find_package(JPEG REQUIRED)
  find_package(GIF REQUIRED)
  find_package(ZLIB REQUIRED)
  target_link_libraries(kw_codecs INTERFACE TIFF::TIFF JPEG::JPEG GIF::GIF ZLIB::ZLIB)
endif()
