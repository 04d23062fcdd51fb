"""Writes the configuration of Icinga 2: check commands, a host template, and services."""

from codegen.writers import checks
from codegen.writers.output import notice

HEAD = notice("data/mib and data/monitoring", "//") + """\
//
// A CheckCommand for every state and reading of the array, and templates. A host that imports "tessera-array" gets the
// services that every array has once. Others are listed in its variables, by name and with the instance as in the MIB:
//
//   object Host "array1" {
//     import "tessera-array"
//     address = "192.0.2.10"
//     vars.tessera_snmp = "-v3 -l authPriv -u monitor -a SHA-256 -A 'signing passphrase' -x AES -X 'encrypting passphrase'"
//     vars.tessera["disk 01-07"] = { check = "tsDiskStatus", instance = "7" }
//     vars.tessera["fan 3 of controller 1"] = { check = "tsCtlrFanStatus", instance = "1.3" }
//   }

template CheckCommand "tessera" {
  command = [ PluginDir + "/@PLUGIN@" ]
  timeout = 40s
  arguments = {
    "--host" = "$tessera_address$"
    "--snmp" = "$tessera_snmp$"
    "--instance" = "$tessera_instance$"
  }
  vars.tessera_address = "$address$"
  vars.tessera_snmp = "-v2c -c public"
  vars.tessera_instance = "0"
}

// It says only whether the array responds.
template Host "tessera-array" {
  check_command = "@REACHED@"
  max_check_attempts = 3
  check_interval = 1m
  retry_interval = 1m
  vars.tessera_array = true
}

template Service "tessera-service" {
  max_check_attempts = 3
  check_interval = 2m
  retry_interval = 1m
}

apply Service for (name => watched in host.vars.tessera) {
  import "tessera-service"
  check_command = "tessera_" + watched.check
  vars.tessera_instance = watched.instance
}
"""

COMMAND = """
// {about}
object CheckCommand "{name}" {{
  import "tessera"
  arguments += {{
{arguments}
  }}
}}
"""

SERVICE = """
apply Service "{column}" {{
  import "tessera-service"
  check_command = "{name}"
  vars.tessera_instance = "{instance}"
  assign where host.vars.tessera_array
}}
"""


def command(check):
    arguments = "\n".join(f'    "--{name}" = "{value}"' for name, value in check.options.items())
    return COMMAND.format(about=check.about(), name=check.name, arguments=arguments)


def service(check):
    return SERVICE.format(column=check.column.name, name=check.name, instance=check.instance())


def file(all_checks):
    """all_checks: a checks.Checks."""
    reached, *others = all_checks.all()
    return HEAD.replace("@PLUGIN@", checks.PLUGIN).replace("@REACHED@", reached.name) + "".join([
        *map(command, (reached, *others)), *(service(check) for check in others if check.is_single())])
