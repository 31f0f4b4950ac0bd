# ARCHIVE holds the files EXPECTED, in its root or in a directory of the archive's name.
cmake_minimum_required(VERSION 3.21)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar tf ${ARCHIVE} OUTPUT_VARIABLE listing
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "(^|\n)vialto-[^/\n]*/" "\\1" listing "${listing}")
string(REPLACE "\n" ";" listing "${listing}")
foreach(file IN LISTS EXPECTED)
  if(NOT file IN_LIST listing)
    message(SEND_ERROR "${ARCHIVE} lacks ${file}")
  endif()
endforeach()
