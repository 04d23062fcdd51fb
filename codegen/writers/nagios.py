"""Writes commands and services for Nagios, Icinga and Naemon, which run check_snmp."""

from codegen.writers.output import dotted, notice

# A scalar that is served through the whole chain and is never a problem.
REACHED = "selfTestVersion"

HEAD = notice("data/mib and data/monitoring", "#") + """\
#
# One command per state and reading of the array. $ARG1$ is the instance, as in the MIB: 0 for a scalar, the row of the
# object, or the row of the controller or enclosure, a dot, and the row of the component. The output includes the name
# of the object, because row numbers can change.

# Use this template for a host with the custom variable _COMMUNITY, and add services for the objects of interest. The
# host check only shows whether the array responds. The array's state is a service, because services of a host that is
# DOWN are not notified.
define host {
  name                 tessera-array
  hostgroups           tessera-arrays
  check_command        check_tessera_@REACHED@!0
  max_check_attempts   3
  check_interval       1
  retry_interval       1
  _COMMUNITY           public
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
  command_name  {name}
  command_line  $USER1$/check_snmp -H $HOSTADDRESS$ -P 2c -C $_HOSTCOMMUNITY$ -t 30 {arguments}
}}
"""

SERVICE = """
define service {{
  use                  tessera-service
  hostgroup_name       tessera-arrays
  service_description  {name}
  check_command        check_tessera_{name}!{instance}
}}
"""


def ranges(numbers):
    """Groups consecutive numbers into [first, last] ranges."""
    found = []
    for number in sorted(numbers):
        if found and found[-1][1] == number - 1:
            found[-1][1] = number
        else:
            found.append([number, number])
    return found


def inside(numbers):
    """Returns the threshold that only these values violate; empty if that needs more than one range."""
    found = ranges(numbers)
    return f"@{found[0][0]}:{found[0][1]}" if len(found) == 1 else ""


def outside(numbers):
    """Returns the threshold that only these values meet; empty if that needs more than one range."""
    found = ranges(numbers)
    return f"{found[0][0]}:{found[0][1]}" if len(found) == 1 else ""


class Commands:
    def __init__(self, snmp, metrics, watches):
        self.columns = {column.name: column for column in snmp.mib.columns}
        self.plans, self.watches = metrics.plans, watches

    def command(self, column, thresholds=""):
        """Checks the column, and shows the first label of its row."""
        labels = self.plans[column.table.name].labels if column.table else []
        oids = [dotted(column.oid)] + [dotted(self.columns[name].oid) for name in labels[:1]]
        places = ",".join(f"{oid}.$ARG1$" for oid in oids)
        about = column.paragraphs()[0]
        return COMMAND.format(name=f"check_tessera_{column.name}", about=about,
                              arguments=f"-o {places} -l {column.name} {thresholds}".rstrip())

    def of_watch(self, watch):
        """If no range expresses the warnings, all values outside that of ok are warnings unless they are critical."""
        numbers = {severity: [value.number for value in watch.values(severity)]
                   for severity in ("ok", "warning", "critical")}
        critical = inside(numbers["critical"])
        warning = inside(numbers["warning"]) or outside(numbers["ok"])
        if (numbers["critical"] and not critical) or (numbers["warning"] and not warning):
            raise watch.place.error("check_snmp has no ranges for the severities of these states")
        return self.command(watch.metric.column, " ".join(
            filter(None, [warning and f"-w {warning}", critical and f"-c {critical}"])))

    def of_limit(self, limit):
        warning, critical = (limit.levels[severity][0] for severity in ("warning", "critical"))
        return self.command(limit.metric.column, f"-w {warning}: -c {critical}:")

    def services(self):
        """Yields services for what every array has exactly once."""
        for watch in self.watches.watches:
            table = watch.metric.column.table
            if table is None or (not table.parent and table.rows == 1):
                yield SERVICE.format(name=watch.metric.column.name, instance=1 if table else 0)

    def file(self):
        return HEAD.replace("@REACHED@", REACHED) + "".join([
            self.command(self.columns[REACHED]), *map(self.of_watch, self.watches.watches),
            *map(self.of_limit, self.watches.limits), *self.services()])
