# Compiles USER with COMPILER, a clang, in each language that the header promises, with every warning
# but those on padding and on what C++98 would not take.
cmake_minimum_required(VERSION 3.21)
foreach(way IN ITEMS
    "-x c -std=c89" "-x c -std=c17" "-x c++ -std=c++11" "-x c++ -std=c++20"
    "-x c -std=c89 -fms-compatibility" "-x c++ -std=c++11 -fms-compatibility")
  separate_arguments(options UNIX_COMMAND "${way}")
  execute_process(
    COMMAND ${COMPILER} ${options} -fsyntax-only -I${INCLUDES} -Werror -Weverything
      -Wno-padded -Wno-c++98-compat -Wno-c++98-compat-pedantic ${USER}
    COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endforeach()
