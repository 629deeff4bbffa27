# kw_pascal(<name> <source>)
# Builds a Free Pascal program for 64-bit Windows, with the COM units of the run time, as the target kw_pascal_<name>. The
# compiler makes programs for Windows itself; only the units of the run time have to be made first, from their sources.
# Without the packages fp-compiler and fpc-source nothing is built.
find_program(KW_PASCAL ppcx64)
file(GLOB KW_PASCAL_SOURCES LIST_DIRECTORIES true /usr/share/fpcsrc/*)
set(KW_PASCAL_UNITS "${CMAKE_BINARY_DIR}/pascal/units")

function(kw_pascal name source)
  if(NOT KW_PASCAL OR NOT KW_PASCAL_SOURCES OR NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    return()
  endif()
  set(output "${CMAKE_BINARY_DIR}/tests/${name}.exe")
  if(NOT TARGET kw_pascal_units)
    set(script "${CMAKE_SOURCE_DIR}/cmake/pascal-units")
    add_custom_command(OUTPUT "${KW_PASCAL_UNITS}/eventsink.ppu"
      COMMAND "${script}" "${KW_PASCAL}" "${KW_PASCAL_SOURCES}" "${KW_PASCAL_UNITS}"
      DEPENDS "${script}" COMMENT "Building the units of Free Pascal for Windows" VERBATIM)
    add_custom_target(kw_pascal_units DEPENDS "${KW_PASCAL_UNITS}/eventsink.ppu")
  endif()
  set(objects "${CMAKE_BINARY_DIR}/pascal/${name}")
  add_custom_command(OUTPUT "${output}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${objects}"
    COMMAND "${KW_PASCAL}" -Twin64 -Px86_64 -n -v0ew "-Fu${KW_PASCAL_UNITS}" "-FU${objects}" "-o${output}"
      "${CMAKE_CURRENT_SOURCE_DIR}/${source}"
    DEPENDS "${source}" "${KW_PASCAL_UNITS}/eventsink.ppu" COMMENT "Building ${name}.exe" VERBATIM)
  add_custom_target(kw_pascal_${name} ALL DEPENDS "${output}")
  add_dependencies(kw_pascal_${name} kw_pascal_units)
endfunction()
