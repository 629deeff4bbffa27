# kw_is_repeated(<variable> <source>)
# Whether the file includes itself once for each instruction set.
function(kw_is_repeated variable source)
  file(STRINGS "${source}" repeated REGEX "hwy/foreach_target.h" LIMIT_COUNT 1)
  if(repeated)
    set(${variable} TRUE PARENT_SCOPE)
  else()
    set(${variable} FALSE PARENT_SCOPE)
  endif()
endfunction()

# kw_unity(<target> <source>...)
# Compiles the sources of the target in batches of at most 8, so that a header is read once for 8 files and one changed
# file stays cheap. A name in an anonymous namespace is therefore unique in its room.
# A file that is repeated is compiled alone.
option(KW_UNITY "Compile the files of a room in batches" ON)
function(kw_unity target)
  if(NOT KW_UNITY)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  foreach(source IN LISTS ARGN)
    kw_is_repeated(repeated "${source}")
    if(repeated)
      set_source_files_properties("${source}" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
endfunction()

# kw_own_files(<variable> <pattern>...)
# The files of the current folder and those below it that are in no room of their own.
function(kw_own_files variable)
  list(TRANSFORM ARGN PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  file(GLOB_RECURSE files CONFIGURE_DEPENDS ${ARGN})
  file(GLOB_RECURSE nested "${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt")
  foreach(file IN LISTS nested)
    get_filename_component(folder "${file}" DIRECTORY)
    list(FILTER files EXCLUDE REGEX "^${folder}/")
  endforeach()
  set(${variable} ${files} PARENT_SCOPE)
endfunction()

# kw_include_folder(<name>)
# An include folder that holds the headers of the current folder alone, under their paths from src/, as links. Who is given
# the include folders of some rooms can include the headers of no other.
function(kw_include_folder name)
  set(include "${CMAKE_BINARY_DIR}/include/${name}")
  file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
  kw_own_files(headers *.h *.def)
  kw_own_files(sources *.cpp)
  foreach(source IN LISTS sources)
    kw_is_repeated(repeated "${source}")
    if(repeated)
      list(APPEND headers "${source}")
    endif()
  endforeach()
  file(REMOVE_RECURSE "${include}")
  foreach(header IN LISTS headers)
    file(RELATIVE_PATH path "${CMAKE_CURRENT_SOURCE_DIR}" "${header}")
    get_filename_component(place "${include}/${folder}/${path}" DIRECTORY)
    file(MAKE_DIRECTORY "${place}")
    file(CREATE_LINK "${header}" "${include}/${folder}/${path}" SYMBOLIC)
  endforeach()
  file(MAKE_DIRECTORY "${include}")
endfunction()

# kw_room(<name> [FAST] [DEPENDS <room>...] [LIBS <target>...])
# FAST: it works on pixels or bytes. Every other room is compiled for a small control in what is delivered for Windows.
# The static library kw_<name> of every source below the current folder that is in no room of its own. Includes are written
# from src/; a room can include its own headers, and those of the rooms that it, or one of them, depends on.
function(kw_room name)
  cmake_parse_arguments(PARSE_ARGV 1 room "FAST" "" "DEPENDS;LIBS")
  if(room_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "kw_room(${name}): unknown arguments ${room_UNPARSED_ARGUMENTS}")
  endif()
  kw_own_files(sources *.cpp)
  list(TRANSFORM room_DEPENDS PREPEND kw_)
  foreach(lower IN LISTS room_DEPENDS)
    if(NOT TARGET ${lower})
      message(FATAL_ERROR "kw_room(${name}): there is no room ${lower} below it")
    endif()
  endforeach()
  kw_include_folder(${name})
  if(sources)
    add_library(kw_${name} STATIC ${sources})
    kw_unity(kw_${name} ${sources})
    if(WIN32 AND NOT room_FAST)
      target_compile_options(kw_${name} PRIVATE "$<$<CONFIG:Release>:-Os>")
    endif()
    set(scope PUBLIC)
  else()
    add_library(kw_${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(kw_${name} ${scope} "${CMAKE_BINARY_DIR}/include/${name}")
  target_link_libraries(kw_${name} ${scope} ${room_DEPENDS} ${room_LIBS})
  file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
  set_property(GLOBAL APPEND_STRING PROPERTY kw_rooms "room\t${name}\t${folder}\n")
endfunction()

# kw_write_rooms()
# Writes rooms.txt into the build folder, for programs that work room by room: lines "room<TAB>NAME<TAB>folder of its
# sources" and "test<TAB>ROOM<TAB>program that tests it", each program once for every room that it covers.
function(kw_write_rooms)
  get_property(lines GLOBAL PROPERTY kw_rooms)
  file(WRITE "${CMAKE_BINARY_DIR}/rooms.txt" "${lines}")
endfunction()

# kw_test(<room> [COVERS <room>...] [LIBS <target>...] [SLOW <pattern>...] [ALONE <parts>])
# The GoogleTest program test_<room> of every source below the current folder, linked with the room it tests. See
# kw_test_program for the other arguments.
function(kw_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "ALONE" "COVERS;LIBS;SLOW")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  kw_test_program(${name} SOURCES ${sources} COVERS ${test_COVERS} LIBS kw_${name} ${test_LIBS} SLOW ${test_SLOW}
                  ALONE ${test_ALONE})
  kw_unity(test_${name} ${sources})
endfunction()

# kw_test_program(<name> SOURCES <file>... [COVERS <room>...] [LIBS <target>...] [SLOW <pattern>...]
#                 [ENVIRONMENT <VARIABLE=value>...] [ALONE <parts>])
# The GoogleTest program test_<name>. Natively each of its suites is a test of CTest, a large suite several. Under Wine the
# whole program is one, because starting a program costs more there.
# COVERS: rooms that this program tests beside the one of its name; the target quick_<room> builds it, and its tests have
# the label <room>.
# SLOW: patterns of the cases that need more than a second each; their tests have the label slow.
# ALONE: under Wine the tests need a display, a clipboard and a registry of their own; they run in so many parts side by
# side, since they wait more than they work.
function(kw_test_program name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "ALONE" "SOURCES;COVERS;LIBS;SLOW;ENVIRONMENT")
  if(test_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "kw_test_program(${name}): unknown arguments ${test_UNPARSED_ARGUMENTS}")
  endif()
  add_executable(test_${name} ${test_SOURCES})
  target_include_directories(test_${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  target_link_libraries(test_${name} PRIVATE ${test_LIBS} gtest_main)
  set_target_properties(test_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  target_compile_options(test_${name} PRIVATE ${KW_TEST_OPTIONS})
  foreach(room IN ITEMS ${name} ${test_COVERS})
    if(NOT TARGET quick_${room})
      add_custom_target(quick_${room})
    endif()
    add_dependencies(quick_${room} test_${name})
    set_property(GLOBAL APPEND_STRING PROPERTY kw_rooms "test\t${room}\ttests/test_${name}\n")
  endforeach()
  list(APPEND test_COVERS ${name})
  if(WIN32 AND test_ALONE)
    foreach(part RANGE 1 ${test_ALONE})
      math(EXPR index "${part} - 1")
      set(test "${name}.${part}")
      add_test(NAME ${test} COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine-alone" ${test} "$<TARGET_FILE:test_${name}>")
      set(test_ENVIRONMENT ${test_ENVIRONMENT} GTEST_TOTAL_SHARDS=${test_ALONE} GTEST_SHARD_INDEX=${index})
      set_tests_properties(${test} PROPERTIES TIMEOUT 600 COST 100 LABELS "${test_COVERS}"
                           ENVIRONMENT "${test_ENVIRONMENT}")
    endforeach()
  elseif(WIN32)
    # One of these keeps a processor busy.
    add_test(NAME ${name} COMMAND test_${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 LABELS "${test_COVERS}" ENVIRONMENT "${test_ENVIRONMENT}"
                         RESOURCE_LOCK processor)
  else()
    kw_discover_suites(${name} "${test_SLOW}" "${test_ENVIRONMENT}")
  endif()
endfunction()
