# Turns the drawings in resources/ into Windows icons, cursors and a bitmap; resources/README.md says how they are drawn.
#
# kw_icons(<target>)
# Gives the target, and whatever links to it, the header "resources/KwIcons.h" (the keys of all icons and cursors in the
# order of their pixels; no OS header) and, for Windows, the pixels as resources in the final executable or DLL.
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

# kw_rasterise(<kind> <drawing> <output> [<side>...])
# Adds a rule that turns a drawing below resources/ into a file of that kind, or into one of pixels for each size.
function(kw_rasterise kind drawing output)
  set(files "${output}")
  if(ARGN)
    list(TRANSFORM ARGN PREPEND "${output}." OUTPUT_VARIABLE files)
  endif()
  add_custom_command(
    OUTPUT ${files}
    COMMAND "${resources}/rasterise" ${kind} "${resources}/${drawing}" "${output}" ${ARGN}
    DEPENDS "${resources}/${drawing}" "${resources}/rasterise"
    COMMENT "" VERBATIM)
  set(iconFiles ${iconFiles} ${files} PARENT_SCOPE)
endfunction()

file(MAKE_DIRECTORY "${KW_ICON_FOLDER}/icons" "${KW_ICON_FOLDER}/cursors")
kw_rasterise(icon KwEditor.svg "${KW_PRODUCT_ICON}")
kw_rasterise(bitmap ToolboxBitmap.svg "${KW_ICON_FOLDER}/ToolboxBitmap.bmp")
set(KW_TOOLBOX_BITMAP_ID 101)
set(KW_PRODUCT_ICON_ID 102)
set(script "${KW_TOOLBOX_BITMAP_ID} BITMAP \"ToolboxBitmap.bmp\"\n${KW_PRODUCT_ICON_ID} ICON \"KwEditor.ico\"\n")

# One resource for each size holds the pixels of all drawings of a kind in the order of their names, compressed.
set(iconSizes 16 20 24 32 48)
set(cursorSizes 32 48 64)
set(KW_FIRST_ICON_ID 1000)
set(KW_FIRST_CURSOR_ID 2000)
foreach(kind IN ITEMS icon cursor)
  file(GLOB drawings RELATIVE "${resources}" CONFIGURE_DEPENDS "${resources}/${kind}s/*.svg")
  list(SORT drawings)
  set(${kind}Rows "")
  set(outputs "")
  foreach(drawing IN LISTS drawings)
    get_filename_component(name "${drawing}" NAME_WE)
    set(output "${KW_ICON_FOLDER}/${kind}s/${name}")
    kw_rasterise(pixels "${drawing}" "${output}" ${${kind}Sizes})
    list(APPEND outputs "${output}")
    if(kind STREQUAL "icon")
      string(APPEND iconRows "    \"${name}\",\n")
    else()
      set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${resources}/${drawing}")
      file(STRINGS "${resources}/${drawing}" spot REGEX "data-hotspot")
      if(NOT spot MATCHES "data-hotspot=\"([0-9]+) ([0-9]+)\"")
        message(FATAL_ERROR "${resources}/${drawing} has no data-hotspot")
      endif()
      string(APPEND cursorRows "    {\"${name}.Ico\", ${CMAKE_MATCH_1}, ${CMAKE_MATCH_2}},\n")
    endif()
  endforeach()
  string(TOUPPER "KW_FIRST_${kind}_ID" first)
  foreach(side IN LISTS ${kind}Sizes)
    list(TRANSFORM outputs APPEND ".${side}" OUTPUT_VARIABLE pixels)
    set(strip "${KW_ICON_FOLDER}/${kind}s${side}.gz")
    add_custom_command(OUTPUT "${strip}" COMMAND "${resources}/rasterise" strip "${strip}" ${pixels}
      DEPENDS ${pixels} "${resources}/rasterise" COMMENT "" VERBATIM)
    list(APPEND iconFiles "${strip}")
    math(EXPR id "${${first}} + ${side}")
    string(APPEND script "${id} RCDATA \"${kind}s${side}.gz\"\n")
  endforeach()
  list(JOIN ${kind}Sizes ", " ${kind}Sizes)
endforeach()

file(CONFIGURE OUTPUT "${KW_ICON_FOLDER}/KwIcons.h" @ONLY CONTENT [[// Made by cmake/KwIcons.cmake from the drawings in resources/.
#pragma once

namespace kw {

// A mouse pointer by its key in the image list of mouse pointers; its hot spot counts in pixels of the smallest size.
struct CursorDrawing {
  char key[16];
  int x;
  int y;
};

// Keys of the tool bars' icons, and the mouse pointers of the tools. For each size there is a resource of raw data with
// the pixels of all icons, and one with those of all mouse pointers, in the order of these lists, compressed with gzip.
// A pixel has 32 bits: straight alpha, red, green, blue from the highest; the top row is the first.
inline constexpr char IconKeys[][24] = {
@iconRows@};
inline constexpr CursorDrawing CursorDrawings[] = {
@cursorRows@};

// Widths (and heights) in pixels.
inline constexpr int IconSizes[] = {@iconSizes@};
inline constexpr int CursorSizes[] = {@cursorSizes@};

// The resource of a size has this id and the width.
inline constexpr int FirstIconId = @KW_FIRST_ICON_ID@;
inline constexpr int FirstCursorId = @KW_FIRST_CURSOR_ID@;

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
