# The shared library exports the functions that the header declares, and nothing else; the export lists
# of both platforms agree. Called with -DNM=..., -DLIBRARY=... and -DSOURCE=....

file(STRINGS "${SOURCE}/include/vialto/vialto.h" declarations REGEX "VIALTO_CALL [A-Za-z0-9_]+\\(")
set(declared "")
foreach(declaration IN LISTS declarations)
  string(REGEX REPLACE ".*VIALTO_CALL ([A-Za-z0-9_]+)\\(.*" "\\1" name "${declaration}")
  list(APPEND declared "${name}")
endforeach()

execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE symbols
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" exported "${symbols}")
list(TRANSFORM exported STRIP)

file(READ "${SOURCE}/src/vialto.map" map_text)
string(REGEX MATCHALL "\n    [A-Za-z0-9_]+;" map "${map_text}")
list(TRANSFORM map REPLACE "[\n ;]" "")

file(READ "${SOURCE}/src/vialto.def" def_text)
string(REGEX MATCHALL "\n    [A-Za-z0-9_]+" def "${def_text}")
list(TRANSFORM def STRIP)

list(SORT declared)
foreach(list_name exported map def)
  list(SORT ${list_name})
  if(NOT "${declared}" STREQUAL "${${list_name}}")
    message(FATAL_ERROR "declared: ${declared}\n${list_name}: ${${list_name}}")
  endif()
endforeach()
