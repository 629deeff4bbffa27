set(KW_TARGET x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
include("${CMAKE_CURRENT_LIST_DIR}/windows.cmake")
