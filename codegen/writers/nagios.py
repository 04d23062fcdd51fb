"""Writes commands and services for monitoring systems of the Nagios family; check_tessera makes the requests."""

import shlex

from codegen.writers import checks
from codegen.writers.output import notice

HEAD = notice("data/mib and data/monitoring", "#") + """\
#
# A command for every state and reading of the array. $ARG1$ is the instance, as in the MIB: 0 for the scalar, the row
# of the object, or the row of the controller or enclosure, a dot, and the row of the part. The output shows the name
# of the object, for row numbers may move.

# Use it for a host, and set _SNMP to the version and the credentials as snmpget takes them, for example
# -v3 -l authPriv -u monitor -a SHA-256 -A "signing passphrase" -x AES -X "encrypting passphrase"
# The check of the host says only whether the array responds, and the array's state is a service: no service of a host
# that is DOWN is notified.
define host {
  name                 tessera-array
  hostgroups           tessera-arrays
  check_command        check_@REACHED@!0
  max_check_attempts   3
  check_interval       1
  retry_interval       1
  _SNMP                -v2c -c public
  register             0
}

define hostgroup {
  hostgroup_name  tessera-arrays
}

define service {
  name                 tessera-service
  max_check_attempts   3
  check_interval       2
  retry_interval       1
  register             0
}
"""

COMMAND = """
# {about}
define command {{
  command_name  check_{name}
  command_line  $USER1$/{plugin} -H $HOSTADDRESS$ '--snmp=$_HOSTSNMP$' --instance $ARG1$ {options}
}}
"""

SERVICE = """
define service {{
  use                  tessera-service
  hostgroup_name       tessera-arrays
  service_description  {column}
  check_command        check_{name}!{instance}
}}
"""


def command(check):
    options = " ".join(f"--{name} {shlex.quote(value)}" for name, value in check.options.items())
    return COMMAND.format(about=check.about(), name=check.name, plugin=checks.PLUGIN, options=options)


def service(check):
    return SERVICE.format(column=check.column.name, name=check.name, instance=check.instance())


def file(all_checks):
    """all_checks: a checks.Checks."""
    reached, *others = all_checks.all()
    return HEAD.replace("@REACHED@", reached.name) + "".join([
        *map(command, (reached, *others)), *(service(check) for check in others if check.is_single())])
