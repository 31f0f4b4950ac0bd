# Sets VIALTO_PYTHON to the first Python that has numpy and pointers of the target's size: the one asked
# for, the one on the path, or the system's own, which the one on the path may hide. It is tried
# rather than looked up: the component NumPy of find_package(Python3) asks for Python's C headers too.
set(VIALTO_PYTHON "" CACHE STRING "Python with numpy that runs the tests of examples/python")
if(NOT VIALTO_PYTHON)
  find_program(vialto_system_python python3 PATHS /usr/bin NO_DEFAULT_PATH)
  mark_as_advanced(vialto_system_python)
  foreach(candidate IN ITEMS ${Python3_EXECUTABLE} python3 ${vialto_system_python})
    execute_process(
      COMMAND ${candidate} -c
        "import numpy, struct, sys; sys.exit(struct.calcsize('P') != ${CMAKE_SIZEOF_VOID_P})"
      RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
    if(status EQUAL 0)
      set(VIALTO_PYTHON ${candidate})
      break()
    endif()
  endforeach()
endif()
message(STATUS "Python with numpy for examples/python: ${VIALTO_PYTHON}")
