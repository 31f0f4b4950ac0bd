# Compiles, links and runs HOST_SOURCE with what pkg-config says of the installed library.
set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBRARY_DIRECTORY}/pkgconfig")
execute_process(COMMAND pkg-config --cflags --libs "vialto = ${VERSION}"
  OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
execute_process(COMMAND "${COMPILER}" -std=c99 -pedantic -Wall -Werror "${HOST_SOURCE}" -o "${PROGRAM}" ${flags} -lm
  COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} "${PREFIX}/${LIBRARY_DIRECTORY}")
execute_process(COMMAND "${PROGRAM}" COMMAND_ERROR_IS_FATAL ANY)
