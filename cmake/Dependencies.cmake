# Packages of the system. On Debian, scripts/install-deps installs them; docs/administrators.md lists the FreeBSD ports.

find_package(Threads REQUIRED)
# protobuf 22 and later needs libraries that only its own CMake configuration lists; Debian's version has none.
# tesseraApiConfig.cmake.in does the same.
find_package(Protobuf CONFIG QUIET)
if(NOT Protobuf_FOUND)
  find_package(Protobuf REQUIRED)
endif()
find_package(EXPAT REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json 3.11 REQUIRED)
if(BUILD_TESTING)
  find_package(GTest REQUIRED)
  find_package(benchmark REQUIRED)
endif()
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)

# expat parses documents of peers, so it must have all security fixes. Debian adds them to an older
# upstream version.
find_program(DPKG_QUERY dpkg-query)
if(DPKG_QUERY)
  execute_process(COMMAND "${DPKG_QUERY}" -W -f "\${Version}" libexpat1
                  OUTPUT_VARIABLE EXPAT_PACKAGE_VERSION ERROR_QUIET)
endif()
if(EXPAT_PACKAGE_VERSION)
  execute_process(COMMAND dpkg --compare-versions "${EXPAT_PACKAGE_VERSION}" ge 2.5.0-1+deb12u5
                  RESULT_VARIABLE EXPAT_TOO_OLD)
  if(EXPAT_TOO_OLD)
    message(FATAL_ERROR "libexpat1 '${EXPAT_PACKAGE_VERSION}' lacks security updates: "
                        "2.5.0-1+deb12u5 or newer is needed. Run scripts/install-deps.")
  endif()
elseif(EXPAT_VERSION_STRING VERSION_LESS 2.7.0)
  message(FATAL_ERROR "expat ${EXPAT_VERSION_STRING} lacks security updates: 2.7.0 or newer is needed.")
endif()

# Part of the development files; checked first, for a helpful message.
find_program(NET_SNMP_CONFIG net-snmp-config)
if(NOT NET_SNMP_CONFIG)
  message(FATAL_ERROR "net-snmp-config is missing. Run scripts/install-deps.")
endif()
find_library(NETSNMP_LIBRARY netsnmp REQUIRED)
find_library(NETSNMPAGENT_LIBRARY netsnmpagent REQUIRED)
find_path(NETSNMP_INCLUDE_DIR net-snmp/net-snmp-config.h REQUIRED)
add_library(netsnmp INTERFACE)
target_link_libraries(netsnmp INTERFACE "${NETSNMPAGENT_LIBRARY}" "${NETSNMP_LIBRARY}")
target_include_directories(netsnmp SYSTEM INTERFACE "${NETSNMP_INCLUDE_DIR}")
