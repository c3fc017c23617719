set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(KOINE_CROSS_TRIPLET aarch64-linux-gnu)
set(KOINE_CROSS_QEMU qemu-aarch64)
include("${CMAKE_CURRENT_LIST_DIR}/debian.cmake")
