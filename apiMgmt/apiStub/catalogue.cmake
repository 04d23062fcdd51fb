# The classes of the array's objects, made from their data: one unit an object.

file(GLOB CATALOGUE_OBJECTS CONFIGURE_DEPENDS "${TESSERA_DIR}/data/objects/*.def")
file(GLOB CATALOGUE_GENERATOR CONFIGURE_DEPENDS "${TESSERA_DIR}/catalogueGenerator/*.py"
     "${TESSERA_DIR}/enumerationGenerator/*.py" "${CMAKE_SOURCE_DIR}/apiMgmt/common/generator/*.py")

# tsDisk.def describes apiTsDisk.h and apiTsDisk.cpp.
set(CATALOGUE_HEADERS "${TESSERA_OUT}/apiMethodObjects.h")
set(CATALOGUE_SOURCES "${TESSERA_OUT}/apiAssociations.cpp" "${TESSERA_OUT}/apiMethodObjects.cpp")
foreach(object ${CATALOGUE_OBJECTS})
  get_filename_component(object "${object}" NAME_WE)
  string(SUBSTRING "${object}" 0 1 first)
  string(SUBSTRING "${object}" 1 -1 rest)
  string(TOUPPER "${first}" first)
  list(APPEND CATALOGUE_HEADERS "${TESSERA_OUT}/api${first}${rest}.h")
  list(APPEND CATALOGUE_SOURCES "${TESSERA_OUT}/api${first}${rest}.cpp")
endforeach()

# The generator leaves equal files untouched; the stamp says that it has run.
add_custom_command(
  OUTPUT "${TESSERA_OUT}/catalogue.stamp"
  BYPRODUCTS ${CATALOGUE_HEADERS} ${CATALOGUE_SOURCES} "${TESSERA_OUT}/catalogueRegistration.cpp"
             "${TESSERA_OUT}/catalogue.json" "${TESSERA_OUT}/apiReference.md"
  COMMAND "${CMAKE_COMMAND}" -E env PYTHONDONTWRITEBYTECODE=1 "${Python3_EXECUTABLE}"
          -m apiMgmt.apiStub.apiSdk.objects.tessera.catalogueGenerator
          --data "${TESSERA_DIR}/data" --out "${TESSERA_OUT}"
  COMMAND "${CMAKE_COMMAND}" -E touch "${TESSERA_OUT}/catalogue.stamp"
  WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
  DEPENDS ${CATALOGUE_OBJECTS} "${TESSERA_DIR}/data/methodObjects.def" ${ENUMERATION_DATA} ${CATALOGUE_GENERATOR}
  COMMENT "Making the classes of the objects")
add_custom_target(api_catalogue_classes DEPENDS "${TESSERA_OUT}/catalogue.stamp")

# Archives with a section for each function and table: a program that makes calls of a few classes, as the daemon
# does, takes nothing of the others along.
add_library(api_catalogue STATIC ${CATALOGUE_SOURCES})
set_source_files_properties(${CATALOGUE_SOURCES} PROPERTIES GENERATED ON)
add_dependencies(api_catalogue api_catalogue_classes)
foreach(part api_catalogue api_stub api_values)
  target_compile_options(${part} PRIVATE -ffunction-sections -fdata-sections)
endforeach()
target_link_options(api_catalogue INTERFACE -Wl,--gc-sections)
target_link_libraries(api_catalogue PUBLIC api_stub)

# The entries of the factories, which bring all classes along. A program that looks classes up by name links it
# itself: nothing refers to its unit, which an archive would drop.
add_library(api_catalogue_factories OBJECT "${TESSERA_OUT}/catalogueRegistration.cpp")
set_source_files_properties("${TESSERA_OUT}/catalogueRegistration.cpp" PROPERTIES GENERATED ON)
add_dependencies(api_catalogue_factories api_catalogue_classes)
target_link_libraries(api_catalogue_factories PUBLIC api_catalogue)
