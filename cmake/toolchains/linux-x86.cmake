# Native programs of 32 bits: Clang, and the libraries that scripts/libraries-x86 fetches. They run on this machine, so this
# is no cross-compilation; their libraries and the loader are found where they lie.
set(folder "${CMAKE_CURRENT_LIST_DIR}/../../build/i386")
get_filename_component(CMAKE_SYSROOT "${folder}" ABSOLUTE)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET i686-linux-gnu)
set(CMAKE_CXX_COMPILER_TARGET i686-linux-gnu)
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,--dynamic-linker=${CMAKE_SYSROOT}/lib/ld-linux.so.2 -Wl,--disable-new-dtags,-rpath,${CMAKE_SYSROOT}/lib/i386-linux-gnu,-rpath,${CMAKE_SYSROOT}/usr/lib/i386-linux-gnu")
set(CMAKE_FIND_ROOT_PATH "${CMAKE_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
