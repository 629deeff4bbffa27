# GoogleTest comes as sources (Debian package googletest), so the same tests build for Linux and for Windows.
set(KW_GOOGLETEST "/usr/src/googletest" CACHE PATH "Folder of the GoogleTest sources")
if(NOT EXISTS "${KW_GOOGLETEST}/CMakeLists.txt")
  message(FATAL_ERROR "GoogleTest sources not found in ${KW_GOOGLETEST}: run ./kw setup")
endif()
set(INSTALL_GTEST OFF)
add_subdirectory("${KW_GOOGLETEST}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
include(GoogleTest)
