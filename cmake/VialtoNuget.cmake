# A package for NuGet is zipped of this component, installed from a build for each platform: the
# file that hosts compile, the native libraries, the manifest, and for readers of Open Packaging
# Conventions the type of every part and where the manifest lies.
set(rid_x86_64 x64)
set(rid_i686 x86)
set(rid_aarch64 arm64)
set(rid ${rid_${CMAKE_SYSTEM_PROCESSOR}})
string(PREPEND rid $<IF:$<BOOL:${WIN32}>,win-,linux->)
install(FILES $<TARGET_FILE:vialto> DESTINATION runtimes/${rid}/native
  RENAME $<TARGET_FILE_PREFIX:vialto>vialto$<TARGET_FILE_SUFFIX:vialto>
  COMPONENT nuget EXCLUDE_FROM_ALL)

configure_file(cmake/nuget/Vialto.nuspec.in Vialto.nuspec @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/Vialto.nuspec bindings/dotnet/README.md
  DESTINATION . COMPONENT nuget EXCLUDE_FROM_ALL)
install(FILES bindings/dotnet/Vialto.cs DESTINATION contentFiles/cs/any
  COMPONENT nuget EXCLUDE_FROM_ALL)
install(FILES cmake/nuget/content_types.xml DESTINATION . RENAME "[Content_Types].xml"
  COMPONENT nuget EXCLUDE_FROM_ALL)
install(FILES cmake/nuget/relationships.xml DESTINATION _rels RENAME .rels
  COMPONENT nuget EXCLUDE_FROM_ALL)
