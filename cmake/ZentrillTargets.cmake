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
  target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE zentrill_flags ${arg_PRIVATE_LINK})
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()

# zentrill_test(<name> SOURCES <file>... LINK <library>... [LABELS <label>...])
#
# Makes a GoogleTest program; CTest sees each of its tests.
function(zentrill_test name)
  cmake_parse_arguments(arg "" "TIMEOUT;PREFIX" "SOURCES;LINK;LABELS" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE zentrill_flags zentrill_test_support ${arg_LINK})
  gtest_discover_tests(
    ${name}
    TEST_PREFIX "${arg_PREFIX}"
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}"
  )
endfunction()
