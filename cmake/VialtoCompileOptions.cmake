# One set of compile options for every target of the project.
#
# The same input must give the same bits on every compiler and optimisation level: no fast-math, not
# even that of a host whose build takes in this tree, no contraction of a product and a sum into one
# rounding, and SSE2 rather than x87 arithmetic. Nobody reads errno behind a square root, which
# would keep it from being vectorised.

add_library(vialto_compile_options INTERFACE)
target_compile_features(vialto_compile_options INTERFACE cxx_std_20)
target_compile_options(vialto_compile_options INTERFACE
  -fno-fast-math -ffp-contract=off -fno-math-errno
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<COMPILE_LANGUAGE:CXX>:-Wdouble-promotion>
  $<$<BOOL:${VIALTO_WARNINGS_AS_ERRORS}>:-Werror>)

include(CheckCXXSourceCompiles)
check_cxx_source_compiles("
  #if !(defined(__i386__) || defined(_M_IX86))
  #error not 32-bit x86
  #endif
  int main() { return 0; }" VIALTO_TARGET_IS_X86_32)
if(VIALTO_TARGET_IS_X86_32)
  target_compile_options(vialto_compile_options INTERFACE -msse2 -mfpmath=sse)
endif()
