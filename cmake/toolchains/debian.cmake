# Cross compiling with Debian's compilers and running what was built under qemu-user. The files beside this
# one set KOINE_CROSS_TRIPLET and KOINE_CROSS_QEMU and include it; a product's own SDK brings a toolchain file
# of its own, which serves as well.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${KOINE_CROSS_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${KOINE_CROSS_TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR ${KOINE_CROSS_QEMU} -L /usr/${KOINE_CROSS_TRIPLET})

# Libraries are the target's; headers without machine code, Boost's, may be those of this machine.
set(CMAKE_FIND_ROOT_PATH /usr/${KOINE_CROSS_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
