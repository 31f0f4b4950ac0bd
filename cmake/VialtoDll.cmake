# What the DLL has beside its code: the export list, the version resource, and import libraries in
# the forms of MinGW (libvialto.dll.a) and of MSVC (vialto.lib).
set_target_properties(vialto PROPERTIES PREFIX "")
target_link_options(vialto PRIVATE -static -s)

list(JOIN VIALTO_FUNCTIONS "\n    " names)
file(CONFIGURE OUTPUT vialto.def CONTENT "LIBRARY vialto.dll\nEXPORTS\n    ${names}\n")
target_sources(vialto PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/vialto.def)

enable_language(RC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/vialto.rc.in vialto.rc @ONLY)
target_sources(vialto PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/vialto.rc)

# Callers on 32-bit Windows ask for stdcall's decorated names, which -k takes off again: the DLL
# exports the plain ones.
set(imports ${CMAKE_CURRENT_BINARY_DIR}/vialto.def)
set(machine -m i386:x86-64)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_link_options(vialto PRIVATE -Wl,--enable-stdcall-fixup)
  list(JOIN VIALTO_STDCALL_NAMES "\n    " names)
  set(imports ${CMAKE_CURRENT_BINARY_DIR}/vialto_stdcall.def)
  file(CONFIGURE OUTPUT ${imports} CONTENT "LIBRARY vialto.dll\nEXPORTS\n    ${names}\n")
  set(machine -m i386 -k)
endif()
find_program(VIALTO_LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
mark_as_advanced(VIALTO_LLVM_DLLTOOL)
set(VIALTO_MSVC_IMPORT_LIBRARY ${CMAKE_CURRENT_BINARY_DIR}/vialto.lib)
add_custom_command(TARGET vialto POST_BUILD
  COMMAND ${CMAKE_DLLTOOL} ${machine} -d ${imports} -l $<TARGET_LINKER_FILE:vialto>
  COMMAND ${VIALTO_LLVM_DLLTOOL} ${machine} -d ${imports} -l ${VIALTO_MSVC_IMPORT_LIBRARY})
