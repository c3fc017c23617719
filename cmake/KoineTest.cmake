# koine_test(NAME [ALONE] SOURCES ... [LIBRARIES ...] [LABELS ...] [TIMEOUT seconds])
#
# One GoogleTest program, registered with CTest as one test: starting a program costs more than most of
# our tests, above all under the sanitizers. One that measures time runs ALONE.
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

# koine_compile_soon(TARGET): for what only tests consist of. Most of what compiling it takes is reading headers:
# several files are read as one.
function(koine_compile_soon NAME)
  if(CMAKE_CROSSCOMPILING OR KOINE_SANITIZE)
    target_compile_options(${NAME} PRIVATE -O0) # the library is what matters there
  endif()
  if(CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_options(${NAME} PRIVATE -g1) # lines tell where a test failed; the rest only takes time
  endif()
  if(NOT KOINE_COVERAGE) # some of the files are counted there and others are not
    set_target_properties(${NAME} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()

function(koine_test NAME)
  cmake_parse_arguments(ARG "ALONE" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main koine_warnings)
  koine_compile_soon(${NAME})
  list(LENGTH ARG_SOURCES files)
  if(files GREATER 30 AND NOT KOINE_COVERAGE)
    target_precompile_headers(${NAME} PRIVATE <gtest/gtest.h> <string> <vector> <map> <functional>)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_test(NAME ${NAME} COMMAND ${NAME} --gtest_brief=1)
  set_tests_properties(${NAME} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}" RUN_SERIAL "${ARG_ALONE}")
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(thread_tests ${NAME})
  endif()
endfunction()
