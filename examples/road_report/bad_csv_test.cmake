# Runs road_report on files that it cannot read, and looks for the line that it names.

function(expect text message)
  file(WRITE "${DIRECTORY}/road.csv" "${text}")
  execute_process(COMMAND ${EMULATOR} "${ROAD_REPORT}" "${DIRECTORY}/road.csv"
    RESULT_VARIABLE result ERROR_VARIABLE error OUTPUT_QUIET)
  if(result EQUAL 0 OR NOT error MATCHES "${message}")
    message(FATAL_ERROR "expected '${message}', got '${error}' (result ${result})")
  endif()
endfunction()

expect("" "road.csv:1: no header line")
expect("d,e\n" "road.csv:1: at least two samples are needed")
expect("d,e\n0.0,0.1\n0.1,x\n" "road.csv:3: 'x' is not a number")
expect("d,e\n0.0,0.1\n0.1,\n" "road.csv:3: '' is not a number")
expect("d,e\n0.0,0.1\n0.1,nan\n" "road.csv:3: 'nan' is not a number")
expect("d,e\n0.0\n" "road.csv:2: expected a distance and one or two elevations")
expect("d,e\n0.0,1,2,3\n" "road.csv:2: expected a distance and one or two elevations")
expect("d,e\n0.0,0.1\n0.1,0.1,0.2\n" "road.csv:3: expected 2 columns")
expect("d,e\n0.1,0.1\n0.1,0.2\n" "road.csv:3: distances must ascend")
expect("d,e\n0.0,0.1\n0.1,0.2\n\n0.3,0.2\n" "road.csv:5: the sample interval is not constant")
