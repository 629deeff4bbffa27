# kw_product(<target>)
# A program or control that is delivered. For Windows it comes without symbols. They stand in symbols/<file>.debug of the
# build folder, and the product names that file (debug link), so that a debugger finds it. Beside it stands the linker's
# map <file>.map, which tells what libraries are inside.
function(kw_product target)
  if(NOT WIN32)
    return()
  endif()
  set(folder "${CMAKE_BINARY_DIR}/symbols")
  file(MAKE_DIRECTORY "${folder}")
  set(name "$<TARGET_FILE_NAME:${target}>")
  # Leaves out functions and tables that nothing uses.
  target_link_options(${target} PRIVATE -Wl,--gc-sections)
  # The time that the linker notes in the file is SOURCE_DATE_EPOCH, if that is set.
  target_link_options(${target} PRIVATE "-Wl,-Map=${folder}/${name}.map")
  add_custom_command(TARGET ${target} POST_BUILD WORKING_DIRECTORY "${folder}"
    COMMAND "${CMAKE_OBJCOPY}" --only-keep-debug "$<TARGET_FILE:${target}>" "${name}.debug"
    COMMAND "${CMAKE_OBJCOPY}" --strip-all "--add-gnu-debuglink=${name}.debug" "$<TARGET_FILE:${target}>"
    VERBATIM)
endfunction()
