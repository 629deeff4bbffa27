# kw_discover_suites(<name> <slow patterns> <environment>)
# Makes each suite of the program test_<name> a test of CTest named <name>.<suite>. CTest asks the program for its suites
# when it begins, so that a new test needs no new configuration.
function(kw_discover_suites name slow environment)
  set(file "${CMAKE_CURRENT_BINARY_DIR}/${name}_suites.cmake")
  file(GENERATE OUTPUT "${file}" CONTENT "\
cmake_policy(SET CMP0011 NEW)
set(name [==[${name}]==])
set(program [==[$<TARGET_FILE:test_${name}>]==])
set(slow [==[${slow}]==])
set(labels [==[${test_COVERS}]==])
set(environment [==[${environment}]==])
include([==[${CMAKE_SOURCE_DIR}/cmake/AddSuites.cmake]==])
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${file}")
endfunction()
