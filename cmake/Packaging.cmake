# The Debian packages. `scripts/package` builds and checks them.

# The component and name of each package. A component without install rules is omitted.
set(PACKAGES daemon mib monitoring tools api_library)
set(PACKAGE_NAME_daemon snmpsubagent)
set(PACKAGE_NAME_mib snmpsubagent-mib)
set(PACKAGE_NAME_monitoring snmpsubagent-monitoring)
set(PACKAGE_NAME_tools snmpsubagent-tools)
set(PACKAGE_NAME_api_library libtesseraapi-dev)

get_cmake_property(installed_components COMPONENTS)
set(CPACK_COMPONENTS_ALL "")
foreach(component ${PACKAGES})
  if(component IN_LIST installed_components)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
  endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME snmpsubagent)
set(CPACK_PACKAGE_VENDOR "Vorn-Lumivant Technologies")
set(CPACK_PACKAGE_CONTACT "Vorn Support Services <support@vorn-lumivant.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://www.vorn-lumivant.example/tessera")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/StripArchives.cmake")
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_DAEMON_PACKAGE_SECTION net)
set(CPACK_COMPONENT_DAEMON_DESCRIPTION "SNMP service of a Tessera storage array
Serves the state of a storage array over SNMP, as an AgentX subagent of an
snmpd that it starts itself, and turns the array's events into notifications.
It uses the array's API manager on a local socket, so it is useful only on a
controller of an array, or with a simulated array.
.
It replaces the machine's own snmpd and kills every other one.")
# The daemon runs snmpd, snmpget, killall and ps. Older versions of expat lack fixes against hostile documents.
set(CPACK_DEBIAN_DAEMON_PACKAGE_DEPENDS
    "snmpd, snmp, psmisc, procps, systemd | systemd-standalone-tmpfiles, libexpat1 (>= 2.5.0-1+deb12u5)")
set(CPACK_DEBIAN_DAEMON_PACKAGE_SUGGESTS "snmpsubagent-mib, snmpsubagent-tools")
set(CPACK_DEBIAN_DAEMON_PACKAGE_CONTROL_EXTRA
    "${CMAKE_SOURCE_DIR}/packaging/debian/daemon/conffiles"
    "${CMAKE_SOURCE_DIR}/packaging/debian/daemon/postinst"
    "${CMAKE_SOURCE_DIR}/packaging/debian/daemon/prerm"
    "${CMAKE_SOURCE_DIR}/packaging/debian/daemon/postrm")

set(CPACK_DEBIAN_MIB_PACKAGE_SECTION net)
set(CPACK_DEBIAN_MIB_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_MIB_DESCRIPTION "SNMP MIB modules of the Tessera storage array
Names, types and meaning of the objects and notifications of the array's SNMP
service, as MIB modules for managers and as a human-readable reference.
.
The modules import SNMPv2-SMI, SNMPv2-TC and SNMPv2-CONF. On Debian, the
package snmp-mibs-downloader provides them.")
set(CPACK_DEBIAN_MIB_PACKAGE_SUGGESTS "snmp, snmp-mibs-downloader")

set(CPACK_DEBIAN_MONITORING_PACKAGE_SECTION net)
set(CPACK_DEBIAN_MONITORING_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_MONITORING_DESCRIPTION "files for monitoring a Tessera storage array
Modules, rules, checks, templates and dashboards with which Prometheus,
Grafana, Nagios and its relatives, Icinga 2, Zabbix, SNMPTT and snmpsim can
use the array's SNMP service.")
set(CPACK_DEBIAN_MONITORING_PACKAGE_DEPENDS "python3, snmp")
set(CPACK_DEBIAN_MONITORING_PACKAGE_SUGGESTS "snmpsubagent-mib, prometheus-snmp-exporter, snmptt")

set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "tools for the SNMP service of a Tessera storage array
A simulated array, which responds like the API manager of a real one and fails
on demand, a program that sends events and commands to the SNMP service, and a
command-line client for the array's API. For evaluation, tests and training.")

set(CPACK_DEBIAN_API_LIBRARY_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_API_LIBRARY_DESCRIPTION "C++ library for the API of a Tessera storage array
Classes that query and change the objects of a storage array and decode its
responses. Static library, headers and a CMake package.")
set(CPACK_DEBIAN_API_LIBRARY_PACKAGE_DEPENDS "libprotobuf-dev, libexpat1-dev")

# --- contents of all packages

set(debian_changelog "${CMAKE_SOURCE_DIR}/packaging/debian/changelog")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${debian_changelog}")
file(STRINGS "${debian_changelog}" debian_changelog_head LIMIT_COUNT 1)
if(NOT debian_changelog_head MATCHES "^snmpsubagent \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR "packaging/debian/changelog:1: expected version ${PROJECT_VERSION}, found: "
                      "${debian_changelog_head}")
endif()

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${PACKAGE_NAME_${component}})
  set(documents share/doc/${PACKAGE_NAME_${component}})
  install_compressed(${component} ${documents} changelog "${debian_changelog}")
  install(FILES "${CMAKE_SOURCE_DIR}/packaging/debian/copyright" DESTINATION ${documents} COMPONENT ${component})
  set(overrides "${CMAKE_SOURCE_DIR}/packaging/debian/${component}/lintian-overrides")
  if(EXISTS "${overrides}")
    install(FILES "${overrides}" DESTINATION share/lintian/overrides
            RENAME ${PACKAGE_NAME_${component}} COMPONENT ${component})
  endif()
endforeach()

# The symlinks of packaging/systemd/tmpfiles.conf point to these, so that the package's removal recognises its own.
file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/links")
file(CREATE_LINK ../../sbin/snmpd "${CMAKE_CURRENT_BINARY_DIR}/links/snmpd" SYMBOLIC)
file(CREATE_LINK ../../bin/snmpget "${CMAKE_CURRENT_BINARY_DIR}/links/snmpget" SYMBOLIC)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/links/snmpd" "${CMAKE_CURRENT_BINARY_DIR}/links/snmpget"
        DESTINATION lib/snmpsubagent COMPONENT daemon)

include(CPack)
