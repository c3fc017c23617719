# koine_test(NAME SOURCES ... [LIBRARIES ...] [LABELS ...] [TIMEOUT seconds])
#
# One GoogleTest program, registered with CTest as one test: starting a program costs more than most of
# our tests, above all under the sanitizers.
find_package(GTest REQUIRED)

# Builds all tests that are labelled "threads": those that are worth running under the thread sanitizer.
add_custom_target(thread_tests)

function(koine_test NAME)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${NAME} ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main koine_warnings)
  target_precompile_headers(${NAME} PRIVATE <gtest/gtest.h> <string> <vector> <map> <functional>)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_test(NAME ${NAME} COMMAND ${NAME} --gtest_brief=1)
  set_tests_properties(${NAME} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(thread_tests ${NAME})
  endif()
endfunction()
