# `cmake --install` gives a tree in which find_package(KeloCommunicationLib 1) finds the library and its bundled platform, and
# the components TestKit and Simulator if they were built.
include(CMakePackageConfigHelpers)

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/KeloCommunicationLib")
get_property(components GLOBAL PROPERTY KELO_COMPONENTS)
list(REMOVE_DUPLICATES components)
foreach(component ${components})
  install(EXPORT Kelo${component}Targets NAMESPACE KeloCommunicationLib:: DESTINATION ${package} COMPONENT development)
endforeach()

# Only static libraries hand on what they were linked with.
set(KELO_STATIC_DEPENDENCIES "")
if(NOT BUILD_SHARED_LIBS)
  set(KELO_STATIC_DEPENDENCIES "find_dependency(Qt6 6.4 COMPONENTS Network)
find_dependency(CURL)
find_dependency(OpenSSL 3)
find_dependency(simdjson)
find_dependency(Threads)
find_dependency(ZLIB)")
endif()
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KeloCommunicationLibConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/KeloCommunicationLibConfig.cmake" INSTALL_DESTINATION ${package})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KeloCommunicationLibConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KeloCommunicationLibConfig.cmake"
  "${PROJECT_BINARY_DIR}/KeloCommunicationLibConfigVersion.cmake" DESTINATION ${package} COMPONENT development)
