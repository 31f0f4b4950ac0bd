# NuGet's client installs the package VERSION from SOURCE into DIRECTORY. The program in DOCUMENT is
# compiled with the file that it brings and run with the library that it brings. PROJECT, which is for
# the .NET SDK, packs libraries for the same platforms.
cmake_minimum_required(VERSION 3.21)
set(ENV{HOME} ${DIRECTORY}/home)
file(REMOVE_RECURSE ${DIRECTORY})
file(MAKE_DIRECTORY ${DIRECTORY}/home)
execute_process(COMMAND nuget install Vialto -Source ${SOURCE} -OutputDirectory ${DIRECTORY} -NoCache
  COMMAND_ERROR_IS_FATAL ANY)

set(package ${DIRECTORY}/Vialto.${VERSION})
file(READ ${PROJECT} project)
string(REGEX MATCHALL "runtimes/[^/]+/native" folders "${project}")
foreach(folder IN LISTS folders)
  file(GLOB libraries ${package}/${folder}/*vialto.*)
  if(NOT libraries)
    message(FATAL_ERROR "${PROJECT} packs a library into ${folder}, which the package lacks")
  endif()
endforeach()

file(READ ${DOCUMENT} document)
string(REGEX MATCH "```csharp\n(.*)```" program "${document}")
string(REGEX REPLACE "\n```.*" "\n" program "${CMAKE_MATCH_1}")
file(WRITE ${DIRECTORY}/Host.cs "${program}")
execute_process(COMMAND mcs -langversion:7.2 -warnaserror -out:Host.exe Host.cs
    ${package}/contentFiles/cs/any/Vialto.cs
  WORKING_DIRECTORY ${DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB native ${package}/runtimes/linux-*/native)
set(ENV{LD_LIBRARY_PATH} ${native})
execute_process(COMMAND mono Host.exe WORKING_DIRECTORY ${DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)
