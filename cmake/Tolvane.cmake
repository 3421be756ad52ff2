# What all targets of the tree have in common, and the two functions that make them.
include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A test in another folder links what a module links, so the libraries that modules find must be known everywhere.
set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
# GCC 12 takes "text" + string for an overlapping copy (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)
endif()
set(TOLVANE_SANITIZE "" CACHE STRING "sanitizers, as given to -fsanitize=")
if(TOLVANE_SANITIZE)
  add_compile_options(-fsanitize=${TOLVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TOLVANE_SANITIZE})
endif()
option(TOLVANE_COVERAGE "count executed lines (gcov)" OFF)
if(TOLVANE_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# Takes the files that are for other systems out of a list.
function(tolvane_of_this_system list)
  if(WIN32)
    set(others "icu|posix")
  else()
    set(others "windows")
  endif()
  list(FILTER ${list} EXCLUDE REGEX "/(${others})_[^/]*$")
  set(${list} "${${list}}" PARENT_SCOPE)
endfunction()

# tolvane_module(NAME [USES target...] [LIBRARIES library...])
# The folder's target: all its .cpp files, but of icu_, posix_ and windows_ ones those that are for the system that is built
# for. Headers are included as "NAME/file.h" through the links of USES only.
function(tolvane_module name)
  cmake_parse_arguments(MODULE "" "" "USES;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  tolvane_of_this_system(sources)
  if(sources)
    add_library(${name} STATIC ${sources})
    set(scope PUBLIC)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  # One link folder for each module, so that a module sees its own headers and those of the targets it names, no others.
  set(view "${CMAKE_BINARY_DIR}/include/${name}")
  file(MAKE_DIRECTORY "${view}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${view}/${name}" SYMBOLIC)
  target_include_directories(${name} ${scope} "${view}")
  target_link_libraries(${name} ${scope} ${MODULE_USES})
  if(sources)
    target_link_libraries(${name} PRIVATE ${MODULE_LIBRARIES})
  endif()
endfunction()

# tolvane_windows_test(NAME COMMAND program argument...)
# A test of a Windows build, called windows32_NAME or windows64_NAME. Those of a word size run one at a time, as
# tools/wine_run.sh does; status 77 says that this machine cannot run it.
function(tolvane_windows_test name)
  math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
  add_test(NAME windows${bits}_${name} ${ARGN} WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")
  set_tests_properties(windows${bits}_${name} PROPERTIES
    TIMEOUT 600 LABELS windows SKIP_RETURN_CODE 77 RESOURCE_LOCK wine${bits})
endfunction()

# tolvane_test(NAME [USES target...] [LIBRARIES library...] [TOGETHER pattern])
# One test program of all the .cpp files of a folder of tests/; every file on disk is built. Each test runs in a process of
# its own; those that match TOGETHER share one, since what they need (a server) takes long to start.
function(tolvane_test name)
  cmake_parse_arguments(TEST "" "TOGETHER" "USES;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  tolvane_of_this_system(sources)
  if(NOT sources)
    message(WARNING "tests/${name} has no tests")
    return()
  endif()
  add_executable(${name}_test ${sources})
  target_include_directories(${name}_test PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  # Optimising the tests themselves takes most of a full build's time and gains nothing.
  target_compile_options(${name}_test PRIVATE -O0)
  target_compile_definitions(${name}_test PRIVATE TOLVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name}_test PRIVATE ${TEST_USES} ${TEST_LIBRARIES} GTest::gmock GTest::gtest_main)
  if(WIN32)
    # A program is one test, since starting Wine takes longer than most tests.
    tolvane_windows_test(${name} COMMAND ${name}_test)
    return()
  endif()
  set(filter)
  if(TEST_TOGETHER)
    set(filter TEST_FILTER "-${TEST_TOGETHER}")
    add_test(NAME ${name}_together COMMAND ${name}_test "--gtest_filter=${TEST_TOGETHER}"
      WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")
    set_tests_properties(${name}_together PROPERTIES TIMEOUT 600)
  endif()
  gtest_discover_tests(${name}_test WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" DISCOVERY_TIMEOUT 120 ${filter}
    PROPERTIES TIMEOUT 300)
endfunction()
