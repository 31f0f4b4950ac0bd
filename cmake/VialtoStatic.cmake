# The static library is one object, in which everything but the 22 functions is local: a host's own
# C++ templates, compiled with other options, neither take the place of the library's nor are
# replaced by them. On Windows it is the objects as they are: what C++ shares between objects cannot
# be local there.
if(WIN32)
  add_library(vialto STATIC $<TARGET_OBJECTS:vialto_objects>)
else()
  set(names ${CMAKE_CURRENT_BINARY_DIR}/vialto.names)
  list(JOIN VIALTO_FUNCTIONS "\n" functions)
  file(CONFIGURE OUTPUT ${names} CONTENT "${functions}\n")
  add_custom_command(OUTPUT vialto.o
    COMMAND ${CMAKE_LINKER} -r --force-group-allocation -o linked.o $<TARGET_OBJECTS:vialto_objects>
    COMMAND ${CMAKE_OBJCOPY} --keep-global-symbols=${names} linked.o vialto.o
    DEPENDS vialto_objects $<TARGET_OBJECTS:vialto_objects> ${names}
    COMMAND_EXPAND_LISTS VERBATIM)
  add_library(vialto STATIC ${CMAKE_CURRENT_BINARY_DIR}/vialto.o)
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/vialto.o PROPERTIES EXTERNAL_OBJECT ON)
endif()

# A host in C is linked with the C compiler, and needs the C++ standard library named, and that of
# threads where the platform has one.
set_target_properties(vialto PROPERTIES LINKER_LANGUAGE C)
set(VIALTO_CXX_RUNTIME ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(REMOVE_ITEM VIALTO_CXX_RUNTIME ${CMAKE_C_IMPLICIT_LINK_LIBRARIES})
list(REMOVE_DUPLICATES VIALTO_CXX_RUNTIME)
string(REPLACE "-l" "" threads "${CMAKE_THREAD_LIBS_INIT}")
list(APPEND VIALTO_CXX_RUNTIME ${threads})
target_link_libraries(vialto INTERFACE ${VIALTO_CXX_RUNTIME})
