# What the public header says and nothing repeats: VIALTO_VERSION, three numbers with dots, and
# VIALTO_FUNCTIONS, the names of the exported functions in their order.
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

string(REGEX MATCHALL "VIALTO_CALL [A-Za-z0-9_]+\\(" VIALTO_FUNCTIONS "${header_text}")
list(TRANSFORM VIALTO_FUNCTIONS REPLACE "VIALTO_CALL (.*)\\(" "\\1")
unset(header_text)
