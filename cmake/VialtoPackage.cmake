# Packages of what is installed, by CPack: one archive, and for Debian a package of the component
# `runtime` and one of `development`, each with the documents that Debian asks for.
set(CPACK_GENERATOR DEB TGZ)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
endif()
set(CPACK_PACKAGE_VENDOR "The Vialto authors")
set(CPACK_PACKAGE_CONTACT "The Vialto authors <authors@vialto.example>")
string(TOLOWER "vialto-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}"
  CPACK_PACKAGE_FILE_NAME)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(soname libvialto${PROJECT_VERSION_MAJOR})
set(version ${PROJECT_VERSION}-1)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(about "Computes from measured road profiles the numbers that roads are accepted,
paid and ground by: roughness indices, spectra, profilograph, grinding,
joints, and the agreement of two profiles.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${soname})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${about}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvialto-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${soname} (= ${version})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${about}\n\nThis is what programs are built with.")

# What is linked with the library needs the package, and the loader hears of it.
set(debian ${PROJECT_BINARY_DIR}/debian)
file(CONFIGURE OUTPUT ${debian}/shlibs
  CONTENT "libvialto ${PROJECT_VERSION_MAJOR} ${soname} (>= ${PROJECT_VERSION})\n")
file(CONFIGURE OUTPUT ${debian}/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${debian}/shlibs ${debian}/triggers)

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(CONFIGURE OUTPUT ${debian}/changelog.Debian CONTENT
"vialto (${version}) unstable; urgency=medium

  * Version ${PROJECT_VERSION} of the library.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
file(ARCHIVE_CREATE OUTPUT ${debian}/changelog.Debian.gz PATHS ${debian}/changelog.Debian
  FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)

foreach(component IN ITEMS RUNTIME DEVELOPMENT)
  string(TOLOWER ${component} name)
  set(documents share/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME})
  install(FILES LICENSE DESTINATION ${documents} RENAME copyright
    COMPONENT ${name}_documents EXCLUDE_FROM_ALL)
  install(FILES ${debian}/changelog.Debian.gz DESTINATION ${documents}
    COMPONENT ${name}_documents EXCLUDE_FROM_ALL)
  list(APPEND CPACK_COMPONENTS_ALL ${name} ${name}_documents)
endforeach()
include(CPack)
foreach(name IN ITEMS runtime development)
  cpack_add_component(${name} GROUP ${name})
  cpack_add_component(${name}_documents GROUP ${name})
  cpack_add_component_group(${name})
endforeach()

include(cmake/VialtoNuget.cmake)
