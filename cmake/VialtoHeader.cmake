# What the public header says and nothing repeats: VIALTO_VERSION, three numbers with dots,
# VIALTO_FUNCTIONS, the names of the exported functions in their order, and VIALTO_FILTERS, those of
# the main filter types.
set(VIALTO_HEADER ${CMAKE_CURRENT_LIST_DIR}/../include/vialto/vialto.h)
file(READ ${VIALTO_HEADER} header_text)

set(VIALTO_VERSION "")
foreach(part IN ITEMS MAJOR MINOR PATCH)
  if(NOT header_text MATCHES "#define VIALTO_VERSION_${part} ([0-9]+)")
    message(FATAL_ERROR "${VIALTO_HEADER} defines no VIALTO_VERSION_${part}")
  endif()
  list(APPEND VIALTO_VERSION ${CMAKE_MATCH_1})
endforeach()
list(JOIN VIALTO_VERSION "." VIALTO_VERSION)

# VIALTO_STDCALL_NAMES has them as callers on 32-bit Windows decorate them: with the bytes of the
# arguments, of which every one takes 4 there.
set(VIALTO_FUNCTIONS "")
set(VIALTO_STDCALL_NAMES "")
string(REGEX MATCHALL "VIALTO_CALL [A-Za-z0-9_]+\\([^)]*\\)" prototypes "${header_text}")
foreach(prototype IN LISTS prototypes)
  string(REGEX REPLACE "VIALTO_CALL ([A-Za-z0-9_]+).*" "\\1" name "${prototype}")
  string(REGEX MATCHALL "," commas "${prototype}")
  list(LENGTH commas bytes)
  math(EXPR bytes "4 * (${bytes} + 1)")
  list(APPEND VIALTO_FUNCTIONS ${name})
  list(APPEND VIALTO_STDCALL_NAMES ${name}@${bytes})
endforeach()
string(REGEX MATCHALL "idx_filttyp_[A-Za-z0-9_]+ = " VIALTO_FILTERS "${header_text}")
list(TRANSFORM VIALTO_FILTERS REPLACE " = " "")
unset(header_text)
