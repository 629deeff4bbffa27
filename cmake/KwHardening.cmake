# Hardening of what is delivered: guards behind buffers on the stack, checked sizes in string functions, landing marks
# of indirect branches. scripts/codecs includes it in the libraries' own builds, too.
# GCC for Windows has no control-flow guard, and its linker cannot mark a program as ready for shadow stacks, so that
# Windows does not look at the landing marks. Addresses are random, 64-bit ones over the whole space, and data are not
# executable: those are defaults of its linker, which tests/architecture/check-products looks for.
# For Windows the run time of the guards, libssp, becomes part of the program by -static.
add_compile_options("$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:-fstack-protector-strong;-fcf-protection>")
add_compile_definitions("$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:_FORTIFY_SOURCE=2>")
if(WIN32)
  add_link_options("$<$<CONFIG:Release>:-fstack-protector-strong>")
else()
  add_link_options("$<$<CONFIG:Release>:-Wl,-z,relro,-z,now>")
endif()
