# Generates files from data/ with the Python package codegen.

execute_process(COMMAND "${Python3_EXECUTABLE}" -c "import yaml" RESULT_VARIABLE YAML_IS_MISSING ERROR_QUIET)
if(YAML_IS_MISSING)
  message(FATAL_ERROR "${Python3_EXECUTABLE} has no module yaml (PyYAML). Run scripts/install-deps.")
endif()

# All kinds depend on all data: a run takes less than a second and does not touch files whose contents stay the same.
file(GLOB_RECURSE CODEGEN_INPUTS CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/data/*" "${CMAKE_SOURCE_DIR}/codegen/*.py")

# generate(TARGET KIND DIRECTORY)
# Adds a target that writes the files of one kind (see `python3 -m codegen --help`) into a directory. Sets TARGET_FILES
# to their paths.
function(generate target kind directory)
  set(codegen "${CMAKE_COMMAND}" -E env PYTHONDONTWRITEBYTECODE=1 "${Python3_EXECUTABLE}" -m codegen ${kind}
      --data "${CMAKE_SOURCE_DIR}/data")
  execute_process(COMMAND ${codegen} WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}" OUTPUT_VARIABLE files
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" files "${files}")
  list(TRANSFORM files PREPEND "${directory}/")
  set(stamp "${directory}/${target}.stamp")  # newer than files that were not touched
  add_custom_command(
    OUTPUT "${stamp}" BYPRODUCTS ${files}
    COMMAND ${codegen} --out "${directory}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}" DEPENDS ${CODEGEN_INPUTS} COMMENT "Generating ${kind}" VERBATIM)
  add_custom_target(${target} ALL DEPENDS "${stamp}")
  set(${target}_FILES ${files} PARENT_SCOPE)
endfunction()
