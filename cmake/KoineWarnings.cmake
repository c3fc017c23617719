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
            $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>)
# A cast to the type it already has on 32 bits is one that 64 bits need.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  target_compile_options(koine_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wuseless-cast>)
endif()
if(KOINE_WARNINGS_AS_ERRORS)
  target_compile_options(koine_warnings INTERFACE -Werror)
endif()
