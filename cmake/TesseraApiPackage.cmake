# The API library as a package for other programs: two archives, the headers with the same include paths as here, and
# the files for find_package(tesseraApi). All of it is in the install component api_library.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(API_PACKAGE_CONFIG "${CMAKE_INSTALL_LIBDIR}/cmake/tesseraApi")
set(API_PACKAGE_INCLUDE "${CMAKE_INSTALL_INCLUDEDIR}/tesseraApi")
set(API_PACKAGE_DOC "${CMAKE_INSTALL_DATADIR}/doc/tesseraApi")
set(API_GENERATED "${CMAKE_BINARY_DIR}/apiMgmt/apiStub/apiSdk/objects/tessera/src")

# Everything that calls and responses need, in one archive, so that users need not know how the sources divide it.
set(API_PACKAGE_PARTS api_catalogue api_client_layer api_stub api_values common_endpoints common_platform common_utils
    wirelink xmlwrap api_proto)
list(TRANSFORM API_PACKAGE_PARTS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE API_PACKAGE_OBJECTS)
add_library(tesseraApi_classes STATIC ${API_PACKAGE_OBJECTS})
set_target_properties(tesseraApi_classes PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME tesseraApi EXPORT_NAME classes)
target_link_libraries(tesseraApi_classes PUBLIC protobuf::libprotobuf Threads::Threads PRIVATE EXPAT::EXPAT)
target_compile_features(tesseraApi_classes PUBLIC cxx_std_20)
target_include_directories(tesseraApi_classes SYSTEM INTERFACE "$<INSTALL_INTERFACE:${API_PACKAGE_INCLUDE}>")
if(SNMPSUBAGENT_SANITIZE)
  target_link_options(tesseraApi_classes INTERFACE -fsanitize=${SNMPSUBAGENT_SANITIZE})
endif()
if(SNMPSUBAGENT_COVERAGE)
  target_link_options(tesseraApi_classes INTERFACE --coverage)
endif()

# The entries of the factories are a separate archive. Nothing refers to them, so a linker takes none of them from an
# archive unless it takes the whole archive, which the package's configuration requests. An OBJECT library would work
# for programs that link the package directly, but not for those that link it through another library.
add_library(tesseraApi_factories STATIC $<TARGET_OBJECTS:api_catalogue_factories>)
set_target_properties(tesseraApi_factories PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME tesseraApiFactories
                      EXPORT_NAME factories)
target_link_libraries(tesseraApi_factories PUBLIC tesseraApi_classes)

install(TARGETS tesseraApi_classes tesseraApi_factories EXPORT tesseraApiTargets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT api_library)
if(SNMPSUBAGENT_COVERAGE)  # every target links it
  install(TARGETS count_at_exit EXPORT tesseraApiTargets OBJECTS DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT api_library)
endif()
install(EXPORT tesseraApiTargets NAMESPACE tesseraApi:: DESTINATION "${API_PACKAGE_CONFIG}" COMPONENT api_library)

configure_package_config_file(cmake/tesseraApiConfig.cmake.in "${CMAKE_BINARY_DIR}/tesseraApiConfig.cmake"
                              INSTALL_DESTINATION "${API_PACKAGE_CONFIG}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/tesseraApiConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/tesseraApiConfig.cmake" "${CMAKE_BINARY_DIR}/tesseraApiConfigVersion.cmake"
        DESTINATION "${API_PACKAGE_CONFIG}" COMPONENT api_library)

# The library's own headers, and those headers of the layers below that a program needs.
foreach(folder apiMgmt/apiStub/base apiMgmt/apiStub/client apiMgmt/apiStub/apiSdk/objects/tessera/src)
  install(DIRECTORY "${CMAKE_SOURCE_DIR}/${folder}/" DESTINATION "${API_PACKAGE_INCLUDE}/${folder}"
          COMPONENT api_library FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY "${API_GENERATED}/" DESTINATION "${API_PACKAGE_INCLUDE}/apiMgmt/apiStub/apiSdk/objects/tessera/src"
        COMPONENT api_library FILES_MATCHING PATTERN "*.h")
foreach(header utils/apiMethodError.h utils/generalError.h utils/generalUtils.h utils/stringUtil.h
               wirelink/wireLink.h wirelink/wireLinkEndpoint.h
               xmlwrap/xmlDocument.h xmlwrap/xmlElement.h xmlwrap/xmlParser.h)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "apiMgmt/common/${header}" DESTINATION "${API_PACKAGE_INCLUDE}/apiMgmt/common/${folder}"
          COMPONENT api_library)
endforeach()
install(FILES "${CMAKE_BINARY_DIR}/apiMgmt/proto/apiMgrMsg.pb.h"
        DESTINATION "${API_PACKAGE_INCLUDE}/apiMgmt/proto" COMPONENT api_library)

install(FILES docs/apiLibrary.md "${API_GENERATED}/apiReference.md" DESTINATION "${API_PACKAGE_DOC}"
        COMPONENT api_library)
install(DIRECTORY docs/examples DESTINATION "${API_PACKAGE_DOC}" COMPONENT api_library)
