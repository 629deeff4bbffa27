# kw_type_library(<target> <idl> [<included>...])
# Compiles an IDL file of the current folder <folder> for the processor at hand. What it includes of src/ is named after
# it, by paths from there. Linking to <target> gives
#   "<folder>/<stem>.h"    the interfaces,
#   "<folder>/<stem>.tlb"  the type library, for a resource script: 1 TYPELIB "<folder>/<stem>.tlb"
# and the definitions of the IIDs and CLSIDs. The file gets the project's version: KW_LIBRARY_VERSION (its first two
# numbers) and KW_LIBRARY_TITLE; code that links to it gets KW_LIBRARY_MAJOR and KW_LIBRARY_MINOR. The variable <target>_TLB holds the path of the type library, so that a
# resource script can be rebuilt with it: set_source_files_properties(x.rc PROPERTIES OBJECT_DEPENDS "${<target>_TLB}")
function(kw_type_library target idl)
  find_program(KW_WIDL ${KW_TARGET}-widl REQUIRED)
  # Wine's headers hold the IDL of the OLE interfaces, its library folder the standard OLE type library.
  find_path(KW_WINE_IDL oaidl.idl PATHS /usr/include/wine/wine/windows /usr/include/wine/windows
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  find_path(KW_WINE_TLB stdole2.tlb PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(bits --win64)
  else()
    set(bits --win32)
  endif()
  get_filename_component(stem "${idl}" NAME_WE)
  get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
  set(generated "${CMAKE_BINARY_DIR}/generated")
  set(output "${generated}/${folder}/${stem}")
  file(MAKE_DIRECTORY "${generated}/${folder}")
  set(source "${CMAKE_CURRENT_SOURCE_DIR}/${idl}")
  list(TRANSFORM ARGN PREPEND "${CMAKE_SOURCE_DIR}/src/" OUTPUT_VARIABLE included)
  set(version "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
  set(widl "${KW_WIDL}" "-DKW_LIBRARY_VERSION=${version}" "-DKW_LIBRARY_TITLE=\"Kw image annotation editor ${version}\"" -I "${CMAKE_SOURCE_DIR}/src" -I "${KW_WINE_IDL}" -L "${KW_WINE_TLB}" ${bits})
  # The compiler notes the time in the library, which would make every build a different one.
  find_program(KW_FAKETIME faketime REQUIRED)
  set(frozen "${CMAKE_COMMAND}" -E env TZ=UTC "${KW_FAKETIME}" -f "2000-01-01 00:00:00")
  add_custom_command(
    OUTPUT "${output}.tlb" "${output}.h" "${output}_i.c"
    COMMAND ${frozen} ${widl} -t -o "${output}.tlb" "${idl}"
    COMMAND ${widl} -h -o "${output}.h" "${idl}"
    COMMAND ${widl} -u -o "${output}_i.c" "${idl}"
    # By its name alone, because the headers tell from what file they come.
    WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" DEPENDS "${source}" ${included} VERBATIM)
  add_library(${target} STATIC "${output}_i.c" "${output}.h" "${output}.tlb")
  target_include_directories(${target} SYSTEM INTERFACE "${generated}")
  target_compile_definitions(${target} INTERFACE KW_LIBRARY_MAJOR=${PROJECT_VERSION_MAJOR}
                                                 KW_LIBRARY_MINOR=${PROJECT_VERSION_MINOR})
  set(${target}_TLB "${output}.tlb" PARENT_SCOPE)
endfunction()
