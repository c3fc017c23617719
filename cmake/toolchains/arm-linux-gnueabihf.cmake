set(CMAKE_SYSTEM_PROCESSOR arm)
set(KOINE_CROSS_TRIPLET arm-linux-gnueabihf)
set(KOINE_CROSS_QEMU qemu-arm)
include("${CMAKE_CURRENT_LIST_DIR}/debian.cmake")
