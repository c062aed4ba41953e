# Warnings, sanitizers and the two ways in which this project makes targets.
include(GenerateExportHeader)

add_library(kelo_warnings INTERFACE)
target_compile_options(kelo_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

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

# kelo_add_library(<target> EXPORT_HEADER <path below the include root> EXPORT_MACRO <name> SOURCES ... PUBLIC ... PRIVATE ...)
# A library of this repository: include root is the repository root, symbols hidden unless exported, shared or static as the build says.
function(kelo_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_HEADER;EXPORT_MACRO;EXPORT_NAME" "SOURCES;PUBLIC;PRIVATE")
  add_library(${target} ${arg_SOURCES})
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
  # Log lines carry no file, line or function, in no build type and not in a host either that wants them in its own lines.
  target_compile_options(${target} PRIVATE -DQT_NO_MESSAGELOGCONTEXT -UQT_MESSAGELOGCONTEXT)
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:kelo_warnings>)
  set(generated "${PROJECT_BINARY_DIR}/include")
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${generated}> $<INSTALL_INTERFACE:${KELO_INCLUDE_DIR}>)
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON POSITION_INDEPENDENT_CODE ON
    # The installed libraries find each other beside themselves.
    INSTALL_RPATH "$ORIGIN"
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} EXPORT_NAME ${arg_EXPORT_NAME})
  generate_export_header(${target} BASE_NAME ${target} EXPORT_MACRO_NAME ${arg_EXPORT_MACRO}
    EXPORT_FILE_NAME "${generated}/${arg_EXPORT_HEADER}")
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    string(TOUPPER ${target} upper)
    target_compile_definitions(${target} PUBLIC ${upper}_STATIC_DEFINE)
  endif()
  set_property(GLOBAL APPEND PROPERTY KELO_LIBRARIES ${target})
endfunction()

# kelo_add_test(<name> SOURCES ... LIBS ... [LABELS ...]): one GoogleTest program, its cases known to ctest one by one.
function(kelo_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS;LABELS")
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(${name} ${arg_SOURCES})
  target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS)
  target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock GTest::gtest_main kelo_warnings)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 LABELS "${arg_LABELS}")
endfunction()
