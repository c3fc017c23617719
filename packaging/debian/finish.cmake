# What Debian wants of the files of a package, after they were gathered and before they are packed.
file(GLOB_RECURSE files LIST_DIRECTORIES false "${CPACK_TEMPORARY_DIRECTORY}/*")
foreach(file IN LISTS files)
  if(file MATCHES "/share/doc/[^/]+/changelog$" OR file MATCHES "/share/man/man[1-9]/[^/]+[.][1-9]$")
    execute_process(COMMAND gzip -9n "${file}" COMMAND_ERROR_IS_FATAL ANY)
  elseif(file MATCHES "[.]a$")
    execute_process(COMMAND strip --strip-debug --enable-deterministic-archives "${file}" COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
