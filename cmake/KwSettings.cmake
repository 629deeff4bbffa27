# Settings of every target, GoogleTest included.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Products lie directly in the build folder of their preset.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")

find_program(KW_CCACHE ccache)
if(KW_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER "${KW_CCACHE}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${KW_CCACHE}")
endif()

option(KW_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
if(KW_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

option(KW_SANITIZE_THREADS "Build with the thread sanitizer" OFF)
if(KW_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()

# How the tests themselves are compiled. The rooms under test are optimised and fully checked; optimising the tests costs
# more time than it saves, and a null pointer ends a test without a check at each use of one.
if(KW_SANITIZE)
  set(KW_TEST_OPTIONS -O0 -fno-sanitize=null,alignment)
else()
  set(KW_TEST_OPTIONS -O1)
endif()

option(KW_FUZZ "Build the fuzz targets, with everything instrumented for libFuzzer (Clang)" OFF)
if(KW_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  add_compile_definitions(UNICODE _UNICODE _WIN32_WINNT=0x0601 NOMINMAX STRICT)
  # Nothing is installed beside the control: the compiler's run time is inside it.
  add_link_options(-static -static-libgcc -static-libstdc++)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # COM entry points are looked up without the stdcall decoration.
    add_link_options(-Wl,--kill-at -Wl,--enable-stdcall-fixup)
  endif()
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # x87 registers would round single-precision coordinates differently from the other builds.
  add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-msse2;-mfpmath=sse>")
  # Without it a native program sees no file of 2 GiB and more.
  if(UNIX)
    add_compile_definitions(_FILE_OFFSET_BITS=64)
  endif()
endif()

option(KW_LINES "Symbols tell lines of the source code, by paths from the project's folder" OFF)
if(KW_LINES)
  add_compile_options(-g1 "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
endif()

include(KwHardening)
