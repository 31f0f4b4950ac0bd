# The library exports the functions that the header declares, and nothing else. Called with
# -DNM=..., -DLIBRARY=... and, for a shared library, -DSHARED=ON.
cmake_minimum_required(VERSION 3.21)
include(${CMAKE_CURRENT_LIST_DIR}/../cmake/VialtoHeader.cmake)

set(dynamic "")
if(SHARED)
  set(dynamic --dynamic)
endif()
execute_process(COMMAND ${NM} ${dynamic} --extern-only --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+ [A-Za-z] " exported "${symbols}")
list(TRANSFORM exported REPLACE " .*" "")

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
