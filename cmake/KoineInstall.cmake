# What `cmake --install` writes, in components: runtime (the libraries), development (headers, CMake package,
# pkg-config files), tools (the command) and models (the simulated devices).
#
# Each koine_install_* function stands in the folder whose files it installs; with KOINE_INSTALL off they do
# nothing.
include(CMakePackageConfigHelpers)

# The include path holds a folder per layer (koine/, platform/, devices/, ...), so it is a folder of its own.
set(KOINE_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/koine-${PROJECT_VERSION_MAJOR}")
set(KOINE_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Koine")
set(KOINE_INSTALL_MODELDIR "${CMAKE_INSTALL_DATADIR}/koine/models")

# An installed tree can be moved: its programs and libraries find each other from where they are. A package
# of a system has one place, which the loader knows.
file(RELATIVE_PATH KOINE_LIB_FROM_BIN "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")

# koine_install_headers(FOLDER HEADER...): headers that hosts include as "FOLDER/HEADER".
function(koine_install_headers FOLDER)
  if(KOINE_INSTALL)
    install(
      FILES ${ARGN}
      DESTINATION "${KOINE_INSTALL_INCLUDEDIR}/${FOLDER}"
      COMPONENT development)
  endif()
endfunction()

# koine_install_library(TARGET COMPONENT): the library, and its target in the CMake package's COMPONENT.
function(koine_install_library TARGET COMPONENT)
  if(KOINE_INSTALL)
    set_property(TARGET ${TARGET} PROPERTY INSTALL_RPATH "$ORIGIN")
    install(
      TARGETS ${TARGET}
      EXPORT Koine-${COMPONENT}
      LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
              COMPONENT runtime
              NAMELINK_COMPONENT development
      ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
    install(
      EXPORT Koine-${COMPONENT}
      NAMESPACE koine::
      DESTINATION "${KOINE_INSTALL_CMAKEDIR}"
      COMPONENT development)
  endif()
endfunction()

# koine_install_pkgconfig(NAME DESCRIPTION text LIBS flags [REQUIRES names] [LIBS_PRIVATE flags])
function(koine_install_pkgconfig NAME)
  if(NOT KOINE_INSTALL)
    return()
  endif()
  cmake_parse_arguments(PC "" "DESCRIPTION;LIBS;REQUIRES;LIBS_PRIVATE" "" ${ARGN})
  set(PC_NAME ${NAME})
  set(folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  file(RELATIVE_PATH PC_PREFIX "/${folder}" "/")
  string(REGEX REPLACE "/$" "" PC_PREFIX "${PC_PREFIX}")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/package/koine.pc.in" "${PROJECT_BINARY_DIR}/package/${NAME}.pc" @ONLY)
  install(
    FILES "${PROJECT_BINARY_DIR}/package/${NAME}.pc"
    DESTINATION "${folder}"
    COMPONENT development)
endfunction()

# koine_install_program(TARGET): a command for people.
function(koine_install_program TARGET)
  if(KOINE_INSTALL)
    set_property(TARGET ${TARGET} PROPERTY INSTALL_RPATH "$ORIGIN/${KOINE_LIB_FROM_BIN}")
    install(TARGETS ${TARGET} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)
  endif()
endfunction()

# koine_version_symbols(TARGET MAP): exports what MAP lists, under its version, and nothing else.
function(koine_version_symbols TARGET MAP)
  get_target_property(type ${TARGET} TYPE)
  if(type STREQUAL SHARED_LIBRARY)
    target_link_options(${TARGET} PRIVATE "-Wl,--version-script=${MAP}")
    set_property(TARGET ${TARGET} APPEND PROPERTY LINK_DEPENDS "${MAP}")
  endif()
endfunction()

if(KOINE_INSTALL)
  configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/package/KoineConfig.cmake.in" "${PROJECT_BINARY_DIR}/package/KoineConfig.cmake"
    INSTALL_DESTINATION "${KOINE_INSTALL_CMAKEDIR}"
    NO_SET_AND_CHECK_MACRO)
  # Before 1.0 a minor version may change what hosts are compiled with; for those that are compiled, see docs/abi.md.
  write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/KoineConfigVersion.cmake"
                                   COMPATIBILITY SameMinorVersion)
  install(
    FILES "${PROJECT_BINARY_DIR}/package/KoineConfig.cmake" "${PROJECT_BINARY_DIR}/package/KoineConfigVersion.cmake"
    DESTINATION "${KOINE_INSTALL_CMAKEDIR}"
    COMPONENT development)
  install(
    FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/koine"
    COMPONENT documents)
  if(KOINE_DEBIAN)
    set(example_parent libkoine-dev)
    set(CMAKE_SKIP_INSTALL_RPATH ON)
  else()
    set(example_parent koine)
  endif()
  install(
    DIRECTORY "${PROJECT_SOURCE_DIR}/examples"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${example_parent}"
    COMPONENT development)
endif()
