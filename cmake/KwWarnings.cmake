# Warnings are errors in everything that is ours; included after third-party sources were added.
# GCC 12 reports overlapping copies inside its own std::string, wrongly (-Wrestrict).
# Clang counts an explicit double{x} as a silent promotion, too.
# GCC's full -Wshadow refuses a constructor's parameter that is named like the member it sets; that is our style.
add_compile_options(
  "$<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wpedantic;-Wconversion;-Wnon-virtual-dtor;-Woverloaded-virtual;-Werror>"
  "$<$<COMPILE_LANGUAGE:CXX>:-Wimplicit-fallthrough;-Wformat=2;-Wextra-semi>"
  "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wshadow=local;-Wno-restrict;-Wdouble-promotion>"
  "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wshadow>")
