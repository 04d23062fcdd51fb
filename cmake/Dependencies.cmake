# What the system provides: on Debian scripts/install-deps brings all of it, docs/administrators.md names the ports of
# FreeBSD.

find_package(Threads REQUIRED)
# protobuf 22 and later needs libraries that only its own configuration names; Debian's has none. The same is in
# tesseraApiConfig.cmake.in.
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

# Documents of a peer go through expat, so a version with its known holes closed is a must. Debian
# keeps the upstream number and closes them in its own revision.
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

# net-snmp-config names the libraries of the agent side; the headers need no options of their own.
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
