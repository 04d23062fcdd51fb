# The enumerations, made from their data, and the value types: what the attributes of the library stand on.

set(TESSERA_DIR "${CMAKE_CURRENT_SOURCE_DIR}/apiSdk/objects/tessera")
set(TESSERA_OUT "${CMAKE_CURRENT_BINARY_DIR}/apiSdk/objects/tessera/src")
file(GLOB ENUMERATION_DATA CONFIGURE_DEPENDS "${TESSERA_DIR}/data/enumerations/*.def")
file(GLOB ENUMERATION_GENERATOR CONFIGURE_DEPENDS "${TESSERA_DIR}/enumerationGenerator/*.py"
     "${CMAKE_SOURCE_DIR}/apiMgmt/common/generator/*.py")

# The generator leaves equal files untouched; the stamp says that it has run.
add_custom_command(
  OUTPUT "${TESSERA_OUT}/apiEnumsIDStrList.stamp"
  BYPRODUCTS "${TESSERA_OUT}/apiEnumsIDStrList.h" "${TESSERA_OUT}/apiEnumsIDStrList.cpp"
  COMMAND "${CMAKE_COMMAND}" -E env PYTHONDONTWRITEBYTECODE=1 "${Python3_EXECUTABLE}"
          -m apiMgmt.apiStub.apiSdk.objects.tessera.enumerationGenerator
          --data "${TESSERA_DIR}/data/enumerations" --out "${TESSERA_OUT}"
  COMMAND "${CMAKE_COMMAND}" -E touch "${TESSERA_OUT}/apiEnumsIDStrList.stamp"
  WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
  DEPENDS ${ENUMERATION_DATA} ${ENUMERATION_GENERATOR}
  COMMENT "Making the enumerations")
add_custom_target(api_enumerations DEPENDS "${TESSERA_OUT}/apiEnumsIDStrList.stamp")

# What includes apiEnumsIDStrList.h links this, or depends on api_enumerations.
add_library(api_values STATIC
  base/apiAttributes/apiObjectInstance.cpp
  base/apiAttributes/datetimeValue.cpp
  base/apiAttributes/enumRow.cpp
  base/apiAttributes/filterItem.cpp
  base/apiAttributes/filterList.cpp
  base/apiAttributes/sizeValue.cpp
  base/apiAttributes/temperatureValue.cpp
  base/apiAttributes/versionValue.cpp
  "${TESSERA_OUT}/apiEnumsIDStrList.cpp")
set_source_files_properties("${TESSERA_OUT}/apiEnumsIDStrList.cpp" PROPERTIES GENERATED ON)
add_dependencies(api_values api_enumerations)
target_link_libraries(api_values PUBLIC common_utils)
