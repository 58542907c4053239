# What `cmake --install` puts into a prefix: the public headers, both libraries, the command line,
# a CMake package and a pkg-config file.

if(NOT TARGET KOVSrvSimServices)
  return()
endif()
include(CMakePackageConfigHelpers)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KOVSrvSimServices")

set_target_properties(KOVSrvSimServices PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS KOVSimDocument KOVSrvSimServices EXPORT KOVSrvSimServicesTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
if(TARGET kovsim)
  install(TARGETS kovsim RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
install(DIRECTORY include/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/KOVSrvSimServices"
  FILES_MATCHING PATTERN "*.h" PATTERN "*.inc")

install(EXPORT KOVSrvSimServicesTargets NAMESPACE KOVSrvSimServices:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/KOVSrvSimServicesConfig.cmake.in
  "${CMAKE_BINARY_DIR}/KOVSrvSimServicesConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/KOVSrvSimServicesConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/KOVSrvSimServicesConfig.cmake"
  "${CMAKE_BINARY_DIR}/KOVSrvSimServicesConfigVersion.cmake" DESTINATION "${package_dir}")

# The prefix is known when installing, not before: the file is made then.
install(CODE "
  set(CMAKE_INSTALL_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
  set(CMAKE_INSTALL_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")
  set(PROJECT_DESCRIPTION \"${PROJECT_DESCRIPTION}\")
  set(PROJECT_VERSION \"${PROJECT_VERSION}\")
  get_filename_component(CMAKE_INSTALL_PREFIX \"\${CMAKE_INSTALL_PREFIX}\" ABSOLUTE)
  configure_file(\"${CMAKE_SOURCE_DIR}/cmake/KOVSrvSimServices.pc.in\"
    \"${CMAKE_BINARY_DIR}/KOVSrvSimServices.pc\" @ONLY)
  file(INSTALL \"${CMAKE_BINARY_DIR}/KOVSrvSimServices.pc\"
    DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig\")")
