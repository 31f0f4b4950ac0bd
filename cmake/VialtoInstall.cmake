# What is installed, and where: packages of every kind take it from here. The component `runtime` is
# what a host runs with, `development` what it is built with.
include(CMakePackageConfigHelpers)

install(TARGETS vialto EXPORT VialtoTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES ${VIALTO_MSVC_IMPORT_LIBRARY}
  DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/vialto
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Vialto)
install(EXPORT VialtoTargets NAMESPACE Vialto::
  DESTINATION ${package_directory} COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VialtoConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/VialtoConfig.cmake
  INSTALL_DESTINATION ${package_directory} PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/VialtoConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/VialtoConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/VialtoConfigVersion.cmake
  DESTINATION ${package_directory} COMPONENT development)

# pkg-config finds the rest from where the file itself lies.
set(pkgconfig_directory ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
set(VIALTO_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
cmake_path(RELATIVE_PATH VIALTO_PC_PREFIX BASE_DIRECTORY ${pkgconfig_directory})
foreach(directory IN ITEMS LIBDIR INCLUDEDIR)
  set(VIALTO_PC_${directory} ${CMAKE_INSTALL_FULL_${directory}})
  cmake_path(RELATIVE_PATH VIALTO_PC_${directory} BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
endforeach()
list(TRANSFORM VIALTO_CXX_RUNTIME PREPEND " -l" OUTPUT_VARIABLE VIALTO_PC_LIBRARIES)
list(JOIN VIALTO_PC_LIBRARIES "" VIALTO_PC_LIBRARIES)
configure_file(${PROJECT_SOURCE_DIR}/cmake/vialto.pc.in vialto.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vialto.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The license goes with every archive, and to Windows the file that hosts in .NET copy.
if(WIN32)
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION . COMPONENT license)
  install(FILES ${PROJECT_SOURCE_DIR}/bindings/dotnet/Vialto.cs DESTINATION dotnet COMPONENT dotnet)
else()
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/vialto COMPONENT license)
endif()
