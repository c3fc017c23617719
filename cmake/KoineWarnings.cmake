# One set of warnings for every target that is ours. Warnings are errors.
add_library(koine_warnings INTERFACE)
target_compile_options(
  koine_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wformat=2
            -Wcast-align
            -Wcast-qual
            -Wold-style-cast
            -Wunused
            -Wundef
            -Wnull-dereference
            -Wdouble-promotion
            -Wextra-semi
            -Woverloaded-virtual
            -Wimplicit-fallthrough
            -Wmissing-declarations
            $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
            $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
            $<$<CXX_COMPILER_ID:GNU>:-Wuseless-cast>)
if(KOINE_WARNINGS_AS_ERRORS)
  target_compile_options(koine_warnings INTERFACE -Werror)
endif()
