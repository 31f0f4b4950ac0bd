# The library exports the functions that the header declares, and nothing else. Called with -DNM=...
# and -DLIBRARY=....
cmake_minimum_required(VERSION 3.21)
include(${CMAKE_CURRENT_LIST_DIR}/../cmake/VialtoHeader.cmake)

execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" exported "${symbols}")
list(TRANSFORM exported STRIP)

foreach(name IN LISTS exported)
  if(NOT name IN_LIST VIALTO_FUNCTIONS)
    message(SEND_ERROR "${LIBRARY} exports ${name}, which vialto.h does not declare")
  endif()
endforeach()
foreach(name IN LISTS VIALTO_FUNCTIONS)
  if(NOT name IN_LIST exported)
    message(SEND_ERROR "vialto.h declares ${name}, which ${LIBRARY} does not export")
  endif()
endforeach()
