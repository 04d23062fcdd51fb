# CPack runs this before it creates a package: strips static libraries, as CPack itself strips programs.
file(GLOB_RECURSE archives "${CPACK_TEMPORARY_DIRECTORY}/*.a")
foreach(archive ${archives})
  execute_process(COMMAND strip --strip-debug --remove-section=.comment --remove-section=.note
                          --enable-deterministic-archives "${archive}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
