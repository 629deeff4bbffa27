# Turns the drawings in resources/ into Windows icons, cursors and a bitmap; resources/README.md says how they are drawn.
#
# kw_icons(<target>)
# Gives the target, and whatever links to it, the header "resources/KwIcons.h" (the key of every icon and cursor with
# its resource id; no OS header) and, for Windows, the resources themselves in the final executable or DLL.
#
# kw_application_icon(<target>)
# Gives the executable itself the product's icon, as resource 1.
#
# The target kw_icon_files makes the files on every system; the variable KW_ICON_FOLDER says where they lie.
find_program(KW_RSVG rsvg-convert)
find_program(KW_ICOTOOL icotool)
find_program(KW_CONVERT convert)
if(NOT KW_RSVG OR NOT KW_ICOTOOL OR NOT KW_CONVERT)
  message(FATAL_ERROR "rsvg-convert, icotool or convert is missing: run ./kw setup")
endif()

set(resources "${CMAKE_SOURCE_DIR}/resources")
# All presets share the pictures: they are the same for every processor.
set(KW_SHARED "${CMAKE_SOURCE_DIR}/build/shared")
set(KW_ICON_FOLDER "${KW_SHARED}/resources")
set(KW_PRODUCT_ICON "${KW_ICON_FOLDER}/KwEditor.ico")
set(iconFiles "")

# Adds a rule that turns a drawing below resources/ into a file of that kind.
function(kw_rasterise kind drawing output)
  add_custom_command(
    OUTPUT "${output}"
    COMMAND "${resources}/rasterise" ${kind} "${resources}/${drawing}" "${output}"
    DEPENDS "${resources}/${drawing}" "${resources}/rasterise"
    COMMENT "" VERBATIM)
  set(iconFiles ${iconFiles} "${output}" PARENT_SCOPE)
endfunction()

file(MAKE_DIRECTORY "${KW_ICON_FOLDER}/icons" "${KW_ICON_FOLDER}/cursors")
kw_rasterise(icon KwEditor.svg "${KW_PRODUCT_ICON}")
kw_rasterise(bitmap ToolboxBitmap.svg "${KW_ICON_FOLDER}/ToolboxBitmap.bmp")
set(KW_TOOLBOX_BITMAP_ID 101)
set(KW_PRODUCT_ICON_ID 102)
set(script "${KW_TOOLBOX_BITMAP_ID} BITMAP \"ToolboxBitmap.bmp\"\n${KW_PRODUCT_ICON_ID} ICON \"KwEditor.ico\"\n")

# The ids follow the order of the names; only the header and the script have to agree on them.
foreach(kind IN ITEMS icon cursor)
  file(GLOB drawings RELATIVE "${resources}" CONFIGURE_DEPENDS "${resources}/${kind}s/*.svg")
  list(SORT drawings)
  if(kind STREQUAL "icon")
    set(id 1000)
    set(ending ico)
    set(keyEnding "")
  else()
    set(id 2000)
    set(ending cur)
    set(keyEnding ".Ico")
  endif()
  set(${kind}Rows "")
  foreach(drawing IN LISTS drawings)
    get_filename_component(name "${drawing}" NAME_WE)
    math(EXPR id "${id} + 1")
    kw_rasterise(${kind} "${drawing}" "${KW_ICON_FOLDER}/${kind}s/${name}.${ending}")
    string(APPEND ${kind}Rows "    {\"${name}${keyEnding}\", ${id}},\n")
    string(TOUPPER ${kind} type)
    string(APPEND script "${id} ${type} \"${kind}s/${name}.${ending}\"\n")
  endforeach()
endforeach()

file(CONFIGURE OUTPUT "${KW_ICON_FOLDER}/KwIcons.h" @ONLY CONTENT [[// Made by cmake/KwIcons.cmake from the drawings in resources/.
#pragma once

namespace kw {

struct IconResource {
  const char* key;
  int id;
};

// ICON resources for tool bars, by button key.
inline constexpr IconResource IconResources[] = {
@iconRows@};

// CURSOR resources of the tools, by key in the image list of mouse pointers.
inline constexpr IconResource CursorResources[] = {
@cursorRows@};

// Widths (and heights) in pixels that every ICON resource holds.
inline constexpr int IconSizes[] = {16, 20, 24, 32, 48};

// BITMAP resource of 16 x 15 pixels that stands for the control on a designer's tool box.
inline constexpr int ToolboxBitmapId = @KW_TOOLBOX_BITMAP_ID@;

// ICON resource of the product.
inline constexpr int ProductIconId = @KW_PRODUCT_ICON_ID@;

}  // namespace kw
]])
file(CONFIGURE OUTPUT "${KW_ICON_FOLDER}/KwIcons.rc" @ONLY CONTENT "@script@")
file(CONFIGURE OUTPUT "${KW_ICON_FOLDER}/KwApplication.rc" @ONLY CONTENT "1 ICON \"KwEditor.ico\"\n")

add_custom_target(kw_icon_files DEPENDS ${iconFiles})
add_library(kw_resources INTERFACE)
target_include_directories(kw_resources INTERFACE "${KW_SHARED}")
if(WIN32)
  # An object file rather than an archive: a linker takes from an archive only what some symbol asks for.
  add_library(kw_icon_object OBJECT "${KW_ICON_FOLDER}/KwIcons.rc")
  target_include_directories(kw_icon_object PRIVATE "${KW_ICON_FOLDER}")
  set_source_files_properties("${KW_ICON_FOLDER}/KwIcons.rc" PROPERTIES OBJECT_DEPENDS "${iconFiles}")
  target_sources(kw_resources INTERFACE $<TARGET_OBJECTS:kw_icon_object>)
endif()

function(kw_icons target)
  target_link_libraries(${target} PUBLIC kw_resources)
endfunction()

function(kw_application_icon target)
  target_sources(${target} PRIVATE "${KW_ICON_FOLDER}/KwApplication.rc")
  target_include_directories(${target} PRIVATE "${KW_ICON_FOLDER}")
  add_dependencies(${target} kw_icon_files)
endfunction()
