# Run by CPack before a package is closed: static libraries lose what only a debugger wants, like programs do.
file(GLOB_RECURSE archives "${CPACK_TEMPORARY_DIRECTORY}/*.a")
foreach(archive ${archives})
  execute_process(COMMAND strip --strip-debug --remove-section=.comment --remove-section=.note
                          --enable-deterministic-archives "${archive}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
