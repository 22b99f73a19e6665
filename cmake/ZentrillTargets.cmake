# zentrill_library(<folder> SOURCES <file>... [LINK <library>...] [PRIVATE_LINK <library>...])
#
# Makes the static library zentrill_<folder> of the folder at hand. Its headers are reached as
# "<folder>/Name.h" through an include root that holds this folder alone, so a file can include
# only from the folders that its library links: a wrong include does not compile.
function(zentrill_library folder)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  set(target zentrill_${folder})
  set(include_root "${PROJECT_BINARY_DIR}/include-roots/${folder}")
  file(MAKE_DIRECTORY "${include_root}")
  if(NOT EXISTS "${include_root}/${folder}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${include_root}/${folder}" SYMBOLIC)
  endif()
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(zentrill::${folder} ALIAS ${target})
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${include_root}>")
  # Flags and libraries of headers alone are nothing to who links the library where it is installed.
  list(TRANSFORM arg_PRIVATE_LINK REPLACE "^(zentrill_.*|nlohmann_json::.*)$" "$<BUILD_INTERFACE:\\1>")
  target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE "$<BUILD_INTERFACE:zentrill_flags>" ${arg_PRIVATE_LINK})
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()

# zentrill_precompile_headers(<target> <header>...)
#
# For a folder whose files read little but Qt's headers. Where a cache serves compiled files, it does better without.
function(zentrill_precompile_headers target)
  if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# zentrill_precompile_test_headers(<target> [<header>...])
#
# Most of what a compiler reads of a test is the framework and the standard library. They are read once for all
# targets, and once more for one with headers of its own. Where a cache serves compiled files, it does better without.
function(zentrill_precompile_test_headers target)
  if(CMAKE_CXX_COMPILER_LAUNCHER)
    return()
  endif()
  set(shared
      <gmock/gmock.h>
      <gtest/gtest.h>
      <algorithm>
      <chrono>
      <filesystem>
      <fstream>
      <functional>
      <memory>
      <string>
      <thread>
      <vector>
  )
  if(ARGN)
    target_precompile_headers(${target} PRIVATE ${shared} ${ARGN})
    return()
  endif()
  if(NOT TARGET zentrill_test_headers)
    file(CONFIGURE OUTPUT test-headers.cpp CONTENT "// Stands for its precompiled headers.\n")
    add_library(zentrill_test_headers OBJECT "${CMAKE_CURRENT_BINARY_DIR}/test-headers.cpp")
    target_link_libraries(zentrill_test_headers PRIVATE zentrill_flags GTest::gmock)
    target_precompile_headers(zentrill_test_headers PRIVATE ${shared})
  endif()
  target_precompile_headers(${target} REUSE_FROM zentrill_test_headers)
endfunction()

# zentrill_test(<name> SOURCES <file>... LINK <library>... [HEADERS <header>...] [TIMEOUT <seconds>] [COST <number>]
#               [PREFIX <text>])
#
# Makes a GoogleTest program, with these headers precompiled along with the usual ones; CTest sees each of its tests.
# They are labelled with the folder at hand, all of whose programs the target tests-<folder> builds. The program is
# confined to folders of its own, and its tests are skipped where nothing confines it.
function(zentrill_test name)
  cmake_parse_arguments(arg "" "TIMEOUT;COST;PREFIX" "SOURCES;LINK;HEADERS" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  if(NOT arg_COST)
    set(arg_COST 0)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE zentrill_flags zentrill_test_support ${arg_LINK})
  if(TARGET zentrill_confined_tests)
    target_link_libraries(${name} PRIVATE zentrill_confined_tests)
  endif()
  zentrill_precompile_test_headers(${name} ${arg_HEADERS})
  get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
  if(NOT TARGET tests-${folder})
    add_custom_target(tests-${folder})
  endif()
  add_dependencies(tests-${folder} ${name})
  gtest_discover_tests(
    ${name} TEST_PREFIX "${arg_PREFIX}" DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES
    TIMEOUT ${arg_TIMEOUT} COST ${arg_COST} LABELS ${folder} SKIP_RETURN_CODE 77
  )
endfunction()
