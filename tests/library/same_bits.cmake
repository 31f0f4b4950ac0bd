# Holds the digests that PROGRAM prints to those in EXPECTED.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE found RESULT_VARIABLE result)
file(READ ${EXPECTED} expected)
if(NOT result EQUAL 0 OR NOT found STREQUAL expected)
  message(FATAL_ERROR "other bits:\n${found}")
endif()
