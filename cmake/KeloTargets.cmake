# Warnings, sanitizers and the two ways in which this project makes targets.
include(GenerateExportHeader)

# A warning is an error only to those who work on this project: a host's newer compiler may know more of them.
option(KELO_WARNINGS_AS_ERRORS "Treat compiler warnings in this project's own code as errors" ${PROJECT_IS_TOP_LEVEL})
add_library(kelo_warnings INTERFACE)
if(MSVC)
  target_compile_options(kelo_warnings INTERFACE /W4 $<$<BOOL:${KELO_WARNINGS_AS_ERRORS}>:/WX>)
else()
  # Where several sources are compiled as one, their names meet.
  target_compile_options(kelo_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion $<$<NOT:$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wshadow>
    $<$<BOOL:${KELO_WARNINGS_AS_ERRORS}>:-Werror>)
endif()

if(KELO_SANITIZE)
  add_compile_options(-fsanitize=${KELO_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KELO_SANITIZE})
  if(KELO_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()

if(KELO_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "KELO_FUZZ needs clang (the preset \"fuzz\"); the compiler is ${CMAKE_CXX_COMPILER}")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# kelo_precompile(<target> <headers...>): what most sources of the target read, in the form <header>, beside what Qt and the
# standard library have for all. A source includes what it uses all the same: the checks, and builds without
# KELO_PRECOMPILE, see to it.
function(kelo_precompile target)
  if(KELO_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <chrono> <functional> <memory> <mutex> <optional> <string>
      <utility> <vector> <QByteArray> <QDateTime> <QJsonArray> <QJsonDocument> <QJsonObject> <QString> <QStringList> <QUrl>
      ${ARGN})
  endif()
endfunction()

# kelo_compile_quickly(): what this folder and those below it make from here on is not optimised in any build: tests wait longer
# for the compiler than it could win.
function(kelo_compile_quickly)
  if(NOT MSVC)
    add_compile_options(-O0)
  endif()
  # At every use of a pointer, which makes compiling twice as long; the library itself has these checks.
  if(KELO_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize=null,alignment,vptr)
  endif()
endfunction()

# kelo_add_library(<target> COMPONENT <name> EXPORT_NAME <name> [EXPORT_HEADER <path below the include root> EXPORT_MACRO <name>]
#                  [INCLUDE_ROOT <folder>] [HEADERS ...] [STATIC] SOURCES ... PUBLIC ... PRIVATE ...)
# A library of this repository that is installed as part of a component of the package. Symbols are hidden unless exported;
# it is shared or static as the build says, unless STATIC. Its users get its own include root: the folder include/ beside
# its sources, or INCLUDE_ROOT, in which the headers stand in the folder of the sources. With HEADERS these are installed
# and nothing else; the target all_verify_interface_header_sets compiles each of them alone.
function(kelo_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "STATIC" "COMPONENT;EXPORT_HEADER;EXPORT_MACRO;EXPORT_NAME;INCLUDE_ROOT"
    "HEADERS;SOURCES;PUBLIC;PRIVATE")
  set(kind)
  if(arg_STATIC)
    set(kind STATIC)
  endif()
  set(headers "${CMAKE_CURRENT_SOURCE_DIR}")
  if(NOT arg_INCLUDE_ROOT)
    set(arg_INCLUDE_ROOT "${CMAKE_CURRENT_SOURCE_DIR}/include")
    set(headers "${arg_INCLUDE_ROOT}/")
  endif()
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/include")
  add_library(${target} ${kind} ${arg_SOURCES})
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
  if(NOT arg_STATIC)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
  endif()
  # Log lines carry no file, line or function, in no build type and not in a host either that wants them in its own lines.
  target_compile_options(${target} PRIVATE -DQT_NO_MESSAGELOGCONTEXT -UQT_MESSAGELOGCONTEXT)
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:kelo_warnings>)
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${arg_INCLUDE_ROOT}> $<BUILD_INTERFACE:${generated}> $<INSTALL_INTERFACE:${KELO_INCLUDE_DIR}>
    PRIVATE "${PROJECT_SOURCE_DIR}")
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON POSITION_INDEPENDENT_CODE ON
    # The installed libraries find each other beside themselves; debug and release builds can stand in one prefix.
    INSTALL_RPATH "$ORIGIN" DEBUG_POSTFIX d
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} EXPORT_NAME ${arg_EXPORT_NAME})
  if(arg_EXPORT_HEADER)
    generate_export_header(${target} BASE_NAME ${target} EXPORT_MACRO_NAME ${arg_EXPORT_MACRO}
      EXPORT_FILE_NAME "${generated}/${arg_EXPORT_HEADER}")
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
      string(TOUPPER ${target} upper)
      target_compile_definitions(${target} PUBLIC ${upper}_STATIC_DEFINE)
    endif()
    list(APPEND headers "${generated}/")
  endif()
  if(arg_HEADERS)
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${arg_INCLUDE_ROOT}" FILES ${arg_HEADERS})
    set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
    set(headers)
  endif()
  kelo_install_library(${target} ${arg_COMPONENT} ${headers})
endfunction()

# kelo_install_library(<target> <component> <folders with headers...>): what stands in folders named "internal" stays here.
function(kelo_install_library target component)
  if(NOT KELO_INSTALL)
    return()
  endif()
  get_target_property(file_set ${target} HEADER_SETS)
  if(file_set)
    set(file_set FILE_SET HEADERS DESTINATION ${KELO_INCLUDE_DIR} COMPONENT development)
  else()
    set(file_set)
  endif()
  install(TARGETS ${target} EXPORT Kelo${component}Targets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    ${file_set}
    INCLUDES DESTINATION ${KELO_INCLUDE_DIR})
  if(ARGN)
    install(DIRECTORY ${ARGN} DESTINATION ${KELO_INCLUDE_DIR} COMPONENT development
      FILES_MATCHING PATTERN "*.h" PATTERN "internal" EXCLUDE)
  endif()
  set_property(GLOBAL APPEND PROPERTY KELO_COMPONENTS ${component})
endfunction()

# kelo_label(<label> <program> [<tests...>]): `ctest -L <label>` runs the tests, the target tests_<label> builds the program.
function(kelo_label label program)
  if(NOT TARGET tests_${label})
    add_custom_target(tests_${label})
  endif()
  add_dependencies(tests_${label} ${program})
  if(ARGN)
    set_property(TEST ${ARGN} APPEND PROPERTY LABELS ${label})
  endif()
endfunction()

# kelo_add_test(<name> SOURCES ... LIBS ... [LABELS ...]): one GoogleTest program, its cases known to ctest one by one.
function(kelo_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS;LABELS")
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(${name} ${arg_SOURCES})
  target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${arg_LIBS} kelo_test_support GTest::gmock GTest::gtest_main kelo_warnings)
  foreach(label ${arg_LABELS})
    kelo_label(${label} ${name})
  endforeach()
  if(KELO_PRECOMPILE)
    target_precompile_headers(${name} REUSE_FROM kelo_test_headers)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 LABELS "${arg_LABELS}")
endfunction()
