# `cmake --install` gives a tree in which find_package(KeloCommunicationLib 1) finds the library and its bundled platform.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY KELO_LIBRARIES)
install(TARGETS ${libraries} EXPORT KeloCommunicationLibTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} INCLUDES DESTINATION ${KELO_INCLUDE_DIR})

# Public headers are those outside the "internal" folders.
foreach(root "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/include")
  install(DIRECTORY "${root}/KeloCommunicationLib" "${root}/platform" DESTINATION ${KELO_INCLUDE_DIR}
    FILES_MATCHING PATTERN "*.h" PATTERN "internal" EXCLUDE PATTERN "*_autogen" EXCLUDE)
endforeach()

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/KeloCommunicationLib")
install(EXPORT KeloCommunicationLibTargets NAMESPACE KeloCommunicationLib:: DESTINATION ${package})
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KeloCommunicationLibConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/KeloCommunicationLibConfig.cmake" INSTALL_DESTINATION ${package})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KeloCommunicationLibConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KeloCommunicationLibConfig.cmake"
  "${PROJECT_BINARY_DIR}/KeloCommunicationLibConfigVersion.cmake" DESTINATION ${package})
