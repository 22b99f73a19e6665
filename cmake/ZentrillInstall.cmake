# Installs the libraries that need no Qt, for other projects: find_package(Zentrill) brings zentrill::deletion and its
# like.
include(CMakePackageConfigHelpers)

set(folders platform process catalog deletion docker models)
foreach(folder IN LISTS folders)
  set_target_properties(zentrill_${folder} PROPERTIES EXPORT_NAME ${folder})
  target_include_directories(zentrill_${folder} INTERFACE "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zentrill>")
  install(
    DIRECTORY "${PROJECT_SOURCE_DIR}/src/${folder}"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zentrill"
    COMPONENT development
    FILES_MATCHING
    PATTERN "*.h"
  )
endforeach()
list(TRANSFORM folders PREPEND zentrill_ OUTPUT_VARIABLE libraries)
install(TARGETS ${libraries} EXPORT ZentrillTargets ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/Zentrill")
install(EXPORT ZentrillTargets NAMESPACE zentrill:: DESTINATION "${package}" COMPONENT development)
configure_package_config_file(
  cmake/ZentrillConfig.cmake.in "${PROJECT_BINARY_DIR}/ZentrillConfig.cmake" INSTALL_DESTINATION "${package}"
)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZentrillConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/ZentrillConfig.cmake" "${PROJECT_BINARY_DIR}/ZentrillConfigVersion.cmake"
  DESTINATION "${package}" COMPONENT development
)
