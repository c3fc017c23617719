# koine_test(NAME SOURCES ... [LIBRARIES ...] [LABELS ...] [TIMEOUT seconds])
#
# One GoogleTest program, registered with CTest as one test: starting a program costs more than most of
# our tests, above all under the sanitizers.
if(CMAKE_CROSSCOMPILING)
  # There is no built GoogleTest for the target: its sources are compiled with everything else.
  set(KOINE_GTEST_SOURCE
      "/usr/src/googletest"
      CACHE PATH "GoogleTest's sources, for cross compiling")
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK OFF)
  add_subdirectory("${KOINE_GTEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
  if(NOT TARGET GTest::gtest)
    add_library(GTest::gtest ALIAS gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
  endif()
else()
  find_package(GTest REQUIRED)
endif()

# Builds all tests that are labelled "threads": those that are worth running under the thread sanitizer.
add_custom_target(thread_tests)

function(koine_test NAME)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main koine_warnings)
  target_precompile_headers(${NAME} PRIVATE <gtest/gtest.h> <string> <vector> <map> <functional>)
  if(CMAKE_CROSSCOMPILING)
    # The library is what matters there; the tests themselves only have to be compiled soon.
    target_compile_options(${NAME} PRIVATE -O0)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_test(NAME ${NAME} COMMAND ${NAME} --gtest_brief=1)
  set_tests_properties(${NAME} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(thread_tests ${NAME})
  endif()
endfunction()
