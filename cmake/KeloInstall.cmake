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

# For builds without CMake. Libraries come before those that they use. What static ones need is required in the open, not as
# "private": --static would ask for all that libcurl itself is made of.
set(libraries KeloCommunicationLib KeloPlatformRest KeloPlatformThreading KeloPlatformCore KeloPlatformData)
set(postfix "")
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(postfix d)
endif()
list(TRANSFORM libraries PREPEND "-l" OUTPUT_VARIABLE KELO_PC_LIBRARIES)
list(TRANSFORM KELO_PC_LIBRARIES APPEND "${postfix}")
list(JOIN KELO_PC_LIBRARIES " " KELO_PC_LIBRARIES)
set(KELO_PC_STATIC_MODULES "")
set(KELO_PC_DEFINITIONS "")
if(NOT BUILD_SHARED_LIBS)
  set(KELO_PC_STATIC_MODULES "Qt6Network libcurl >= 7.88 openssl >= 3 simdjson >= 3 zlib")
  foreach(library ${libraries})
    string(TOUPPER "-D${library}_STATIC_DEFINE " definition)
    string(APPEND KELO_PC_DEFINITIONS "${definition}")
  endforeach()
endif()
file(RELATIVE_PATH KELO_PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file("${PROJECT_SOURCE_DIR}/cmake/kelocommunicationlib.pc.in" "${PROJECT_BINARY_DIR}/kelocommunicationlib.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kelocommunicationlib.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
  COMPONENT development)

include(KeloPackages)
