# The library exports the functions that the header declares, and nothing else. Called with -DNM=...
# and -DLIBRARY=....
cmake_minimum_required(VERSION 3.21)
include(${CMAKE_CURRENT_LIST_DIR}/../cmake/VialtoHeader.cmake)

execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" exported "${symbols}")
list(TRANSFORM exported STRIP)

set(undeclared ${exported})
list(REMOVE_ITEM undeclared ${VIALTO_FUNCTIONS})
set(unexported ${VIALTO_FUNCTIONS})
list(REMOVE_ITEM unexported ${exported})
foreach(name IN LISTS undeclared)
  message("${name} is exported by ${LIBRARY} and not declared in vialto.h")
endforeach()
foreach(name IN LISTS unexported)
  message("${name} is declared in vialto.h and not exported by ${LIBRARY}")
endforeach()
if(undeclared OR unexported)
  message(FATAL_ERROR "The exported names differ from the declared ones, see above.")
endif()
